// Where words are: known places on pages that are turned, cropped, scaled.

#include "Pages.h"

#include <gtest/gtest.h>

namespace glyphruntest {
namespace {

struct TurnedPage {
  const char* fault;
  const char* entries;
  Word expected;
};

class Turned : public testing::TestWithParam<TurnedPage> {};

// The word's baseline starts at 100,700 of the page's own coordinates.
TEST_P(Turned, PlaceIsThatOnTheShownPage) {
  const std::string content = "BT /F 12 Tf 100 700 Td (Word) Tj ET";
  const std::vector<Word> words = wordsOfContent(content, GetParam().entries);
  ASSERT_EQ(words.size(), 1U);
  EXPECT_EQ(words[0], GetParam().expected);
}

// Turned text has no left end; the place is that of its start.
INSTANTIATE_TEST_SUITE_P(
    Pages, Turned,
    testing::Values(
        TurnedPage{"upright", "", {"Word", 100, 100}},
        TurnedPage{"crop box as origin", "/CropBox[50 100 550 780]", {"Word", 50, 80}},
        TurnedPage{"boxes with corners swapped", "/MediaBox[600 800 0 0]", {"Word", 100, 100}},
        TurnedPage{"origin not at 0,0", "/MediaBox[-50 -100 550 750]", {"Word", 150, 50}},
        TurnedPage{"turned 90", "/Rotate 90", {"Word", 700, 100}},
        TurnedPage{
            "turned 90 and cropped", "/Rotate 90/CropBox[50 100 550 780]", {"Word", 600, 50}},
        TurnedPage{"turned 180", "/Rotate 180", {"Word", 471, 700}},
        TurnedPage{"turned 270", "/Rotate 270", {"Word", 100, 500}},
        TurnedPage{"turned -90", "/Rotate -90", {"Word", 100, 500}},
        TurnedPage{"user unit ignored", "/UserUnit 2", {"Word", 100, 100}},
        TurnedPage{"empty crop box", "/CropBox[10 10 10 10]", {"Word", 100, 100}},
        TurnedPage{"crop box beyond the page", "/CropBox[-99 -99 999 999]", {"Word", 100, 100}}),
    [](const auto& test) {
      std::string name = test.param.fault;
      for (char& c : name) {
        c = std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
      }
      return name;
    });

TEST(Positions, TextTurnedOnATurnedPageReadsAsALine) {
  const auto words =
      wordsOfContent("BT /F 10 Tf 0 1 -1 0 100 200 Tm (one two) Tj ET", "/Rotate 90");
  ASSERT_EQ(textOf(words), "one two");
  EXPECT_EQ(words[0], (Word{"one", 200, 100}));
  EXPECT_EQ(words[1].v, 100);
}

TEST(Positions, BoxesAreInheritedFromTheTree) {
  PdfBuilder pdf;
  const std::string fonts = plainFonts(pdf);
  const int content = pdf.addStream("BT /F 12 Tf 100 700 Td (Word) Tj ET");
  const int middle = pdf.reserve();
  const int page = pdf.add("<</Type/Page/Contents " + PdfBuilder::ref(content) + ">>");
  pdf.set(middle, "<</Type/Pages/Count 1/Rotate 90/Resources<<" + fonts + ">>/Kids[" +
                      PdfBuilder::ref(page) + "]>>");
  pdf.set(2, "<</Type/Pages/Count 1/MediaBox[0 0 600 800]/Kids[" + PdfBuilder::ref(middle) + "]>>");
  EXPECT_EQ(wordsOf(pdf), (std::vector<Word>{{"Word", 700, 100}}));
}

TEST(Positions, MatricesOfTextFormAndPageMultiply) {
  PdfBuilder pdf;
  const std::string fonts = plainFonts(pdf);
  const int form = pdf.addStream("BT /F 5 Tf 2 0 0 2 10 20 Tm 3 Ts (Word) Tj ET",
                                 "/Type/XObject/Subtype/Form/BBox[0 0 500 500]/Matrix[1 0 0 1 5 5]"
                                 "/Resources<<" +
                                     fonts + ">>");
  pdf.addPage("q 2 0 0 2 50 60 cm /X Do Q", "/XObject<</X " + PdfBuilder::ref(form) + ">>");
  // x: 50 + 2 * (5 + 10); y: 60 + 2 * (5 + 20 + 2 * 3) from the bottom
  EXPECT_EQ(wordsOf(pdf), (std::vector<Word>{{"Word", 80, 678}}));
  EXPECT_EQ(getFontSize(), 20);
}

TEST(Positions, OneLineHasOneHeightAndASuperscriptAnother) {
  const auto words =
      wordsOfContent("BT /F 10 Tf 1 0 0 1 50 700.6 Tm (left) Tj 1 0 0 1 200 700.3 Tm (mid) Tj "
                     "1 0 0 1 300 699.9 Tm (right) Tj 1 0 0 1 400 703.5 Tm (up) Tj ET");
  ASSERT_EQ(textOf(words), "up left mid right");
  EXPECT_EQ(words[1].v, words[2].v);
  EXPECT_EQ(words[2].v, words[3].v);
  EXPECT_LT(words[0].v, words[1].v);
}

TEST(Positions, WordBoxSurroundsTheWord) {
  PdfBuilder pdf;
  pdf.addPage("BT /F 10 Tf 100 700 Td (Word) Tj ET", plainFonts(pdf));
  const std::string path = pathFor("box.pdf");
  pdf.write(path);
  GlyphrunView* view = OpenView(wide(path).c_str(), u"", nullptr);
  ASSERT_NE(view, nullptr);
  const GlyphrunWord* words = nullptr;
  ASSERT_EQ(GetViewWords(view, 1, &words), 1);
  EXPECT_NEAR(words[0].left, 100, 0.01);
  EXPECT_NEAR(words[0].right, 100 + 9.44 + 5.56 + 3.33 + 5.56, 0.01); // Helvetica's widths
  EXPECT_LT(words[0].top, 94);
  EXPECT_GT(words[0].bottom, 100);
  CloseView(view);
}

} // namespace
} // namespace glyphruntest
