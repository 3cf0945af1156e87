#include "Pages.h"

#include <QTemporaryDir>

namespace glyphruntest {

PdfBuilder newPdf() {
  PdfBuilder pdf;
  pdf.addText("F = <</Type/Font/Subtype/Type1/BaseFont/Helvetica/Encoding/WinAnsiEncoding>>\n"
              "T = <</Type/Font/Subtype/Type1/BaseFont/Times-Roman/Encoding/WinAnsiEncoding>>\n"
              "U = null\n"
              "V = null\n"
              "map =  | 1 begincodespacerange <0000> <FFFF> endcodespacerange"
              " 1 beginbfrange <0000> <FFFF> <0000> endbfrange\n"
              "any = <</Type/Font/Subtype/CIDFontType2/BaseFont/Any/DW 500"
              "/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)>>>>\n"
              "U = <</Type/Font/Subtype/Type0/BaseFont/Any/Encoding/Identity-H"
              "/DescendantFonts[@any]/ToUnicode @map>>\n"
              "V = <</Type/Font/Subtype/Type0/BaseFont/Any/Encoding/Identity-V"
              "/DescendantFonts[@any]/ToUnicode @map>>");
  return pdf;
}

std::string repeat(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i)
    all += text;
  return all;
}

std::string show(const std::string& text, int x, int y) {
  return "BT /F 10 Tf " + std::to_string(x) + " " + std::to_string(y) + " Td (" + text + ") Tj ET ";
}

std::string pathFor(const std::string& name) {
  static const QTemporaryDir folder;
  return folder.filePath(QString::fromStdString(name)).toStdString();
}

std::string extract(int page, bool withPlaces) {
  PdfTextDumpFilePages(page, page);
  DoReverseSort();
  std::string words;
  for (int i = 0; i < getNumWords(); ++i) {
    wordToGet(i);
    words += (i > 0 ? " " : "") + narrow(getWordStr());
    if (withPlaces) {
      words += "@" + std::to_string(getWordX()) + "," + std::to_string(getWordY());
    }
  }
  return words;
}

std::string wordsOf(const std::string& path, int page, bool withPlaces) {
  PdfTextDumpOpenFile(wide(path).c_str(), u"");
  return extract(page, withPlaces);
}

std::string wordsOf(const PdfBuilder& pdf, int page, bool withPlaces) {
  static int number = 0;
  const std::string path = pathFor("page" + std::to_string(++number) + ".pdf");
  pdf.write(path);
  return wordsOf(path, page, withPlaces);
}

std::string wordsOfContent(const std::string& content, const std::string& pageEntries) {
  PdfBuilder pdf = newPdf();
  pdf.addPage(content, plainFonts, pageEntries);
  return wordsOf(pdf);
}

} // namespace glyphruntest
