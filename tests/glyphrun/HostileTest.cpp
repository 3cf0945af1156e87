// Pages made to exhaust the reader. They end by counts, so these tests need no clock; what goes
// wrong here hangs or crashes the test program.

#include "Pages.h"

#include <gtest/gtest.h>

namespace glyphruntest {
namespace {

/// Forms with this content that each draw the next one several times; the last has a text.
PdfBuilder chainOfForms(int count, int times, const std::string& content) {
  PdfBuilder pdf = newPdf();
  for (int i = 0; i < count; ++i) {
    pdf.addText("form" + std::to_string(i) + " = /Subtype/Form/BBox[0 0 600 800]/Resources<<" +
                plainFonts + "/XObject<</N @form" + std::to_string(i + 1) + ">>>> | " + content +
                repeat("/N Do ", times));
  }
  pdf.addText("form" + std::to_string(count) + " = /Subtype/Form/BBox[0 0 1 1] | () Tj\n" +
              "page /Resources<</XObject<</N @form0>>>> | /N Do");
  return pdf;
}

TEST(Hostile, EndlessPagesEndAndTheNextIsGood) {
  PdfBuilder glyphs = newPdf();
  glyphs.addPage(repeat(show(std::string(500, 'x')), 3'000), plainFonts);
  for (PdfBuilder pdf : {chainOfForms(20, 20, ""), chainOfForms(200, 1, ""), glyphs}) {
    pdf.addPage(show("Next"), plainFonts);
    wordsOf(pdf);
    EXPECT_EQ(GetPageState(), GLYPHRUN_PAGE_DAMAGED);
    EXPECT_EQ(wordsOf(pdf, 2), "Next");
    EXPECT_EQ(GetPageState(), GLYPHRUN_PAGE_GOOD);
  }
}

TEST(Hostile, DeepNestingKeepsTheWordsAbove) {
  wordsOf(chainOfForms(200, 1, show("x") + "1 0 0 1 0 -2 cm "));
  EXPECT_GE(getNumWords(), 20);
  EXPECT_LT(getNumWords(), 200);
}

TEST(Hostile, SenselessOperandsDoNotSpoilTheRest) {
  const std::string word = " " + show("Word");
  const std::string far = std::string(400, '9');
  for (const std::string& content :
       {repeat("q ", 100'000) + word, repeat("Q EMC ", 100'000) + word,
        repeat("/P<</MCID 0>>BDC ", 100'000) + word, repeat("1 ", 100'000) + " w " + word,
        repeat("[", 100'000) + "] TJ " + word, word + repeat("<<", 100'000),
        word + repeat("(", 100'000),
        "q " + far + " 0 0 " + far + " 0 0 cm BT /F 10 Tf (far) Tj ET Q" + word,
        "q 0 0 0 0 0 0 cm BT /F 10 Tf (flat) Tj ET Q" + word,
        "q BT /F 0 Tf (none) Tj ET Q" + word}) {
    EXPECT_EQ(wordsOfContent(content), "Word") << content.substr(0, 30);
  }
  EXPECT_EQ(wordsOfContent("q BT /F 1 Tf " + far + " Tc (ab) Tj ET Q" + word), "Word a");
  EXPECT_EQ(
      wordsOfContent(word, "/MediaBox[0 0 99999999 99999999]/CropBox[0 0 600 800]/Rotate " + far),
      "Word");
}

TEST(Hostile, MapsThatClaimEveryCodeCostNothing) {
  PdfBuilder pdf;
  pdf.addText("map =  | " +
              repeat("1 begincodespacerange <00000000> <FFFFFFFF> endcodespacerange ", 39) +
              "1 beginbfrange <00000000> <FFFFFFFF> <0041> endbfrange "
              "1 begincidrange <00000000> <FFFFFFFF> 1 endcidrange\n"
              "wide = <</Subtype/CIDFontType2/BaseFont/Any/W[" +
              repeat("0 65535 500 ", 20'000) +
              "]>>\n"
              "font = <</Subtype/Type0/Encoding @map/ToUnicode @map/DescendantFonts[@wide]>>\n"
              "page /Resources<</Font<</X @font>>>> |"
              " BT /X 10 Tf 50 700 Td <0000000000000001> Tj ET");
  EXPECT_EQ(wordsOf(pdf), "AB");
}

TEST(Hostile, ManyWordsOnOneSpotAreDoneInTime) {
  EXPECT_NE(wordsOfContent(repeat(show("a") + show("b"), 100'000)), "");
}

} // namespace
} // namespace glyphruntest
