// E-mail lists out of real spreadsheets, through the real Sheetflat.
#include "mail/import/EmailImport.h"
#include "mail/import/EmailRowRules.h"
#include "tests/sheetflat/SheetBench.h"
#include "tests/support/Rows.h"

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

/// The rows are those of one sheet, with what is said of them.
TEST_F(MailImport, TellsWhatIsDoubtfulWithItsRow) {
  ASSERT_TRUE(QDir(folder.path()).mkdir("pdf"));
  makeFile("pdf/a.pdf", "%PDF-");
  QByteArray sheet;
  QStringList expected;
  test::forEachRow("sheetflat/findings.json", [&](const auto&, const QStringList& row) {
    sheet += row[0].toUtf8() + '\n';
    expected += row.mid(1);
  });
  const EmailImport list = import(makeFile("list.csv", sheet));
  EXPECT_TRUE(list.done);
  EXPECT_EQ(findingsOf(list), expected.replaceInStrings("FOLDER", folder.path()));
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
  test::forEachRow("sheetflat/pages.json", [](const auto&, const QStringList& row) {
    int start = 0;
    int end = 0;
    const bool taken = readPages(row[0], row[1], start, end).isEmpty();
    EXPECT_EQ(taken ? QString("%1 %2").arg(start).arg(end) : QString(), row[2])
        << row[0].toStdString();
  });
}

} // namespace

} // namespace folivex
