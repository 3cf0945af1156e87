// TextPdf: PDFs made of words at known positions.
#pragma once

#include <gtest/gtest.h>

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>

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
    int v = 60;
    for (const QString& line : lines) {
      made.texts.push_back({60, v, line});
      v += 20;
    }
    pages.push_back(made);
    return *this;
  }

  QByteArray bytes() const {
    Objects objects;
    const qsizetype firstPage = objectOfFirstPage;
    const qsizetype firstBookmark = firstPage + 2 * std::ssize(pages);
    objects.add("<</Type/Catalog/Pages 2 0 R" +
                (bookmarks.empty() ? QByteArray() : "/Outlines " + number(firstBookmark) + " 0 R") +
                ">>");
    QByteArray kids;
    for (qsizetype i = 0; i < std::ssize(pages); ++i) {
      kids += number(firstPage + 2 * i) + " 0 R ";
    }
    objects.add("<</Type/Pages/Count " + number(std::ssize(pages)) + "/Kids[" + kids + "]>>");
    addFonts(objects);
    for (qsizetype i = 0; i < std::ssize(pages); ++i) {
      objects.add("<</Type/Page/Parent 2 0 R/MediaBox[0 0 595 842]/Resources<</Font<</F1 3 0 R/F2 "
                  "4 0 R>>>>/Contents " +
                  number(firstPage + 2 * i + 1) + " 0 R>>");
      objects.add(stream(content(pages[static_cast<std::size_t>(i)])));
    }
    addBookmarks(objects, firstPage, firstBookmark);
    return objects.file();
  }

  void write(const QString& path) const {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    const QByteArray all = bytes();
    ASSERT_EQ(file.write(all), all.size());
  }

private:
  static constexpr qsizetype objectOfFirstPage = 7;

  static QByteArray number(qsizetype value) { return QByteArray::number(value); }
  static QByteArray stream(const QByteArray& data) {
    return "<</Length " + number(data.size()) + ">>\nstream\n" + data + "\nendstream";
  }
  /// The UTF-16 units in hexadecimal digits, as codes of a font and as text of a bookmark.
  static QByteArray units(const QString& text) {
    QByteArray digits;
    for (const QChar c : text) {
      digits += QByteArray::number(c.unicode(), 16).rightJustified(4, '0');
    }
    return digits;
  }

  class Objects {
  public:
    void add(const QByteArray& body) {
      m_offsets.push_back(m_text.size());
      m_text += number(std::ssize(m_offsets)) + " 0 obj\n" + body + "\nendobj\n";
    }
    QByteArray file() const {
      QByteArray text =
          m_text + "xref\n0 " + number(std::ssize(m_offsets) + 1) + "\n0000000000 65535 f \n";
      for (const qsizetype offset : m_offsets) {
        text += number(offset).rightJustified(10, '0') + " 00000 n \n";
      }
      return text + "trailer\n<</Size " + number(std::ssize(m_offsets) + 1) +
             "/Root 1 0 R>>\nstartxref\n" + number(m_text.size()) + "\n%%EOF\n";
    }

  private:
    QByteArray m_text = "%PDF-1.7\n";
    std::vector<qsizetype> m_offsets;
  };

  static void addFonts(Objects& objects) {
    objects.add("<</Type/Font/Subtype/Type1/BaseFont/Courier/Encoding/WinAnsiEncoding>>");
    objects.add("<</Type/Font/Subtype/Type0/BaseFont/Plain/Encoding/Identity-H"
                "/DescendantFonts[5 0 R]/ToUnicode 6 0 R>>");
    objects.add("<</Type/Font/Subtype/CIDFontType2/BaseFont/Plain/DW 600/CIDSystemInfo"
                "<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>/FontDescriptor"
                "<</Type/FontDescriptor/FontName/Plain/Flags 4/FontBBox[0 -200 600 800]"
                "/ItalicAngle 0/Ascent 800/Descent -200/CapHeight 700/StemV 80>>>>");
    QByteArray ranges;
    for (int block = 0; block < 256; ++block) {
      if (block % 100 == 0) {
        ranges += (block > 0 ? "endbfrange\n" : "") + number(std::min(256 - block, 100)) +
                  " beginbfrange\n";
      }
      const QByteArray high = QByteArray::number(block, 16).rightJustified(2, '0');
      ranges += "<" + high + "00><" + high + "ff><" + high + "00>\n";
    }
    objects.add(stream("/CIDInit/ProcSet findresource begin 12 dict begin begincmap\n"
                       "/CMapName/Units def/CMapType 2 def\n"
                       "1 begincodespacerange<0000><ffff>endcodespacerange\n" +
                       ranges + "endbfrange\nendcmap end end"));
  }

  static QByteArray content(const PdfPage& page) {
    QByteArray text = "BT\n";
    for (const PdfText& run : page.texts) {
      const bool ascii = std::all_of(run.text.begin(), run.text.end(), [](QChar c) {
        return c.unicode() >= 0x20 && c.unicode() < 0x7F;
      });
      QByteArray codes = ascii ? run.text.toLatin1().toHex() : units(run.text);
      text += (ascii ? "/F1 " : "/F2 ") + QByteArray::number(run.size) + " Tf 1 0 0 1 " +
              number(run.h) + " " + number(842 - run.v) + " Tm <" + codes + "> Tj\n";
    }
    return text + "ET";
  }

  /// The nearest entry before `index` (or behind it, for step 1) that is its sibling; -1 for none.
  qsizetype sibling(qsizetype index, qsizetype step) const {
    const int level = bookmarks[static_cast<std::size_t>(index)].level;
    for (qsizetype i = index + step; i >= 0 && i < std::ssize(bookmarks); i += step) {
      const int other = bookmarks[static_cast<std::size_t>(i)].level;
      if (other <= level) {
        return other == level ? i : -1;
      }
    }
    return -1;
  }
  qsizetype parent(qsizetype index) const {
    const int level = bookmarks[static_cast<std::size_t>(index)].level;
    while (--index >= 0 && bookmarks[static_cast<std::size_t>(index)].level >= level) {
    }
    return index;
  }
  /// First and last child of an entry, -1 being the outline itself.
  QByteArray children(qsizetype index, qsizetype firstBookmark) const {
    qsizetype first = -1;
    qsizetype last = -1;
    for (qsizetype i = 0; i < std::ssize(bookmarks); ++i) {
      if (parent(i) == index) {
        first = first < 0 ? i : first;
        last = i;
      }
    }
    return first < 0 ? QByteArray()
                     : "/First " + number(firstBookmark + 1 + first) + " 0 R/Last " +
                           number(firstBookmark + 1 + last) + " 0 R";
  }

  void addBookmarks(Objects& objects, qsizetype firstPage, qsizetype firstBookmark) const {
    if (bookmarks.empty()) {
      return;
    }
    objects.add("<</Type/Outlines" + children(-1, firstBookmark) + ">>");
    for (qsizetype i = 0; i < std::ssize(bookmarks); ++i) {
      const PdfBookmark& entry = bookmarks[static_cast<std::size_t>(i)];
      QByteArray body = "<</Title<feff" + units(entry.title) + ">/Parent " +
                        number(firstBookmark + 1 + parent(i)) + " 0 R/Dest[" +
                        number(firstPage + 2 * (entry.page - 1)) + " 0 R/Fit]" +
                        children(i, firstBookmark);
      if (const qsizetype next = sibling(i, 1); next >= 0) {
        body += "/Next " + number(firstBookmark + 1 + next) + " 0 R";
      }
      if (const qsizetype previous = sibling(i, -1); previous >= 0) {
        body += "/Prev " + number(firstBookmark + 1 + previous) + " 0 R";
      }
      objects.add(body + ">>");
    }
  }
};

} // namespace folivex::test
