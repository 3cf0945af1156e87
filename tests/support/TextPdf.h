// TextPdf: PDFs made of words at known positions.
#pragma once

#include "tests/support/PdfBuilder.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <vector>

namespace folivex::test {

/// One run of text. h and v are points from the top left of the page to the left end of the
/// baseline. Every character is 0.6 of the size wide, so a word's position is known beforehand.
struct PdfText {
  int h = 0;
  int v = 0;
  QString text;
  double size = 10;
};

struct PdfPage {
  std::vector<PdfText> texts;
};

struct PdfBookmark {
  int level = 0;      ///< 0 for the top level
  qsizetype page = 1; ///< from 1
  QString title;
};

/// Pages of 595 by 842 points. Plain ASCII is drawn in a built-in font, any other text in a font
/// whose character codes are UTF-16 units.
class TextPdf {
public:
  std::vector<PdfPage> pages;
  std::vector<PdfBookmark> bookmarks;

  /// Adds a page; each argument is a line of it: the first at v = 60, each next one 20 below.
  TextPdf& page(const QStringList& lines = {}) {
    PdfPage made;
    for (int v = 60; const QString& line : lines) {
      made.texts.push_back({60, v, line});
      v += 20;
    }
    pages.push_back(made);
    return *this;
  }

  QByteArray bytes() const {
    Builder pdf;
    pdf.addText(fonts);
    for (const PdfPage& page : pages) {
      pdf.named("p" +
                std::to_string(&page - pages.data() + 1)); // its number is before its content's
      pdf.addPage(content(page), "/Font<</F1 3 0 R/F2 6 0 R>>", "/MediaBox[0 0 595 842]");
    }
    if (!bookmarks.empty()) {
      std::size_t next = 0;
      const std::string entries = addEntries(pdf, 0, "outline", next);
      pdf.addText("catalog /Outlines @outline\noutline = <</Type/Outlines" + entries + ">>");
    }
    return QByteArray::fromStdString(pdf.finish());
  }

  void write(const QString& path) const {
    Builder::writeFile(path.toStdString(), bytes().toStdString());
  }

private:
  using Builder = testpdf::PdfBuilder;
  static constexpr auto fonts =
      "F1 = <</Type/Font/Subtype/Type1/BaseFont/Courier/Encoding/WinAnsiEncoding>>\n"
      "wide = <</Type/Font/Subtype/CIDFontType2/BaseFont/Plain/DW 600/CIDSystemInfo"
      "<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>/FontDescriptor"
      "<</Type/FontDescriptor/FontName/Plain/Flags 4/FontBBox[0 -200 600 800]"
      "/ItalicAngle 0/Ascent 800/Descent -200/CapHeight 700/StemV 80>>>>\n"
      "map =  | /CIDInit/ProcSet findresource begin 12 dict begin begincmap"
      " /CMapName/Units def/CMapType 2 def"
      " 1 begincodespacerange<0000><ffff>endcodespacerange"
      " 1 beginbfrange<0000><ffff><0000>endbfrange endcmap end end\n"
      "F2 = <</Type/Font/Subtype/Type0/BaseFont/Plain/Encoding/Identity-H"
      "/DescendantFonts[@wide]/ToUnicode @map>>";

  /// The UTF-16 units in hexadecimal digits.
  static std::string units(const QString& text) {
    QByteArray digits;
    for (const QChar c : text) {
      digits += QByteArray::number(c.unicode(), 16).rightJustified(4, '0');
    }
    return digits.toStdString();
  }

  static std::string content(const PdfPage& page) {
    std::string text = "BT\n";
    for (const PdfText& run : page.texts) {
      const bool ascii = std::all_of(run.text.begin(), run.text.end(), [](QChar c) {
        return c.unicode() >= 0x20 && c.unicode() < 0x7F;
      });
      text += (ascii ? "/F1 " : "/F2 ") + QByteArray::number(run.size).toStdString() +
              " Tf 1 0 0 1 " + std::to_string(run.h) + " " + std::to_string(842 - run.v) + " Tm <" +
              (ascii ? run.text.toLatin1().toHex().toStdString() : units(run.text)) + "> Tj\n";
    }
    return text + "ET";
  }

  /// Adds the entries of `level` from `next` on, each with those below it; what their parent says
  /// of them.
  std::string addEntries(Builder& pdf, int level, const std::string& parent,
                         std::size_t& next) const {
    std::string first;
    std::string last;
    while (next < bookmarks.size() && bookmarks[next].level == level) {
      const PdfBookmark& entry = bookmarks[next];
      const std::string name = "b" + std::to_string(next++);
      const std::string below = addEntries(pdf, level + 1, name, next);
      const bool goesOn = next < bookmarks.size() && bookmarks[next].level == level;
      pdf.addText(name + " = <</Title<feff" + units(entry.title) + ">/Parent @" + parent +
                  "/Dest[@p" + std::to_string(entry.page) + "/Fit]" + below +
                  (last.empty() ? "" : "/Prev @" + last) +
                  (goesOn ? "/Next @b" + std::to_string(next) : "") + ">>");
      first = first.empty() ? name : first;
      last = name;
    }
    return first.empty() ? "" : "/First @" + first + "/Last @" + last;
  }
};

} // namespace folivex::test
