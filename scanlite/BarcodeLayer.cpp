#include "scanlite/BarcodeLayer.h"

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <QFile>

#include <algorithm>
#include <utility>

namespace scanlite {

namespace {

constexpr double letterWidth = 0.6; // of the font size
constexpr double largestSize = 12;
// Points, and their part of a barcode that is narrow.
constexpr double edgeWidth = 4;
constexpr double edgesOfNarrow = 6;
constexpr size_t lettersOfAFont = 256;

QByteArray number(double value) {
  return QByteArray::number(value, 'f', 4);
}

/// Fonts without shapes: all that their letters have is a width and a meaning. They need no font
/// file, and a reader that ignores the invisible mode shows nothing either.
class BlankFonts {
public:
  explicit BlankFonts(QPDF& document) : m_document(document) {}

  struct Letter {
    size_t font;
    unsigned char code;
  };
  Letter letter(char32_t character) {
    const auto known = m_letters.try_emplace(character, m_letters.size()).first;
    return {known->second / lettersOfAFont,
            static_cast<unsigned char>(known->second % lettersOfAFont)};
  }

  QPDFObjectHandle font(size_t index) {
    while (m_fonts.size() <= index) {
      m_fonts.push_back(m_document.makeIndirectObject(QPDFObjectHandle::newDictionary()));
    }
    return m_fonts[index];
  }

  /// To be called when all letters are known.
  void finish() {
    for (size_t i = 0; i < m_fonts.size(); ++i) {
      finish(m_fonts[i], i);
    }
  }

private:
  void finish(QPDFObjectHandle font, size_t index) {
    std::map<size_t, char32_t> characters;
    for (const auto& [character, place] : m_letters) {
      if (place / lettersOfAFont == index) {
        characters[place % lettersOfAFont] = character;
      }
    }
    QByteArray names;
    QByteArray widths;
    QByteArray meanings;
    for (const auto& [code, character] : characters) {
      names += "/g" + QByteArray::number(quint64{code});
      widths += " 600";
      const QByteArray hex = QByteArray::number(quint64{code}, 16).rightJustified(2, '0');
      meanings += '<' + hex + "> <" + utf16Hex(character) + ">\n";
    }
    auto& shape = m_shape;
    if (shape.isNull()) {
      shape = m_document.makeIndirectObject(QPDFObjectHandle::newStream(&m_document, "600 0 d0\n"));
    }
    auto shapes = QPDFObjectHandle::newDictionary();
    for (const auto& [code, character] : characters) {
      shapes.replaceKey("/g" + std::to_string(code), shape);
    }
    auto parsed = QPDFObjectHandle::parse(
        ("<< /Type /Font /Subtype /Type3 /Name /Barcode /FontBBox [0 0 600 1000]"
         " /FontMatrix [0.001 0 0 0.001 0 0] /Resources << >> /FirstChar 0 /LastChar " +
         QByteArray::number(quint64{characters.size()} - 1) + " /Widths [" + widths +
         "] /Encoding << /Type /Encoding /Differences [0 " + names + "] >> >>")
            .toStdString());
    for (const std::string& key : parsed.getKeys()) {
      font.replaceKey(key, parsed.getKey(key));
    }
    font.replaceKey("/CharProcs", shapes);
    font.replaceKey("/ToUnicode", m_document.makeIndirectObject(QPDFObjectHandle::newStream(
                                      &m_document, meaningStream(meanings, characters.size()))));
  }

  static QByteArray utf16Hex(char32_t character) {
    QByteArray hex;
    for (const QChar unit : QString::fromUcs4(&character, 1)) {
      hex += QByteArray::number(unit.unicode(), 16).rightJustified(4, '0');
    }
    return hex;
  }

  static std::string meaningStream(const QByteArray& meanings, size_t count) {
    // At most a hundred lines stand in one block.
    constexpr qsizetype linesOfABlock = 100;
    QByteArray blocks;
    const QList<QByteArray> lines = meanings.split('\n');
    for (qsizetype from = 0; from < static_cast<qsizetype>(count); from += linesOfABlock) {
      const QList<QByteArray> some =
          lines.mid(from, std::min(linesOfABlock, static_cast<qsizetype>(count) - from));
      blocks +=
          QByteArray::number(some.size()) + " beginbfchar\n" + some.join('\n') + "\nendbfchar\n";
    }
    return ("/CIDInit /ProcSet findresource begin\n12 dict begin\nbegincmap\n"
            "/CMapName /Barcode def\n/CMapType 2 def\n"
            "1 begincodespacerange\n<00> <ff>\nendcodespacerange\n" +
            blocks + "endcmap\nCMapName currentdict /CMap defineresource pop\nend\nend\n")
        .toStdString();
  }

  QPDF& m_document;
  std::map<char32_t, size_t> m_letters;
  std::vector<QPDFObjectHandle> m_fonts;
  QPDFObjectHandle m_shape = QPDFObjectHandle::newNull();
};

/// Where a point of the page as it is seen lies in the page's own coordinates.
class SeenPage {
public:
  explicit SeenPage(QPDFPageObjectHelper page) {
    m_box = page.getMediaBox().getArrayAsRectangle();
    const auto crop = page.getCropBox().getArrayAsRectangle();
    const QPDFObjectHandle::Rectangle inside(
        std::max(m_box.llx, crop.llx), std::max(m_box.lly, crop.lly), std::min(m_box.urx, crop.urx),
        std::min(m_box.ury, crop.ury));
    if (inside.llx < inside.urx && inside.lly < inside.ury) {
      m_box = inside;
    }
    auto turn = page.getAttribute("/Rotate", false);
    m_quarters = turn.isInteger() ? static_cast<int>((turn.getIntValue() / 90 % 4 + 4) % 4) : 0;
  }

  double width() const {
    return m_quarters % 2 == 0 ? m_box.urx - m_box.llx : m_box.ury - m_box.lly;
  }

  /// The text matrix of a line that begins there and is read from left to right.
  QByteArray matrix(double h, double v) const {
    static constexpr int directions[4][4] = {
        {1, 0, 0, 1}, {0, 1, -1, 0}, {-1, 0, 0, -1}, {0, -1, 1, 0}};
    const double places[4][2] = {{m_box.llx + h, m_box.ury - v},
                                 {m_box.llx + v, m_box.lly + h},
                                 {m_box.urx - h, m_box.lly + v},
                                 {m_box.urx - v, m_box.ury - h}};
    QByteArray matrix;
    for (const int part : directions[m_quarters]) {
      matrix += QByteArray::number(part) + ' ';
    }
    return matrix + number(places[m_quarters][0]) + ' ' + number(places[m_quarters][1]) + " Tm ";
  }

private:
  QPDFObjectHandle::Rectangle m_box;
  int m_quarters = 0;
};

class PageWriter {
public:
  PageWriter(QPDFPageObjectHelper page, BlankFonts& fonts)
      : m_page(page), m_seen(page), m_fonts(fonts) {}

  void add(const PageBarcode& code) {
    const double left = std::clamp(code.left, 0.0, m_seen.width() - 1);
    const double across = std::max(code.right - left, 1.0);
    const double edge = std::min(edgeWidth, across / edgesOfNarrow);
    const double middle = (code.top + code.bottom) / 2;
    // The blanks part words whatever gaps are bridged.
    show(QStringLiteral("Barcode: "), left, middle, edge);
    show(code.text + u' ', left + edge, middle, across - 2 * edge);
    show(code.kind, left + across - edge, middle, edge);
  }

  /// Before all else on the page: what comes behind may leave its coordinates changed.
  void finish(QPDF& document) {
    auto resources = m_page.getAttribute("/Resources", true);
    if (!resources.isDictionary()) {
      resources = QPDFObjectHandle::newDictionary();
      m_page.getObjectHandle().replaceKey("/Resources", resources);
    }
    auto fonts = resources.getKey("/Font");
    fonts = fonts.isDictionary() ? fonts.shallowCopy() : QPDFObjectHandle::newDictionary();
    resources.replaceKey("/Font", fonts);
    for (const auto& [font, name] : m_resources) {
      fonts.replaceKey('/' + name.toStdString(), m_fonts.font(font));
    }
    m_page.addPageContents(QPDFObjectHandle::newStream(
                               &document, ("q BT 3 Tr\n" + m_content + "ET Q\n").toStdString()),
                           true);
  }

private:
  /// A line from `left`, at most `across` wide.
  void show(const QString& text, double left, double middle, double across) {
    const std::u32string letters = text.toStdU32String();
    const double size =
        std::min(largestSize, across / (letterWidth * static_cast<double>(letters.size())));
    m_content += m_seen.matrix(left, middle);
    for (size_t at = 0; at < letters.size();) {
      const size_t font = m_fonts.letter(letters[at]).font;
      QByteArray hex;
      for (; at < letters.size() && m_fonts.letter(letters[at]).font == font; ++at) {
        hex += QByteArray::number(m_fonts.letter(letters[at]).code, 16).rightJustified(2, '0');
      }
      m_content += '/' + fontName(font) + ' ' + number(size) + " Tf <" + hex + "> Tj ";
    }
    m_content += '\n';
  }

  QByteArray fontName(size_t font) {
    QByteArray& name = m_resources[font];
    if (name.isEmpty()) {
      auto fonts = m_page.getAttribute("/Resources", false);
      fonts = fonts.isDictionary() ? fonts.getKey("/Font") : fonts;
      int number = 0;
      do {
        name = "Barcode" + QByteArray::number(quint64{font}) + '.' + QByteArray::number(number++);
      } while (fonts.isDictionary() && fonts.hasKey('/' + name.toStdString()));
    }
    return name;
  }

  QPDFPageObjectHelper m_page;
  SeenPage m_seen;
  BlankFonts& m_fonts;
  std::map<size_t, QByteArray> m_resources; ///< names of fonts
  QByteArray m_content;
};

void addBarcodes(QPDF& document, const std::map<int, std::vector<PageBarcode>>& ofPage) {
  BlankFonts fonts(document);
  int number = 0;
  for (QPDFPageObjectHelper& page : QPDFPageDocumentHelper(document).getAllPages()) {
    const auto codes = ofPage.find(++number);
    if (codes == ofPage.end()) {
      continue;
    }
    PageWriter writer(page, fonts);
    for (const PageBarcode& code : codes->second) {
      writer.add(code);
    }
    writer.finish(document);
  }
  fonts.finish();
}

} // namespace

ScanOutcome writeBarcodeLayer(const QString& pdf, const QString& target,
                              const PageBarcodes& barcodes) {
  try {
    QPDF document;
    document.setSuppressWarnings(true);
    document.processFile(QFile::encodeName(pdf).constData());
    if (std::cmp_not_equal(QPDFPageDocumentHelper(document).getAllPages().size(),
                           barcodes.pageCount)) {
      return {ScanResult::NotAPdf, QStringLiteral("its pages cannot be counted for sure")};
    }
    addBarcodes(document, barcodes.ofPage);
    const QByteArray place = QFile::encodeName(target); // the writer keeps no copy of its own
    QPDFWriter writer(document, place.constData());
    writer.setPreserveEncryption(false);
    // Streams stay as they are: the pictures of a scan are most of it.
    writer.setDecodeLevel(qpdf_dl_none);
    writer.write();
    return {};
  } catch (const QPDFExc& problem) {
    if (problem.getErrorCode() == qpdf_e_password) {
      return {ScanResult::NeedsPassword, QStringLiteral("a password is needed to open it")};
    }
    return {
        problem.getErrorCode() == qpdf_e_damaged_pdf ? ScanResult::NotAPdf : ScanResult::Failed,
        QStringLiteral("its barcodes cannot be added: %1").arg(QString::fromUtf8(problem.what()))};
  } catch (const std::exception& problem) {
    return {
        ScanResult::Failed,
        QStringLiteral("its barcodes cannot be added: %1").arg(QString::fromUtf8(problem.what()))};
  }
}

} // namespace scanlite
