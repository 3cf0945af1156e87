// What one word is, where it is, which text counts, what its codes mean: the rows of pages.txt.

#include "Pages.h"

#include <gtest/gtest.h>

namespace glyphruntest {
namespace {

/// A row begins with "# the fault that it would catch" and ends with an empty line. "show" is a
/// page with text that starts at 50,700 in Helvetica 10, "words" what the next page has; the other
/// lines are those of PdfBuilder::addText.
TEST(Pages, HaveTheWordsAndPlacesThatTheyShow) {
  std::ifstream rows(FOLIVEX_SOURCE_DIR "/tests/glyphrun/pages.txt");
  int count = 0;
  for (std::string fault; std::getline(rows, fault);) {
    SCOPED_TRACE(fault);
    std::string text;
    std::vector<std::string> expected;
    for (std::string line; std::getline(rows, line) && !line.empty();) {
      if (line.rfind("words", 0) == 0) {
        expected.push_back(line.substr(std::min<std::size_t>(line.size(), 6)));
      } else if (line.rfind("show ", 0) == 0) {
        text += "page | BT /F 10 Tf 50 700 Td " + line.substr(5) + " ET\n";
      } else {
        text += line + "\n";
      }
    }
    PdfBuilder pdf = newPdf();
    pdf.addText(text, plainFonts);
    ASSERT_FALSE(expected.empty());
    for (int page = 1; page <= static_cast<int>(expected.size()); ++page) {
      const std::string& words = expected[static_cast<std::size_t>(page) - 1];
      EXPECT_EQ(wordsOf(pdf, page, words.find('@') != std::string::npos), words);
      EXPECT_EQ(GetProcessingStatus(), GLYPHRUN_OK);
      ++count;
    }
  }
  EXPECT_GT(count, 70);
}

TEST(Pages, BytesThatNoLineHolds) {
  EXPECT_EQ(wordsOfContent("BT /F 10 Tf 50 700 Td (a\\(b\\)\\\nc\\101) Tj ET"), "a(b)cA");
  EXPECT_EQ(wordsOfContent(show("before") +
                           "BI /W 8 /H 1 /BPC 8 /CS /G ID \x01(EI\x80 EI EI Q\nEI " +
                           show("after", 50, 680)),
            "before after");
}

TEST(Pages, MoreWordSpacingIsMoreTolerant) {
  const char* const content = "BT /F 10 Tf 50 700 Td [(Total)-200(sum)]TJ ET";
  EXPECT_EQ(wordsOfContent(content), "Total sum");
  SetWordSpacing(1.15);
  EXPECT_EQ(wordsOfContent(content), "Totalsum");
  for (const double senseless : {-1.0, 0.0, std::numeric_limits<double>::quiet_NaN()}) {
    SetWordSpacing(senseless);
    EXPECT_EQ(wordsOfContent(content), "Total sum");
  }
}

TEST(Pages, UnreadableTextIsToldFromNoText) {
  PdfBuilder pdf = newPdf();
  pdf.addText(
      "unknown = <</Subtype/Type0/BaseFont/Any/Encoding/Identity-H/DescendantFonts[@any]>>\n"
      "page /Resources<</Font<</X @unknown>>>> | BT /X 10 Tf <000100020003> Tj ET\n"
      "page | 10 10 100 100 re f\n"
      "page | BT /F 10 Tf 50 700 Td ( ) Tj ET\n"
      "page | BT /F 10 Tf 50 700 Td (x) Tj ET\n"
      "page /Resources<</Font<</F @F/X @unknown>>>> | BT /F 10 Tf 50 700 Td (Total 1000) Tj\n"
      " /X 10 Tf <0001> Tj ET\n",
      plainFonts);
  EXPECT_EQ(wordsOf(pdf), "\uFFFD\uFFFD\uFFFD");
  int page = 0;
  for (const int state : {GLYPHRUN_PAGE_UNREADABLE, GLYPHRUN_PAGE_EMPTY, GLYPHRUN_PAGE_EMPTY,
                          GLYPHRUN_PAGE_GOOD, GLYPHRUN_PAGE_UNREADABLE}) {
    ++page;
    PdfTextDumpFilePages(page, page);
    EXPECT_EQ(GetPageState(), state);
  }
}

/// A compressed stream that holds its data as they are, up to the end of a block that is not the
/// last.
std::string flushed(const std::string& data) {
  const auto size = static_cast<unsigned>(data.size());
  std::string out("\x78\x01\x00", 3);
  for (const unsigned value : {size, ~size}) {
    out += static_cast<char>(value & 0xFF);
    out += static_cast<char>(value >> 8 & 0xFF);
  }
  return out + data + std::string("\0\0\0\xFF\xFF", 5);
}

TEST(Pages, AreReadInPartOnlyWhenTheyAre) {
  const std::string content = show("10002233");
  const std::string whole = flushed(content);
  int row = 0;
  for (const std::string& data : {whole, std::string(), whole.substr(0, whole.size() - 15)}) {
    PdfBuilder pdf = newPdf();
    pdf.addPageObject(PdfBuilder::ref(pdf.addStream(data, "/Filter/FlateDecode")), plainFonts);
    wordsOf(pdf);
    EXPECT_EQ(GetPageState(), std::vector<int>({GLYPHRUN_PAGE_GOOD, GLYPHRUN_PAGE_EMPTY,
                                                GLYPHRUN_PAGE_DAMAGED})[row++]);
  }
}

} // namespace
} // namespace glyphruntest
