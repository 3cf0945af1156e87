#include "mail/EmailListFile.h"
#include "mail/PageRangeFile.h"
#include "tests/support/Rows.h"
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

TEST(EmailList, HoldsWhatHasAGoodAddress) {
  EmailList list;
  const auto without = list.fill(std::vector<AddressedOutput>{
      {"/out/1.pdf", 1, 3, "4711", "a@x.example", {"b@x.example"}},
      {"/out/2.pdf", 4, 4, "4712", {}, {}},
      {"/out/3.pdf", 5, 9, "4713", QString(300, u'c') + "@x.example", {}},
  });
  ASSERT_EQ(without.size(), 1U);
  EXPECT_EQ(without[0].file, "/out/2.pdf");
  // The file is the range already: its own pages are not picked once more.
  EmailEntry first = entry("a@x.example", "/out/1.pdf");
  first.furtherAddresses = {"b@x.example"};
  EmailEntry last = entry(QString(255, u'c'), "/out/3.pdf");
  first.isUnchecked = last.isUnchecked = true; // nothing tells what was written
  EXPECT_EQ(list.entries(), EmailEntries({first, last}));
  EXPECT_FALSE(hasPageRange(first));
  EXPECT_FALSE(list.isFromSpreadsheet());

  list.setEntries({entry("a@x.example", "1"), entry("b@x.example", "2"), entry("c@x.example", "3")},
                  "/in/List.XLSX");
  EXPECT_TRUE(list.isFromSpreadsheet());
  EXPECT_FALSE(list.setAddress(2, "d@x.example, e@x.example").isEmpty());
  EXPECT_TRUE(list.setAddress(0, " d@x.example ").isEmpty());
  EXPECT_TRUE(list.setAddress(1, " ").isEmpty());
  list.reduceTo(std::vector<std::size_t>{0, 2});
  EXPECT_EQ(list.entries(), EmailEntries({entry("d@x.example", "1"), entry("c@x.example", "3")}));
}

/// Half a path attaches nothing, and its rest must not become an entry.
TEST(EmailListFile, WritesTheFormatByteForByte) {
  QTemporaryDir folder;
  const QString path = folder.filePath("mails.lst");
  EmailList list;
  EXPECT_EQ(saveEmailList(list, path).message, "Nothing to save!");
  EXPECT_FALSE(QFile::exists(path));
  // Address, separators and numbers take 10 of the line's 4093 characters.
  const QString half(4082, u'f');
  EmailEntry full = entry("rené@x.example", "/out/Größe.pdf", 3, 5);
  full.body = "not stored";
  list.setEntries({full, entry("b@x.e", half + QString::fromUtf8("\xF0\x9D\x84\x9E.pdf")),
                   entry("a@x.example", "C:\\out\\a|b.pdf")},
                  {});
  const EmailListResult saved = saveEmailList(list, path);
  EXPECT_EQ(saved.message, "Saved email list to: " + path);
  EXPECT_TRUE(saved.note.startsWith("1 of the saved rows will not read back") &&
              saved.note.contains("field: row 3\n1 of the saved rows") &&
              saved.note.endsWith("because the path is longer than such a list holds: row 2"))
      << saved.note.toStdString();
  EXPECT_EQ(contentOf(path), "\xEF\xBB\xBFUNICODEV4\r\r\nrené@x.example|/out/Größe.pdf|3|5\r\r\n"
                             "b@x.e|" +
                                 half.toUtf8() +
                                 "|0|0\r\r\na@x.example|C:\\out\\a|b.pdf|0|0\r\r\n");
  EXPECT_EQ(QFile::permissions(path) & 0x0077, QFile::Permissions());

  list.reduceTo(std::vector<std::size_t>{0, 1});
  EXPECT_TRUE(saveEmailList(list, path).ok);
  EmailList read;
  EXPECT_TRUE(loadEmailList(read, path).ok);
  EXPECT_EQ(read.sourcePath(), path);
  full.body.clear();
  EmailEntry cut = entry("b@x.e", half);
  cut.fileIsCut = true;
  full.isUnchecked = cut.isUnchecked = true;
  EXPECT_EQ(read.entries(), EmailEntries({full, cut}));

  const QString nowhere = folder.filePath("no/mails.lst");
  EXPECT_EQ(saveEmailList(list, nowhere).message, "Unable to create file: " + nowhere);
  EXPECT_EQ(loadEmailList(read, nowhere).message, "Unable to open file: " + nowhere);
  EXPECT_TRUE(read.isEmpty());
}

/// What a list file cannot hold lies beside it and finds its row again, by hand edited or not.
TEST(EmailListFile, KeepsWhatIsKnownOfTheFilesBesideIt) {
  QTemporaryDir folder;
  const QString path = folder.filePath("mails.lst");
  EmailEntry known = entry("a@x.example", "/out/1.pdf", 1, 2);
  known.identity = platform::FileDigest::ofBytes("one");
  known.sentTo = {"a@x.example"};
  EmailEntry other = entry("b@x.example", "/out/2.pdf");
  other.identity = platform::FileDigest::ofBytes("two");
  other.addressesDiffer = other.holdsEarlierPages = true;
  other.mayHaveReached = {"b@x.example"};
  EmailList list;
  list.setEntries({known, known, other}, {});
  const EmailListResult saved = saveEmailList(list, path);
  EXPECT_TRUE(saved.ok && saved.note.isEmpty()) << saved.note.toStdString();
  EmailList read;
  EXPECT_TRUE(loadEmailList(read, path).ok);
  EXPECT_EQ(read.entries(), EmailEntries({known, known, other}));
  EXPECT_EQ(QFile::permissions(SendJournal::pathBeside(path)) & 0x0077, QFile::Permissions());

  writeFile(path, contentOf(path).replace("b@x.example", "c@x.example"));
  EXPECT_TRUE(loadEmailList(read, path).ok);
  EmailEntry typed = entry("c@x.example", "/out/2.pdf");
  typed.isUnchecked = true;
  EXPECT_EQ(read.entries(), EmailEntries({known, known, typed}));

  // Of another list under the same name it tells nothing.
  list.setEntries({typed}, {});
  EXPECT_TRUE(saveEmailList(list, path).ok);
  EXPECT_FALSE(QFile::exists(SendJournal::pathBeside(path)));
}

/// A row: its bytes, and what is read: address, file and pages as shown, and the page numbers.
TEST(EmailListFile, ReadsWhatOthersWrote) {
  QTemporaryDir folder;
  forEachRow("mail/lists.json", [&](const SplitSetup&, const QStringList& row) {
    writeFile(folder.filePath("in.lst"), row[0].toLatin1());
    EmailList list;
    EXPECT_TRUE(loadEmailList(list, folder.filePath("in.lst")).ok);
    QStringList got;
    for (const auto& [entry, first, last] : list.rows()) {
      got += QString("%1 %2 %3 %4 = ").arg(entry.address, entry.file, first, last) +
             QString("%1 %2").arg(entry.extractPageStart).arg(entry.extractPageEnd) +
             (entry.fileIsCut ? " cut" : "");
    }
    EXPECT_EQ(got, row.mid(1));
  });
}

TEST(PageRangeFile, NamesStayBesideTheFile) {
  EXPECT_EQ(pageRangePath("/out/a.pdf", "2023/07 p3-5"), "/out/a 2023-07 p3-5.pdf");
  EXPECT_EQ(pageRangePath("/out/a.PDF ", "p1-1"), "/out/a p1-1.pdf");
  EXPECT_EQ(pageRangePath("/out/a.pdf.txt", "x"), "/out/a.pdf.txt x.pdf");
  EXPECT_EQ(pageRangePath("/out/a.pdf", "../../etc\\x"), "/out/a ..-..-etc_x.pdf");
}

TEST(PageRangeFile, TakesThePagesAndNoOthers) {
  CSplitPdfInit& library = *RealLibraries::get().split;
  QTemporaryDir folder;
  const QString source = folder.filePath("a.pdf");
  writeFile(source, statements({"page1", "page2", "page3", "page4", "page5"}).bytes());
  EmailEntry range = entry("a@x.example", source, 2, 3);
  range.invoiceNumberInSubject = "7/8";
  const QString path = folder.filePath("a 7-8 p2-3.pdf");
  writeFile(path, "an older file");
  const AttachmentFile made = writePageRange(library, range, pageRangeLabel(range));
  EXPECT_EQ(made.path, path) << made.errorText.toStdString();
  EXPECT_EQ(pageTexts(path), QStringList({"page2", "page3"}));
  EXPECT_EQ(library.GetPageCount2(), 0);
  EXPECT_EQ(made.identity, platform::FileDigest::of(path));

  for (const auto& [first, last] : {std::pair(0, 3), {3, 0}, {4, 2}, {5, 6}, {-1, 2}}) {
    const AttachmentFile none =
        writePageRange(library, entry("a@x.example", source, first, last), "bad");
    EXPECT_TRUE(none.path.isEmpty() && !none.errorText.isEmpty()) << first;
    EXPECT_FALSE(QFile::exists(pageRangePath(source, "bad")));
  }
}

} // namespace
} // namespace folivex::test
