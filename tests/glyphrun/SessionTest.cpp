// The operations without a handle: what they keep, select, sort and refuse.

#include "Pages.h"

#include <gtest/gtest.h>

namespace glyphruntest {
namespace {

std::string selected(int index) {
  wordToGet(index);
  return narrow(getWordStr());
}

std::string threePages() {
  PdfBuilder pdf;
  const std::string fonts =
      "/Font<</B " + PdfBuilder::ref(pdf.addFont("ABCDEF+Courier-Bold")) + ">>";
  for (const char* text : {"one", "two", "three"}) {
    pdf.addPage("BT /B 12 Tf 50 100 Td (low) Tj 0 600 Td (" + std::string(text) + ") Tj (" +
                    " head) Tj 0 -600 Td (low) Tj ET",
                fonts);
  }
  std::string path = pathFor("three.pdf");
  pdf.write(path);
  return path;
}

TEST(Session, NothingOpenAnswersQuietly) {
  PdfTextDumpCloseFile();
  PdfTextDumpCloseFile();
  PdfTextDumpFilePages(1, 1);
  EXPECT_EQ(GetProcessingStatus(), GLYPHRUN_NOT_OPEN);
  EXPECT_EQ(getNumWords(), 0);
  EXPECT_EQ(GetPageCount2(), 0);
  EXPECT_EQ(GetFileFacts(), 0);
  EXPECT_EQ(GetOutlineCount(), 0);
  EXPECT_EQ(selected(0), "");
  PdfTextDumpOpenFile(nullptr, nullptr);
  EXPECT_LT(GetProcessingStatus(), 0);
}

TEST(Session, OrdersAndRepeats) {
  PdfTextDumpFile(wide(threePages()).c_str(), u"", 2, 3);
  EXPECT_EQ(GetProcessingPage(), 3);
  ASSERT_EQ(getNumWords(), 6);
  EXPECT_EQ(selected(0) + selected(1), "lowtwo");
  DoReverseSort();
  EXPECT_EQ(selected(0) + selected(1) + selected(2) + selected(3), "twoheadlowthree");
  DoSort();
  EXPECT_EQ(selected(3), "low");
  EXPECT_EQ(getWordX(), 50);
  EXPECT_EQ(getWordY(), 700);
  EXPECT_EQ(narrow(getFont()), "Courier-Bold");
  EXPECT_EQ(getFontSize(), 12);
  for (const int beyond : {-1, 6, 2'000'000'000}) {
    EXPECT_EQ(selected(beyond), "");
    EXPECT_EQ(getWordX() + getWordY() + getFontSize(), 0);
    EXPECT_EQ(narrow(getFont()), "");
  }
}

TEST(Session, RemoveDupesDropsWhatStandsTwice) {
  PdfBuilder pdf;
  // Too far apart for boldness, and one point by rounding.
  pdf.addPage("BT /F 3 Tf 50 700 Td (a) Tj 0 -0.4 Td (a) Tj 5 0 Td (a) Tj ET", plainFonts(pdf));
  wordsOf(pdf);
  EXPECT_EQ(getNumWords(), 3);
  RemoveDupes();
  EXPECT_EQ(getNumWords(), 2);
}

TEST(Session, PagesThatAreNotThereAreRefused) {
  PdfTextDumpOpenFile(wide(threePages()).c_str(), u"");
  for (const auto& [first, last] :
       {std::pair{0, 1}, {3, 2}, {1, 4}, {-2'000'000'000, 2'000'000'000}}) {
    PdfTextDumpFilePages(first, last);
    EXPECT_EQ(GetProcessingStatus(), GLYPHRUN_BAD_PAGE);
    EXPECT_EQ(getNumWords(), 0);
  }
}

TEST(Session, AFileThatChangedAfterCountingIsReadAgain) {
  const std::string path = threePages();
  EXPECT_EQ(GetPageCount(wide(path).c_str(), u""), 3);
  PdfBuilder pdf;
  pdf.addPage("BT /F 10 Tf 50 700 Td (new) Tj ET", plainFonts(pdf));
  pdf.write(path);
  EXPECT_EQ(textOf(wordsOf(path)), "new");
  EXPECT_EQ(GetPageCount2(), 1);
}

TEST(Session, FilesWithUnusualNames) {
  PdfBuilder pdf;
  pdf.addPage("BT /F 10 Tf 50 700 Td (x) Tj ET", plainFonts(pdf));
  const std::string path = pathFor("Gr\u00F6\u00DFe \u65E5\U0001F600 %41.pdf");
  pdf.write(path);
  EXPECT_EQ(textOf(wordsOf(path)), "x");
}

TEST(Session, ManyPagesStayReadable) {
  // More pages than the reader goes on without forgetting objects, with fonts of their own.
  PdfBuilder pdf;
  for (int i = 0; i < 1500; ++i) {
    pdf.addPage("BT /F 10 Tf 50 700 Td (" + std::to_string(i) + ") Tj ET", plainFonts(pdf));
  }
  const std::string path = pathFor("many.pdf");
  pdf.write(path);
  PdfTextDumpOpenFile(wide(path).c_str(), u"");
  for (int i = 0; i < 1500; ++i) {
    PdfTextDumpFilePages(i + 1, i + 1);
    ASSERT_EQ(selected(0), std::to_string(i));
  }
  PdfTextDumpFilePages(1, 1);
  EXPECT_EQ(selected(0), "0");
}

} // namespace
} // namespace glyphruntest
