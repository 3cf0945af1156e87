#include "mail/EmailListFile.h"
#include "mail/PageRangeFile.h"
#include "tests/support/RunBench.h"

#include <QTemporaryDir>

namespace folivex::test {
namespace {

EmailEntry entry(const QString& address, const QString& file, int first = 0, int last = 0) {
  EmailEntry made;
  made.address = address;
  made.file = file;
  made.extractPageStart = first;
  made.extractPageEnd = last;
  return made;
}

EmailEntry cutEntry(const QString& address, const QString& file) {
  EmailEntry made = entry(address, file);
  made.fileIsCut = true;
  return made;
}

TEST(EmailList, HoldsTheOutputsThatHaveAnAddress) {
  const std::vector<AddressedOutput> outputs = {
      {"/out/1.pdf", 1, 3, "4711", "a@x.example", {"b@x.example"}},
      {"/out/2.pdf", 4, 4, "4712", {}, {}},
      {"/out/3.pdf", 5, 9, "4713", QString(300, u'c') + "@x.example", {}},
  };
  EmailList list;
  const std::vector<AddressedOutput> without = list.fill(outputs);
  ASSERT_EQ(without.size(), 1U);
  EXPECT_EQ(without[0].file, "/out/2.pdf");
  ASSERT_EQ(list.count(), 2U);
  // The file is the range already: its own pages are not picked once more.
  EXPECT_FALSE(hasPageRange(list.rows()[0].entry));
  EXPECT_EQ(list.rows()[0].cell(EmailColumn::ExtractPageStart), "0");
  EXPECT_EQ(list.rows()[0].entry.furtherAddresses, QStringList("b@x.example"));
  EXPECT_EQ(list.rows()[1].entry.address.size(), 255);
  EXPECT_FALSE(list.showsOwnTexts());
  EXPECT_FALSE(list.isFromSpreadsheet());
}

TEST(EmailList, TakesGoodAddressesOnlyAndKeepsTheRowsGiven) {
  EmailList list;
  list.setEntries({entry("a@x.example", "1"), entry("b@x.example", "2"), entry("c@x.example", "3")},
                  "/in/List.XLSX");
  EXPECT_TRUE(list.isFromSpreadsheet());
  EXPECT_FALSE(list.setAddress(1, "d@x.example, e@x.example").isEmpty());
  EXPECT_EQ(list.entries()[1].address, "b@x.example");
  EXPECT_TRUE(list.setAddress(0, " d@x.example ").isEmpty());
  EXPECT_EQ(list.entries()[0].address, "d@x.example");
  EXPECT_TRUE(list.setAddress(1, " ").isEmpty());
  const std::vector<std::size_t> failed = {0, 2};
  list.reduceTo(failed);
  EXPECT_EQ(list.entries(), EmailEntries({entry("d@x.example", "1"), entry("c@x.example", "3")}));
  EXPECT_EQ(list.addressedCount(), 2U);
}

TEST(EmailListFile, WritesTheFormatByteForByte) {
  QTemporaryDir folder;
  const QString path = folder.filePath("mails.lst");
  EmailList list;
  EXPECT_EQ(saveEmailList(list, path).message, "Nothing to save!");
  EXPECT_FALSE(QFile::exists(path));
  EmailEntry full = entry("rené@x.example", "/out/Größe.pdf", 3, 5);
  full.body = "not stored";
  list.setEntries({entry("a@x.example", "C:\\out\\1.pdf"), full}, {});
  const EmailListResult saved = saveEmailList(list, path);
  EXPECT_EQ(saved.message, "Saved email list to: " + path);
  EXPECT_EQ(saved.note, "");
  EXPECT_EQ(contentOf(path), QByteArray("\xEF\xBB\xBF"
                                        "UNICODEV4\r\r\n"
                                        "a@x.example|C:\\out\\1.pdf|0|0\r\r\n"
                                        "rené@x.example|/out/Größe.pdf|3|5\r\r\n"));
  EXPECT_EQ(QFile::permissions(path) & 0x0077, QFile::Permissions());

  EmailList read;
  EXPECT_TRUE(loadEmailList(read, path).ok);
  EXPECT_EQ(read.sourcePath(), path);
  full.body.clear();
  EXPECT_EQ(read.entries(), EmailEntries({entry("a@x.example", "C:\\out\\1.pdf"), full}));

  const QString nowhere = folder.filePath("no/mails.lst");
  EXPECT_EQ(saveEmailList(list, nowhere).message, "Unable to create file: " + nowhere);
  EXPECT_EQ(loadEmailList(read, nowhere).message, "Unable to open file: " + nowhere);
  EXPECT_TRUE(read.isEmpty());

  list.setEntries({entry("a@x.example", "/out/a|b.pdf")}, {});
  EXPECT_TRUE(saveEmailList(list, path).note.contains("row 1"));
}

/// Half a path attaches nothing, and its rest must not become an entry.
TEST(EmailListFile, PathsStayWholeAsFarAsALineHoldsThem) {
  QTemporaryDir folder;
  const QString path = folder.filePath("mails.lst");
  const QString fits = "/out/" + QString(1000, u'f') + ".pdf";
  // Address, separators and numbers take 10 of the line's 4093 characters.
  const QString clef = QString::fromUtf8("\xF0\x9D\x84\x9E");
  const QString tooLong = QString(4082, u'f') + clef + ".pdf";
  EmailList list;
  list.setEntries({entry("a@x.e", fits), entry("b@x.e", tooLong)}, {});
  EXPECT_EQ(list.entries()[1].file, tooLong);
  EXPECT_EQ(saveEmailList(list, path).note,
            "1 of the saved rows will not read back as they are, because the path is longer than "
            "such a list holds: row 2");
  EmailList read;
  EXPECT_TRUE(loadEmailList(read, path).ok);
  EXPECT_EQ(read.entries(),
            EmailEntries({entry("a@x.e", fits), cutEntry("b@x.e", QString(4082, u'f'))}));
}

TEST(EmailListFile, ReadsWhatOthersWrote) {
  const QByteArray longName(4095 - 12, 'f');
  const QByteArray name255(252, 'f');
  struct Row {
    const char* fault;
    QByteArray content;
    std::vector<EmailRow> rows;
  };
  const auto shown = [](EmailEntry e, const char* first, const char* last) {
    return EmailRow{std::move(e), first, last};
  };
  const Row rows[] = {
      {"8-bit list without a header",
       "ren\xE9@x.example|C:\\f.pdf|3|5\r\n",
       {shown(entry("rené@x.example", "C:\\f.pdf", 3, 5), "3", "5")}},
      {"no mark, header only",
       "UNICODEV4\nrené@x.example|f|1|2\n",
       {shown(entry("rené@x.example", "f", 1, 2), "1", "2")}},
      {"numbers that are none",
       "UNICODE\na@x|f|x1|99999999999\n",
       {shown(entry("a@x", "f"), "x1", "99999999999")}},
      {"more fields, fewer fields, blanks around the address",
       "UNICODE\n a@x |f|1|2|body|cc\nb@x\n",
       {shown(entry("a@x", "f", 1, 2), "1", "2"), shown(entry("b@x", ""), "", "")}},
      {"an entry that is not sent", "UNICODE\n|f|0|0\n\n", {shown(entry("", "f"), "0", "0")}},
      {"a path that another program cut",
       "UNICODE\na@x|" + name255 + ".pd|0|0\nb@x|" + name255 + "pdf|0|0\nc@x|" + name255 +
           "x.pdf|0|0",
       {shown(cutEntry("a@x", name255 + ".pd"), "0", "0"),
        shown(cutEntry("b@x", name255 + "pdf"), "0", "0"),
        shown(entry("c@x", name255 + "x.pdf"), "0", "0")}},
      {"a line in pieces of 4095",
       "UNICODE\na@x.example|" + longName + "b@x|g|1|2",
       {shown(cutEntry("a@x.example", longName), "", ""),
        shown(entry("b@x", "g", 1, 2), "1", "2")}},
  };
  QTemporaryDir folder;
  for (const Row& row : rows) {
    writeFile(folder.filePath("in.lst"), row.content);
    EmailList list;
    EXPECT_TRUE(loadEmailList(list, folder.filePath("in.lst")).ok);
    EXPECT_TRUE(list.rows() == row.rows) << row.fault;
  }
}

TEST(PageRangeFile, NamesStayBesideTheFile) {
  struct Row {
    const char* file;
    const char* label;
    const char* path;
  };
  const Row rows[] = {
      {"/out/a.pdf", "2023/07 p3-5", "/out/a 2023-07 p3-5.pdf"},
      {"/out/a.PDF ", "p1-1", "/out/a p1-1.pdf"},
      {"/out/a.pdf.txt", "x", "/out/a.pdf.txt x.pdf"},
      {"/out/a.pdf", "../../etc\\x", "/out/a ..-..-etc_x.pdf"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(pageRangePath(row.file, row.label), row.path);
  }
}

TEST(PageRangeFile, TakesThePagesAndNoOthers) {
  CSplitPdfInit& library = *RealLibraries::get().split;
  QTemporaryDir folder;
  TextPdf pdf;
  for (int page = 1; page <= 5; ++page) {
    pdf.page({QStringLiteral("page%1").arg(page)});
  }
  const QString source = folder.filePath("a.pdf");
  writeFile(source, pdf.bytes());
  EmailEntry range = entry("a@x.example", source, 2, 3);
  range.invoiceNumberInSubject = "7/8";
  const QString path = folder.filePath("a 7-8 p2-3.pdf");
  writeFile(path, "an older file");
  const AttachmentFile made = writePageRange(library, range, pageRangeLabel(range));
  EXPECT_EQ(made.path, path) << made.errorText.toStdString();
  EXPECT_EQ(pageTexts(path), QStringList({"page2", "page3"}));
  EXPECT_EQ(library.GetPageCount2(), 0);

  for (const auto& [first, last] : {std::pair(0, 3), {3, 0}, {4, 2}, {5, 6}, {-1, 2}}) {
    const EmailEntry bad = entry("a@x.example", source, first, last);
    const AttachmentFile none = writePageRange(library, bad, pageRangeLabel(bad));
    EXPECT_TRUE(none.path.isEmpty());
    EXPECT_FALSE(none.errorText.isEmpty());
    EXPECT_FALSE(QFile::exists(pageRangePath(source, pageRangeLabel(bad))));
  }
}

} // namespace
} // namespace folivex::test
