// From codes to text: encodings, maps to Unicode, fonts without any.

#include "Pages.h"

#include <gtest/gtest.h>

namespace glyphruntest {
namespace {

std::string wordsWithFont(PdfBuilder& pdf, const std::string& font, const std::string& show) {
  pdf.addPage("BT /X 10 Tf 50 700 Td " + show + " Tj ET", "/Font<</X " + font + ">>");
  return textOf(wordsOf(pdf));
}

std::string toUnicode(PdfBuilder& pdf, const std::string& body) {
  return "/ToUnicode " +
         PdfBuilder::ref(
             pdf.addStream("/CIDInit /ProcSet findresource begin begincmap\n1 begincodespacerange "
                           "<00> <FF> endcodespacerange\n" +
                           body + "\nendcmap"));
}

TEST(Fonts, DifferencesNameGlyphs) {
  PdfBuilder pdf;
  const int font = pdf.addFont(
      "Times-Roman", "/Encoding<</Differences[65/Euro/f_f_i/uni00C4/g7.alt 70/Zcaron.sc]>>");
  EXPECT_EQ(wordsWithFont(pdf, PdfBuilder::ref(font), "(ABCFz)"), "\u20AC"
                                                                  "ffi\u00C4\u017Dz");
}

TEST(Fonts, MapsToUnicodeComeFirst) {
  PdfBuilder pdf;
  const std::string map =
      toUnicode(pdf, "2 beginbfchar <41> <00660066> <42> <D835DC00> endbfchar\n"
                     "2 beginbfrange <43> <45> <0391> <46> <47> [<0058> <0059005A>] endbfrange");
  const int font = pdf.addFont("Helvetica", map + "/Encoding/WinAnsiEncoding");
  EXPECT_EQ(wordsWithFont(pdf, PdfBuilder::ref(font), "(ABCDEFGh)"),
            "ff\U0001D400\u0391\u0392\u0393XYZh");
}

TEST(Fonts, CodesOfOneToFourBytes) {
  PdfBuilder pdf;
  const int encoding = pdf.addStream(
      "/WMode 0 def 3 begincodespacerange <00> <7F> <8000> <80FF> <90000000> <900000FF> "
      "endcodespacerange\n2 begincidrange <00> <7F> 0 <8000> <80FF> 300 endcidrange\n"
      "1 begincidchar <90000001> 900 endcidchar",
      "/Type/CMap/CMapName/Own");
  const std::string map =
      toUnicode(pdf, "1 beginbfrange <00> <7F> <0000> endbfrange 2 beginbfchar <8001> <00E4> "
                     "<90000001> <00F6> endbfchar");
  const int descendant =
      pdf.add("<</Subtype/CIDFontType0/BaseFont/Any/DW 500/W[0[600] 1 127 550 301 301 700]"
              "/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)>>>>");
  const int font = pdf.add("<</Subtype/Type0/BaseFont/Any/Encoding " + PdfBuilder::ref(encoding) +
                           "/DescendantFonts[" + PdfBuilder::ref(descendant) + "]" + map + ">>");
  EXPECT_EQ(wordsWithFont(pdf, PdfBuilder::ref(font), "<41 8001 90000001 42>"), "A\u00E4\u00F6B");
}

TEST(Fonts, CollectionsExplainCidsWithoutAMap) {
  PdfBuilder pdf;
  const int descendant = pdf.add(
      "<</Subtype/CIDFontType0/BaseFont/Any/CIDSystemInfo<</Registry(Adobe)/Ordering(Japan1)>>>>");
  const int font = pdf.add("<</Subtype/Type0/BaseFont/Any/Encoding/90ms-RKSJ-H/DescendantFonts[" +
                           PdfBuilder::ref(descendant) + "]>>");
  EXPECT_EQ(wordsWithFont(pdf, PdfBuilder::ref(font), "<93FA967B41>"), "\u65E5\u672CA");
}

TEST(Fonts, Type3GlyphsHaveTextAndAreNeverRun) {
  PdfBuilder pdf;
  const int font = pdf.reserve();
  const int glyph = pdf.addStream("1000 0 d0 BT /S 1 Tf (AAAAAAAAAA) Tj ET");
  pdf.set(font, "<</Type/Font/Subtype/Type3/FontMatrix[0.001 0 0 0.001 0 0]/FontBBox[0 0 1000 "
                "1000]/FirstChar 65"
                "/LastChar 66/Widths[500 2000]/Encoding<</Differences[65/A/B]>>/CharProcs<</A " +
                    PdfBuilder::ref(glyph) + "/B " + PdfBuilder::ref(glyph) +
                    ">>/Resources<</Font<</S " + PdfBuilder::ref(font) + ">>>>>>");
  pdf.addPage("BT /X 10 Tf 50 700 Td [(AB)-300(A)]TJ ET",
              "/Font<</X " + PdfBuilder::ref(font) + ">>");
  EXPECT_EQ(wordsOf(pdf), (std::vector<Word>{{"AB", 50, 100}, {"A", 78, 100}}));
}

TEST(Fonts, MissingAndBrokenOnesStillGiveText) {
  EXPECT_EQ(textOf(wordsOfContent("BT /None 10 Tf 50 700 Td (Word) Tj ET")), "Word");
  EXPECT_EQ(textOf(wordsOfContent("BT 50 700 Td 10 0 0 10 50 700 Tm /None 1 Tf (Word) Tj ET")),
            "Word");
  PdfBuilder pdf;
  const int broken = pdf.add("<</Type/Font/Subtype/TrueType/FirstChar -5/LastChar "
                             "9999999/Widths[(a) null 7]/Encoding 17 0 R"
                             "/ToUnicode 1 0 R/FontDescriptor<</FontFile2 1 0 R>>>>");
  wordsWithFont(pdf, PdfBuilder::ref(broken), "(Word)");
  EXPECT_EQ(GetProcessingStatus(), GLYPHRUN_OK);
}

TEST(Fonts, UnreadableTextIsToldFromNoText) {
  PdfBuilder pdf;
  const int descendant = pdf.add("<</Subtype/CIDFontType2/BaseFont/Any/CIDSystemInfo<</"
                                 "Registry(Adobe)/Ordering(Identity)>>>>");
  const int font = pdf.add("<</Subtype/Type0/BaseFont/Any/Encoding/Identity-H/DescendantFonts[" +
                           PdfBuilder::ref(descendant) + "]>>");
  const std::string fonts = plainFonts(pdf);
  pdf.addPage("BT /X 10 Tf 50 700 Td <000100020003> Tj ET",
              "/Font<</X " + PdfBuilder::ref(font) + ">>");
  pdf.addPage("10 10 100 100 re f", fonts);
  pdf.addPage("BT /F 10 Tf 50 700 Td ( ) Tj ET", fonts);
  pdf.addPage("BT /F 10 Tf 50 700 Td (x) Tj ET", fonts);
  EXPECT_EQ(textOf(wordsOf(pdf, 1)), "\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(GetPageState(), GLYPHRUN_PAGE_UNREADABLE);
  for (const int empty : {2, 3}) {
    PdfTextDumpFilePages(empty, empty);
    EXPECT_EQ(GetPageState(), GLYPHRUN_PAGE_EMPTY);
  }
  PdfTextDumpFilePages(4, 4);
  EXPECT_EQ(GetPageState(), GLYPHRUN_PAGE_GOOD);
}

} // namespace
} // namespace glyphruntest
