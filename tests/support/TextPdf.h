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
    const std::string fonts = "/Font<</F1 " + Builder::ref(pdf.addFont("Courier")) + "/F2 " +
                              Builder::ref(addUnitFont(pdf)) + ">>";
    std::vector<int> numbers;
    for (const PdfPage& page : pages) {
      // Its content is the next object.
      const int next = numbers.empty() ? objectOfFirstPage + 1 : numbers.back() + 3;
      numbers.push_back(pdf.addPageObject(Builder::ref(next), fonts, "/MediaBox[0 0 595 842]"));
      pdf.addStream(content(page));
    }
    if (!bookmarks.empty()) {
      const int outline = pdf.reserve();
      std::size_t next = 0;
      pdf.addToCatalog("/Outlines " + Builder::ref(outline));
      pdf.set(outline, "<</Type/Outlines" + addEntries(pdf, outline, 0, next, numbers) + ">>");
    }
    return QByteArray::fromStdString(pdf.finish());
  }

  void write(const QString& path) const {
    Builder::writeFile(path.toStdString(), bytes().toStdString());
  }

private:
  using Builder = testpdf::PdfBuilder;
  static constexpr int objectOfFirstPage = 7;

  /// The UTF-16 units in hexadecimal digits.
  static std::string units(const QString& text) {
    QByteArray digits;
    for (const QChar c : text) {
      digits += QByteArray::number(c.unicode(), 16).rightJustified(4, '0');
    }
    return digits.toStdString();
  }

  static int addUnitFont(Builder& pdf) {
    const int wide =
        pdf.add("<</Type/Font/Subtype/CIDFontType2/BaseFont/Plain/DW 600/CIDSystemInfo"
                "<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>/FontDescriptor"
                "<</Type/FontDescriptor/FontName/Plain/Flags 4/FontBBox[0 -200 600 800]"
                "/ItalicAngle 0/Ascent 800/Descent -200/CapHeight 700/StemV 80>>>>");
    const int map = pdf.addStream("/CIDInit/ProcSet findresource begin 12 dict begin begincmap\n"
                                  "/CMapName/Units def/CMapType 2 def\n"
                                  "1 begincodespacerange<0000><ffff>endcodespacerange\n"
                                  "1 beginbfrange<0000><ffff><0000>endbfrange\nendcmap end end");
    return pdf.add("<</Type/Font/Subtype/Type0/BaseFont/Plain/Encoding/Identity-H"
                   "/DescendantFonts[" +
                   Builder::ref(wide) + "]/ToUnicode " + Builder::ref(map) + ">>");
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
  std::string addEntries(Builder& pdf, int parent, int level, std::size_t& next,
                         const std::vector<int>& pageNumbers) const {
    std::vector<int> entries;
    std::vector<std::string> bodies;
    while (next < bookmarks.size() && bookmarks[next].level == level) {
      const PdfBookmark& entry = bookmarks[next++];
      entries.push_back(pdf.reserve());
      bodies.push_back("<</Title<feff" + units(entry.title) + ">/Parent " + Builder::ref(parent) +
                       "/Dest[" +
                       Builder::ref(pageNumbers.at(static_cast<std::size_t>(entry.page - 1))) +
                       "/Fit]" + addEntries(pdf, entries.back(), level + 1, next, pageNumbers));
    }
    for (std::size_t i = 0; i < entries.size(); ++i) {
      pdf.set(entries[i],
              bodies[i] + (i > 0 ? "/Prev " + Builder::ref(entries[i - 1]) : "") +
                  (i + 1 < entries.size() ? "/Next " + Builder::ref(entries[i + 1]) : "") + ">>");
    }
    return entries.empty() ? std::string()
                           : "/First " + Builder::ref(entries.front()) + "/Last " +
                                 Builder::ref(entries.back());
  }
};

} // namespace folivex::test
