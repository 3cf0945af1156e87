// Reading ahead on threads changes nothing but the time.

#include "Pages.h"

#include <gtest/gtest.h>

namespace glyphruntest {
namespace {

// Enough for the threads to begin with the opening of the file.
constexpr int pageCount = 300;

std::string manyPages() {
  PdfBuilder pdf;
  const std::string fonts = plainFonts(pdf);
  for (int i = 1; i <= pageCount; ++i) {
    std::string content = "BT /F 10 Tf 50 700 Td ";
    for (int line = 0; line < i % 17; ++line)
      content += "[(Page)-200(" + std::to_string(i) + ")] TJ /T 9 Tf 0 -20 Td ";
    pdf.addPage(content + "ET", fonts);
  }
  std::string path = pathFor("ahead.pdf");
  pdf.write(path);
  return path;
}

std::string extract(int page) {
  PdfTextDumpFilePages(page, page);
  DoReverseSort();
  std::string text = std::to_string(GetPageState());
  for (int i = 0; i < getNumWords(); ++i) {
    wordToGet(i);
    text += " " + narrow(getWordStr()) + "@" + std::to_string(getWordX()) + "," +
            std::to_string(getWordY());
  }
  return text;
}

class Ahead : public testing::TestWithParam<int> {
protected:
  void SetUp() override { PdfTextDumpOpenFile(wide(manyPages()).c_str(), u""); }
  void TearDown() override {
    SetReadAhead(0);
    SetWordSpacing(1.02);
    PdfTextDumpCloseFile();
  }
};

TEST_P(Ahead, PagesComeInOrderWithTheSameWords) {
  std::vector<std::string> alone;
  for (int page = 1; page <= pageCount; ++page)
    alone.push_back(extract(page));
  SetReadAhead(GetParam());
  for (const bool fromOpening : {false, true}) {
    if (fromOpening)
      PdfTextDumpOpenFile(wide(pathFor("ahead.pdf")).c_str(), u"");
    for (int page = 1; page <= pageCount; ++page)
      ASSERT_EQ(extract(page), alone[static_cast<std::size_t>(page) - 1]);
    // Back, forth, twice the same, to the end and beyond.
    for (const int page : {7, 8, 9, 9, 10, 150, 151, 3, 4, 5, 299, 300, 1, 2})
      ASSERT_EQ(extract(page), alone[static_cast<std::size_t>(page) - 1]) << page;
  }
  extract(pageCount + 1);
  EXPECT_EQ(GetProcessingStatus(), GLYPHRUN_BAD_PAGE);
}

TEST_P(Ahead, SettingsTakeEffectWithTheNextPage) {
  SetReadAhead(GetParam());
  for (int page = 1; page <= 20; ++page)
    extract(page);
  EXPECT_EQ(extract(22).find("Page22"), std::string::npos);
  EXPECT_EQ(extract(23).find("Page23"), std::string::npos);
  SetWordSpacing(1.2);
  EXPECT_NE(extract(24).find("Page24"), std::string::npos);
}

TEST_P(Ahead, ClosingEndsTheWork) {
  SetReadAhead(GetParam());
  for (int round = 0; round < 10; ++round) {
    PdfTextDumpOpenFile(wide(pathFor("ahead.pdf")).c_str(), u"");
    for (int page = 1; page <= 3 + round; ++page)
      extract(page);
    PdfTextDumpCloseFile();
    EXPECT_EQ(getNumWords(), 0);
  }
}

INSTANTIATE_TEST_SUITE_P(Threads, Ahead, testing::Values(1, 3));

} // namespace
} // namespace glyphruntest
