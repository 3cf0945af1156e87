// E-mail lists out of real spreadsheets, through the real Sheetflat.
#include "mail/import/EmailImport.h"
#include "mail/import/EmailRowRules.h"
#include "tests/sheetflat/SheetBench.h"

#include <QCoreApplication>

#include <array>
#include <string>

namespace folivex {

namespace {

class MailImport : public test::SheetBench {
protected:
  // Companions are looked for beside the application, so there must be one.
  static void SetUpTestSuite() {
    static int count = 1;
    static std::array<char*, 2> arguments = {testName.data(), nullptr};
    static const QCoreApplication application(count, arguments.data());
  }

  void SetUp() override {
    SheetBench::SetUp();
    qputenv("PATH", QByteArray(FOLIVEX_BIN_DIR ":") + m_searchPath);
    qputenv("TMPDIR", folder.path().toLocal8Bit());
  }
  void TearDown() override {
    qputenv("PATH", m_searchPath);
    qunsetenv("TMPDIR");
  }

  static EmailImport import(const QString& spreadsheet) {
    return importEmailList(spreadsheet, [] { return false; });
  }

  static QStringList findingsOf(const EmailImport& import) {
    QStringList texts;
    for (const ImportFinding& finding : import.findings) {
      texts += finding.text();
    }
    return texts;
  }

private:
  static inline std::string testName = "test_mail_import";
  QByteArray m_searchPath = qgetenv("PATH");
};

TEST_F(MailImport, EveryColumnOfEveryKindReachesItsField) {
  makeFile("Müller.pdf", "%PDF-");
  // The headers are not in the first row, not in the list's order and not in its spelling.
  const QByteArray rows = R"([["May mailing"], [],
    [" subject", "BODY", "Extract page  start", "Extract Page End", "File", "EMAIL ", "cc",
     "Invoice Number in Subject", "Separate Invoices"],
    ["Rechnung\nMai", "Guten Tag\n  Frau Müller", 2, 5, "Müller.pdf", "m@müller.de", "c@d.org", "000123", "yes"],
    [],
    [null, null, null, null, "Müller.pdf", "x@y.org"]])";
  EmailEntry full;
  full.address = QStringLiteral("m@müller.de");
  full.file = path("Müller.pdf");
  full.extractPageStart = 2;
  full.extractPageEnd = 5;
  full.body = QStringLiteral("Guten Tag\n  Frau Müller");
  full.cc = QStringLiteral("c@d.org");
  full.invoiceNumberInSubject = QStringLiteral("000123");
  full.separateInvoices = QStringLiteral("yes");
  full.subject = QStringLiteral("Rechnung Mai");
  EmailEntry plain;
  plain.address = QStringLiteral("x@y.org");
  plain.file = full.file;

  for (const char* name : {"list.xlsx", "list.xls", "list.ods"}) {
    SCOPED_TRACE(name);
    const EmailImport list = import(makeSheet(QString::fromLatin1(name), rows));
    EXPECT_TRUE(list.done) << list.problem.toStdString();
    EXPECT_EQ(findingsOf(list), QStringList());
    EXPECT_TRUE(list.entries == EmailEntries({full, plain}));
  }
  EXPECT_EQ(QDir(folder.path()).entryList({"*import*"}), QStringList());
}

TEST_F(MailImport, TellsWhatIsDoubtfulWithItsRow) {
  ASSERT_TRUE(QDir(folder.path()).mkdir("pdf"));
  makeFile("pdf/a.pdf", "%PDF-");
  const EmailImport list = import(makeFile("list.csv",
                                           "Email,File,Telephone,email,Extract Page Start,"
                                           "Extract Page End,CC\n"
                                           "a@x.org,pdf\\a.pdf,,,,,\n" // folders as on Windows
                                           "a@x.org;b@x.org,pdf/a.pdf,,,,,c@x.org;no\n"
                                           "\n"
                                           ",pdf/b.pdf,,,0,0,\n"
                                           "a@x.org,,,,,,\n"
                                           "a@x.org,pdf/a.pdf,,,three,5,\n"
                                           "a@x.org,pdf/a.pdf,,,5,3,\n"
                                           "a@x.org,pdf/a.pdf,,,,3,\n"));
  EXPECT_TRUE(list.done);
  const QStringList expected = {
      "Row 1: the column \"Telephone\" is not known and is not read",
      "Row 1: \"Email\" stands twice; only the first such column is read",
      "Row 3: \"a@x.org;b@x.org\" is no e-mail address: it has no valid domain "
      "behind the \"@\"",
      "Row 3: CC: \"no\" is no e-mail address: it has no \"@\"",
      "Row 5: there is no address, nothing will be sent",
      QStringLiteral("Row 5: the file %1 is missing").arg(path("pdf/b.pdf")),
      "Row 6: there is no file to attach",
      "Row 7: \"three\" in \"Extract Page Start\" is no page number; the row is left out",
      "Row 8: pages 5 to 3 are no range; the row is left out",
      "Row 9: \"Extract Page Start\" is blank; the row is left out",
  };
  EXPECT_EQ(findingsOf(list), expected);
  ASSERT_EQ(list.entries.size(), 4U);
  EXPECT_EQ(list.entries[0].file, path("pdf/a.pdf"));
}

TEST_F(MailImport, SaysWhyNothingWasImported) {
  const QString noColumn = makeFile("list.csv", "E-Mail,File\na@x.org,b\n");
  EXPECT_EQ(import(noColumn).problem, noColumn + ": the first sheet has no column \"Email\"");
  const QString noSheet = makeFile("list.xlsx", "%PDF-1.7\n");
  EXPECT_EQ(import(noSheet).problem, noSheet + ": it is no spreadsheet");
  const EmailImport stopped =
      importEmailList(makeSheet("good.xlsx", R"([["Email"]])"), [] { return true; });
  EXPECT_FALSE(stopped.done);
  EXPECT_EQ(stopped.problem, path("good.xlsx") + ": the import was stopped");
  EXPECT_EQ(QDir(folder.path()).entryList({"*import*"}), QStringList());
  qputenv("PATH", "/nowhere");
  EXPECT_EQ(import(noColumn).problem, noColumn + ": the program Sheetflat was not found");
}

TEST(EmailRowRules, Pages) {
  struct Row {
    const char* first;
    const char* last;
    int start; ///< -1: refused
    int end;
  };
  for (const Row& row :
       {Row{"", " ", 0, 0}, Row{"0", "0", 0, 0}, Row{" 3 ", "3.00", 3, 3}, Row{"3", "10", 3, 10},
        Row{"0", "5", -1, 0}, Row{"3", "", -1, 0}, Row{"3.5", "4", -1, 0}, Row{"-3", "4", -1, 0},
        Row{"3", "1E3", -1, 0}, Row{"3", "99999999999", -1, 0}}) {
    SCOPED_TRACE(std::string(row.first) + " to " + row.last);
    int start = 0;
    int end = 0;
    const QString problem =
        readPages(QString::fromLatin1(row.first), QString::fromLatin1(row.last), start, end);
    EXPECT_EQ(problem.isEmpty(), row.start >= 0) << problem.toStdString();
    EXPECT_EQ(start, std::max(row.start, 0));
    EXPECT_EQ(end, row.end);
  }
}

} // namespace

} // namespace folivex
