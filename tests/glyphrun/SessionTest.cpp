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
  pdf.addText("bold = <</Type/Font/Subtype/Type1/BaseFont/ABCDEF+Courier-Bold>>");
  for (const char* text : {"one", "two", "three"}) {
    pdf.addText("page /Resources<</Font<</B @bold>>>> | BT /B 12 Tf 50 100 Td (low) Tj 0 600 Td (" +
                std::string(text) + ") Tj ( head) Tj 0 -600 Td (low) Tj ET");
  }
  std::string path = pathFor("three.pdf");
  pdf.write(path);
  return path;
}

TEST(Session, NothingOpenAnswersQuietly) {
  PdfTextDumpCloseFile();
  PdfTextDumpCloseFile();
  EXPECT_EQ(extract(1), "");
  EXPECT_EQ(GetProcessingStatus(), GLYPHRUN_NOT_OPEN);
  EXPECT_EQ(GetPageCount2() + GetFileFacts() + GetOutlineCount(), 0);
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
    EXPECT_EQ(narrow(getFont()), "");
    EXPECT_EQ(getWordX() + getWordY() + getFontSize(), 0);
  }
}

TEST(Session, RemoveDupesDropsWhatStandsTwice) {
  // Too far apart for boldness, and one point by rounding.
  wordsOfContent("BT /F 3 Tf 50 700 Td (a) Tj 0 -0.4 Td (a) Tj 5 0 Td (a) Tj ET");
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
  PdfBuilder pdf = newPdf();
  pdf.addPage(show("new"), plainFonts);
  pdf.write(path);
  EXPECT_EQ(wordsOf(path), "new");
  EXPECT_EQ(GetPageCount2(), 1);
}

/// More pages than the reader goes on without forgetting objects, with fonts of their own, in a
/// file of an unusual name.
TEST(Session, ManyPagesStayReadable) {
  constexpr int pageCount = 1500;
  PdfBuilder pdf;
  for (int i = 1; i <= pageCount; ++i) {
    const std::string fonts = "/Font<</F " + PdfBuilder::ref(pdf.addFont("Helvetica")) + ">>";
    pdf.addPage(show(std::to_string(i)), fonts);
  }
  const std::string path = pathFor("Gr\u00F6\u00DFe \u65E5\U0001F600 %41.pdf");
  pdf.write(path);
  PdfTextDumpOpenFile(wide(path).c_str(), u"");
  for (int i = 1; i <= pageCount; ++i) {
    ASSERT_EQ(extract(i), std::to_string(i));
  }
  EXPECT_EQ(extract(1), "1");
}

} // namespace
} // namespace glyphruntest
