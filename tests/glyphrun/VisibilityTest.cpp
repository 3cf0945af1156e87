// Which text counts: layers, boxes, annotations, form fields, forms.

#include "Pages.h"

#include <gtest/gtest.h>

namespace glyphruntest {
namespace {

std::string at(int x, int y, const std::string& text) {
  return "BT /F 10 Tf " + std::to_string(x) + " " + std::to_string(y) + " Td (" + text + ") Tj ET ";
}

std::string formEntries(const std::string& fonts, const std::string& more = "") {
  return "/Type/XObject/Subtype/Form/BBox[0 0 600 800]/Resources<<" + fonts + ">>" + more;
}

TEST(Visibility, TextOutsideTheCropBoxDoesNotCount) {
  const std::string content = at(100, 700, "inside") + at(100, 790, "above") +
                              at(585, 700, "right") + at(-40, 700, "left") + at(100, 20, "below");
  EXPECT_EQ(textOf(wordsOfContent(content, "/CropBox[0 50 580 780]")), "inside");
}

TEST(Visibility, HiddenLayersDoNotCount) {
  PdfBuilder pdf;
  const std::string fonts = plainFonts(pdf);
  const int on = pdf.add("<</Type/OCG/Name(on)>>");
  const int off = pdf.add("<</Type/OCG/Name(off)>>");
  const int form =
      pdf.addStream(at(50, 600, "hiddenform"), formEntries(fonts, "/OC " + PdfBuilder::ref(off)));
  pdf.addToCatalog("/OCProperties<</OCGs[" + PdfBuilder::ref(on) + " " + PdfBuilder::ref(off) +
                   "]/D<</OFF[" + PdfBuilder::ref(off) + "]>>>>");
  pdf.addPage("/OC/A BDC " + at(50, 700, "shown") + "EMC /OC/B BDC " + at(50, 690, "hidden") +
                  "/Span<<>>BDC " + at(50, 680, "nested") + "EMC EMC " + at(50, 670, "after") +
                  "/X Do",
              fonts + "/Properties<</A " + PdfBuilder::ref(on) + "/B " + PdfBuilder::ref(off) +
                  ">>/XObject<</X " + PdfBuilder::ref(form) + ">>");
  EXPECT_EQ(textOf(wordsOf(pdf)), "shown after");
}

TEST(Visibility, NestedFormsCountAndTheirBoxesCut) {
  PdfBuilder pdf;
  const std::string fonts = plainFonts(pdf);
  const int inner =
      pdf.addStream(at(10, 10, "inner") + at(10, 300, "cut"),
                    "/Type/XObject/Subtype/Form/BBox[0 0 100 100]/Resources<<" + fonts + ">>");
  const int outer =
      pdf.addStream("q 1 0 0 1 20 20 cm /I Do Q " + at(0, 0, "outer"),
                    formEntries(fonts + "/XObject<</I " + PdfBuilder::ref(inner) + ">>"));
  pdf.addPage("q 1 0 0 1 100 100 cm /O Do Q", "/XObject<</O " + PdfBuilder::ref(outer) + ">>");
  EXPECT_EQ(wordsOf(pdf), (std::vector<Word>{{"inner", 130, 670}, {"outer", 100, 700}}));
}

TEST(Visibility, FormsWithoutResourcesUseThoseOfThePage) {
  PdfBuilder pdf;
  const std::string fonts = plainFonts(pdf);
  const int form = pdf.addStream(at(10, 10, "Word"), "/Subtype/Form/BBox[0 0 100 100]");
  pdf.addPage("/X Do", fonts + "/XObject<</X " + PdfBuilder::ref(form) + ">>");
  EXPECT_EQ(textOf(wordsOf(pdf)), "Word");
}

std::string annotation(PdfBuilder& pdf, const std::string& entries, int form) {
  return PdfBuilder::ref(pdf.add("<</Type/Annot/Rect[100 600 300 650]" + entries + "/AP<</N " +
                                 PdfBuilder::ref(form) + ">>>>")) +
         " ";
}

TEST(Visibility, AnnotationsCountByTheirAppearance) {
  PdfBuilder pdf;
  const std::string fonts = plainFonts(pdf);
  const auto stamp = [&](const std::string& text) {
    return pdf.addStream(at(5, 5, text),
                         "/Subtype/Form/BBox[0 0 100 25]/Resources<<" + fonts + ">>");
  };
  const int off = pdf.add("<</Type/OCG/Name(off)>>");
  pdf.addToCatalog("/OCProperties<</OCGs[" + PdfBuilder::ref(off) + "]/D<</OFF[" +
                   PdfBuilder::ref(off) + "]>>>>");
  std::string list = annotation(pdf, "/Subtype/Stamp", stamp("stamp"));
  list += annotation(pdf, "/Subtype/Stamp/F 2", stamp("hidden"));
  list += annotation(pdf, "/Subtype/Stamp/F 32", stamp("noview"));
  list += annotation(pdf, "/Subtype/Popup", stamp("popup"));
  list += annotation(pdf, "/Subtype/Stamp/OC " + PdfBuilder::ref(off), stamp("layer"));
  pdf.addPage("", fonts, "/Annots[" + list + "17 0 R null (junk)]");
  // The box of 100 x 25 is fitted into 200 x 50.
  EXPECT_EQ(wordsOf(pdf), (std::vector<Word>{{"stamp", 110, 190}}));
}

TEST(Visibility, FormFieldsCountByTheirValue) {
  PdfBuilder pdf;
  const std::string fonts = plainFonts(pdf);
  const int checked =
      pdf.addStream(at(5, 5, "Yes"), "/Subtype/Form/BBox[0 0 200 50]/Resources<<" + fonts + ">>");
  const int box = pdf.add("<</Subtype/Widget/FT/Btn/T(b)/Rect[100 600 300 650]/AS/On/AP<</N<</On " +
                          PdfBuilder::ref(checked) + ">>>>>>");
  const int unchecked =
      pdf.add("<</Subtype/Widget/FT/Btn/T(c)/Rect[100 500 300 550]/AS/Off/AP<</N<</On " +
              PdfBuilder::ref(checked) + ">>>>>>");
  const int undrawn = pdf.add(
      "<</Subtype/Widget/FT/Tx/T(t)/V(Jane Doe)/DA(/Helv 12 Tf 0 g)/Rect[100 400 300 420]>>");
  const int empty =
      pdf.add("<</Subtype/Widget/FT/Tx/T(e)/DA(/Helv 12 Tf 0 g)/Rect[100 300 300 320]>>");
  const std::string all = PdfBuilder::ref(box) + " " + PdfBuilder::ref(unchecked) + " " +
                          PdfBuilder::ref(undrawn) + " " + PdfBuilder::ref(empty);
  pdf.addToCatalog("/AcroForm<</Fields[" + all + "]/DR<</Font<</Helv " +
                   PdfBuilder::ref(pdf.addFont("Helvetica")) + ">>>>/DA(/Helv 0 Tf 0 g)>>");
  pdf.addPage("", fonts, "/Annots[" + all + "]");
  EXPECT_EQ(textOf(wordsOf(pdf)), "Yes Jane Doe");
}

TEST(Visibility, InlineImagesArePassedOver) {
  EXPECT_EQ(textOf(wordsOfContent(at(50, 700, "before") +
                                  "BI /W 8 /H 1 /BPC 8 /CS /G ID \x01(EI\x80 EI EI Q\nEI " +
                                  at(50, 680, "after"))),
            "before after");
}

} // namespace
} // namespace glyphruntest
