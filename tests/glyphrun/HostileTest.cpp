// Pages made to exhaust the reader. They end by counts, so these tests need no clock; what goes
// wrong here hangs or crashes the test program.

#include "Pages.h"

#include <gtest/gtest.h>

namespace glyphruntest {
namespace {

/// Adds a good page, and checks that it reads well after the bad one.
void expectNextPageGood(PdfBuilder& pdf, int expectedState) {
  pdf.addPage("BT /F 10 Tf 50 700 Td (Next) Tj ET", plainFonts(pdf));
  wordsOf(pdf, 1);
  EXPECT_EQ(GetPageState(), expectedState);
  EXPECT_EQ(textOf(wordsOf(pdf, 2)), "Next");
  EXPECT_EQ(GetPageState(), GLYPHRUN_PAGE_GOOD);
}

TEST(Hostile, FormsThatDrawThemselvesEnd) {
  PdfBuilder pdf;
  const std::string fonts = plainFonts(pdf);
  const int one = pdf.reserve();
  const int two = pdf.reserve();
  const std::string resources = "/Subtype/Form/BBox[0 0 600 800]/Resources<<" + fonts +
                                "/XObject<</A " + PdfBuilder::ref(one) + "/B " +
                                PdfBuilder::ref(two) + ">>>>";
  pdf.set(one, PdfBuilder::stream("/B Do /A Do BT /F 10 Tf 50 700 Td (one) Tj ET", resources));
  pdf.set(two, PdfBuilder::stream("/A Do BT /F 10 Tf 50 680 Td (two) Tj ET", resources));
  pdf.addPage("/A Do", "/XObject<</A " + PdfBuilder::ref(one) + ">>");
  EXPECT_EQ(textOf(wordsOf(pdf)), "one two");
}

TEST(Hostile, FormsThatMultiplyEndByTheLimitOfContent) {
  PdfBuilder pdf;
  std::vector<int> forms(20);
  for (int& form : forms) {
    form = pdf.reserve();
  }
  for (std::size_t i = 0; i < forms.size(); ++i) {
    const std::string next =
        i + 1 < forms.size() ? "/XObject<</N " + PdfBuilder::ref(forms[i + 1]) + ">>" : "";
    pdf.set(forms[i], PdfBuilder::stream(i + 1 < forms.size() ? repeat("/N Do ", 20) : "() Tj",
                                         "/Subtype/Form/BBox[0 0 1 1]/Resources<<" + next + ">>"));
  }
  pdf.addPage("/N Do", "/XObject<</N " + PdfBuilder::ref(forms[0]) + ">>");
  expectNextPageGood(pdf, GLYPHRUN_PAGE_DAMAGED);
}

TEST(Hostile, DeepNestingEndsAndTheWordsAboveStay) {
  PdfBuilder pdf;
  const std::string fonts = plainFonts(pdf);
  std::vector<int> forms(200);
  for (int& form : forms) {
    form = pdf.reserve();
  }
  for (std::size_t i = 0; i < forms.size(); ++i) {
    pdf.set(forms[i], PdfBuilder::stream(
                          "BT /F 1 Tf 50 " + std::to_string(700 - i) + " Td (x) Tj ET /N Do",
                          "/Subtype/Form/BBox[0 0 600 800]/Resources<<" + fonts + "/XObject<</N " +
                              PdfBuilder::ref(forms[(i + 1) % forms.size()]) + ">>>>"));
  }
  pdf.addPage("/N Do", "/XObject<</N " + PdfBuilder::ref(forms[0]) + ">>");
  const auto words = wordsOf(pdf);
  EXPECT_EQ(GetPageState(), GLYPHRUN_PAGE_DAMAGED);
  EXPECT_GE(words.size(), 20U);
  EXPECT_LT(words.size(), 200U);
}

TEST(Hostile, StatesMarksAndOperandsWithoutEnd) {
  const std::string word = "BT /F 10 Tf 50 700 Td (Word) Tj ET ";
  EXPECT_EQ(textOf(wordsOfContent(repeat("q ", 100'000) + word)), "Word");
  EXPECT_EQ(textOf(wordsOfContent(repeat("Q EMC ", 100'000) + word)), "Word");
  EXPECT_EQ(textOf(wordsOfContent(repeat("/P<</MCID 0>>BDC ", 100'000) + word)), "Word");
  EXPECT_EQ(textOf(wordsOfContent(repeat("1 ", 100'000) + " w " + word)), "Word");
  EXPECT_EQ(textOf(wordsOfContent(repeat("[", 100'000) + "] TJ " + word)), "Word");
  EXPECT_EQ(textOf(wordsOfContent(word + repeat("<<", 100'000))), "Word");
  EXPECT_EQ(textOf(wordsOfContent(word + repeat("(", 100'000))), "Word");
}

TEST(Hostile, SenselessNumbersDoNotSpoilTheRest) {
  const std::string word = " BT /F 10 Tf 50 700 Td (Word) Tj ET ";
  const std::string far = std::string(400, '9');
  EXPECT_EQ(textOf(wordsOfContent("q " + far + " 0 0 " + far + " 0 0 cm BT /F 10 Tf (far) Tj ET Q" +
                                  word)),
            "Word");
  EXPECT_EQ(textOf(wordsOfContent("q 0 0 0 0 0 0 cm BT /F 10 Tf (flat) Tj ET Q" + word)), "Word");
  EXPECT_EQ(textOf(wordsOfContent("q BT /F 0 Tf (none) Tj ET Q" + word)), "Word");
  EXPECT_EQ(textOf(wordsOfContent("q BT /F 1 Tf " + far + " Tc (ab) Tj ET Q" + word)), "Word a");
  EXPECT_EQ(textOf(wordsOfContent(
                word, "/MediaBox[0 0 99999999 99999999]/CropBox[0 0 600 800]/Rotate " + far)),
            "Word");
}

TEST(Hostile, TooManyGlyphsEndThePage) {
  PdfBuilder pdf;
  pdf.addPage(repeat("BT /F 10 Tf 50 700 Td (" + std::string(500, 'x') + ") Tj ET ", 3'000),
              plainFonts(pdf));
  expectNextPageGood(pdf, GLYPHRUN_PAGE_DAMAGED);
}

TEST(Hostile, MapsThatClaimEveryCodeCostNothing) {
  PdfBuilder pdf;
  const int map =
      pdf.addStream(repeat("1 begincodespacerange <00000000> <FFFFFFFF> endcodespacerange ", 39) +
                    "1 beginbfrange <00000000> <FFFFFFFF> <0041> endbfrange "
                    "1 begincidrange <00000000> <FFFFFFFF> 1 endcidrange ");
  const std::string widths = repeat("0 65535 500 ", 20'000);
  const int descendant = pdf.add("<</Subtype/CIDFontType2/BaseFont/Any/W[" + widths + "]>>");
  const int font =
      pdf.add("<</Subtype/Type0/BaseFont/Any/Encoding " + PdfBuilder::ref(map) + "/ToUnicode " +
              PdfBuilder::ref(map) + "/DescendantFonts[" + PdfBuilder::ref(descendant) + "]>>");
  pdf.addPage("BT /X 10 Tf 50 700 Td <0000000000000001> Tj ET",
              "/Font<</X " + PdfBuilder::ref(font) + ">>");
  EXPECT_EQ(textOf(wordsOf(pdf)), "AB");
}

TEST(Hostile, ManyWordsOnOneSpotAreDoneInTime) {
  PdfBuilder pdf;
  pdf.addPage(repeat("BT /F 10 Tf 50 700 Td (a) Tj ET BT /F 10 Tf 50 700 Td (b) Tj ET ", 100'000),
              plainFonts(pdf));
  wordsOf(pdf);
  EXPECT_GT(getNumWords(), 0);
}

} // namespace
} // namespace glyphruntest
