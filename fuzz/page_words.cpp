// A page with this content in fonts made of the other parts, so that a search need not find out
// what a PDF is before it comes to them.
//
// An input is parts between lines of "----": content, ToUnicode map, map of codes to glyphs, font
// program, entries of a font's encoding, content of a form that is a glyph as well, entries of the
// page.
#include "fuzz/Targets.h"
#include "tests/support/PdfBuilder.h"

namespace fuzzing {

namespace {

using testpdf::PdfBuilder;

class PageOfParts {
public:
  explicit PageOfParts(const QByteArray& input) : m_parts(partsOf(input, 7)) {}

  QByteArray file() {
    m_map = PdfBuilder::ref(m_pdf.addStream(part(1)));
    m_program = PdfBuilder::ref(m_pdf.addStream(part(3)));
    m_form = PdfBuilder::ref(m_pdf.addStream(part(5), "/Subtype/Form/BBox[0 0 600 800]"));
    const std::string resources = "/Font<<" + plainFont() +
                                  outlineFont("T", "TrueType", "FontFile2") +
                                  outlineFont("S", "Type1", "FontFile") +
                                  outlineFont("B", "Type1", "FontFile3/Subtype/Type1C") +
                                  wideFont() + glyphFont() + ">>/XObject<</X " + m_form + ">>";
    m_pdf.addPage(part(0), resources, part(6));
    return QByteArray::fromStdString(m_pdf.finish());
  }

private:
  std::string part(qsizetype index) const { return m_parts.at(index).toStdString(); }

  std::string added(const std::string& name, const std::string& font) {
    return '/' + name + ' ' + PdfBuilder::ref(m_pdf.add("<</Type/Font" + font + ">>"));
  }

  std::string plainFont() {
    return added("F", "/Subtype/Type1/BaseFont/Helvetica/Encoding/WinAnsiEncoding");
  }

  std::string outlineFont(const std::string& name, const std::string& kind,
                          const std::string& file) {
    const int descriptor =
        m_pdf.add("<</Type/FontDescriptor/FontName/Any/Flags 4/" + file + ' ' + m_program + ">>");
    return added(name, "/BaseFont/Any/Subtype/" + kind +
                           "/FirstChar 32/LastChar 34/Widths[500 300 9]" + "/Encoding<<" + part(4) +
                           ">>/ToUnicode " + m_map + "/FontDescriptor " +
                           PdfBuilder::ref(descriptor));
  }

  std::string wideFont() {
    const std::string encoding =
        m_parts.at(2).isEmpty() ? "/Identity-H" : PdfBuilder::ref(m_pdf.addStream(part(2)));
    const int descriptor =
        m_pdf.add("<</Type/FontDescriptor/FontName/Any/Flags 4/FontFile2 " + m_program + ">>");
    const int glyphs =
        m_pdf.add("<</Type/Font/Subtype/CIDFontType2/BaseFont/Any/DW 500/W[1[9 8] 3 7 5]" +
                  ("/FontDescriptor " + PdfBuilder::ref(descriptor)) + ">>");
    return added("C", "/Subtype/Type0/BaseFont/Any/Encoding " + encoding + "/ToUnicode " + m_map +
                          "/DescendantFonts[" + PdfBuilder::ref(glyphs) + "]");
  }

  std::string glyphFont() {
    return added("G", "/Subtype/Type3/FontMatrix[.01 0 0 .01 0 0]/FontBBox[0 0 9 9]/FirstChar 65"
                      "/LastChar 66/Widths[50 60]/Encoding<</Differences[65/a/b]>>/CharProcs<</a " +
                          m_form + "/b " + m_form + ">>");
  }

  QByteArrayList m_parts;
  PdfBuilder m_pdf;
  std::string m_map;
  std::string m_program;
  std::string m_form;
};

} // namespace

void runPageWords(const QByteArray& input) {
  runPdfWords(PageOfParts(input).file());
}

} // namespace fuzzing
