#include "DigitPages.h"

#include <cmath>

namespace glyphruntest {

namespace {

using testpdf::PdfBuilder;

std::string text(double value) {
  char buffer[40];
  std::snprintf(buffer, sizeof buffer, "%.4f", value);
  return buffer;
}

std::string hex(const std::string& utf16Ascii) {
  std::string out = "<FEFF";
  for (const char c : utf16Ascii) {
    char unit[8];
    std::snprintf(unit, sizeof unit, "%04X", static_cast<unsigned char>(c));
    out += unit;
  }
  return out + ">";
}

/// A digit's code in the fonts whose codes say nothing.
int scrambled(char digit) {
  return 3 + (digit - '0') * 7 % 10;
}

constexpr const char* fontTable =
    "glyph =  | 500 0 d0 0 0 400 700 re f\n"
    "small =  | 5 0 d0 0 0 4 7 re f\n"
    "map =  | 1 begincodespacerange <00> <FF> endcodespacerange 10 beginbfchar <03> <0030> <0A> "
    "<0031>"
    " <07> <0032> <04> <0033> <0B> <0034> <08> <0035> <05> <0036> <0C> <0037> <09> <0038> <06> "
    "<0039> endbfchar\n"
    "wide =  | 1 begincodespacerange <0000> <FFFF> endcodespacerange 10 beginbfchar <0003> <0030> "
    "<000A> <0031>"
    " <0007> <0032> <0004> <0033> <000B> <0034> <0008> <0035> <0005> <0036> <000C> <0037> <0009> "
    "<0038>"
    " <0006> <0039> endbfchar\n"
    "part =  | 1 begincodespacerange <0000> <FFFF> endcodespacerange 8 beginbfchar <0003> <0030> "
    "<000A> <0031>"
    " <0007> <0032> <0004> <0033> <000B> <0034> <0005> <0036> <000C> <0037> <0006> <0039> "
    "endbfchar\n"
    "procs = <</g3 @glyph/g4 @glyph/g5 @glyph/g6 @glyph/g7 @glyph/g8 @glyph/g9 @glyph/ga @glyph/gb "
    "@glyph/gc @glyph>>\n"
    "smalls = <</g3 @small/g4 @small/g5 @small/g6 @small/g7 @small/g8 @small/g9 @small/ga "
    "@small/gb @small/gc @small>>\n"
    "names = <</Differences[3/g3/g4/g5/g6/g7/g8/g9/ga/gb/gc]>>\n"
    "any = <</Type/Font/Subtype/CIDFontType2/BaseFont/Any/DW "
    "500/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)>>>>\n"
    "Helv = <</Type/Font/Subtype/Type1/BaseFont/Helvetica/Encoding/WinAnsiEncoding>>\n"
    "Cour = <</Type/Font/Subtype/Type1/BaseFont/Courier>>\n"
    "Cid = "
    "<</Type/Font/Subtype/Type0/BaseFont/Any/Encoding/Identity-H/DescendantFonts[@any]/ToUnicode "
    "@wide>>\n"
    "Holes = "
    "<</Type/Font/Subtype/Type0/BaseFont/Any/Encoding/Identity-H/DescendantFonts[@any]/ToUnicode "
    "@part>>\n"
    "Mute = <</Type/Font/Subtype/Type0/BaseFont/Any/Encoding/Identity-H/DescendantFonts[@any]>>\n"
    "Three = <</Type/Font/Subtype/Type3/FontMatrix[0.001 0 0 0.001 0 0]/FontBBox[0 0 500 "
    "700]/FirstChar 3/LastChar 12"
    "/Widths[500 500 500 500 500 500 500 500 500 500]/Encoding @names/CharProcs @procs/ToUnicode "
    "@map>>\n"
    "Unit = <</Type/Font/Subtype/Type3/FontMatrix[1 0 0 1 0 0]/FontBBox[0 0 5 7]/FirstChar "
    "3/LastChar 12"
    "/Widths[5 5 5 5 5 5 5 5 5 5]/Encoding @names/CharProcs @smalls/ToUnicode @map>>\n"
    "Bare = <</Type/Font/Subtype/Type3/FontMatrix[1 0 0 -1 0 0]/FontBBox[0 0 0 0]/FirstChar "
    "3/LastChar 12"
    "/Widths[5 5 5 5 5 5 5 5 5 5]/Encoding @names/CharProcs @smalls/ToUnicode @map>>\n";

} // namespace

// Ways to code digits: as themselves, by a map, and in ways that tell a reader too little.
const DigitPages::Face DigitPages::faces[] = {
    {"Helv", 0.556, 1, "ascii", 1, 0.278}, {"Cour", 0.6, 1, "ascii", 1, 0.6},
    {"Cid", 0.5, 1, "mapped", 2},          {"Three", 0.5, 1, "mapped", 1},
    {"Unit", 5, 0.1, "mapped", 1},         {"Bare", 5, 0.1, "mapped", 1},
    {"Holes", 0.5, 1, "unknown", 2},       {"Mute", 0.5, 1, "unknown", 2}};

DigitPages::DigitPages(PdfBuilder& pdf, std::uint32_t seed) : m_pdf(pdf), m_random(seed) {
  m_pdf.addText(fontTable);
  m_resources = "/Font<<";
  for (const Face& face : faces) {
    m_resources += std::string("/") + face.name + " " + PdfBuilder::ref(m_pdf.named(face.name));
  }
  m_resources += ">>";
}

std::string DigitPages::newNumber() {
  // Equal neighbours are what a reader may take for one glyph drawn twice.
  std::string number(1, static_cast<char>('1' + below(9)));
  for (int left = 4 + below(9); left > 0; --left) {
    number += oneIn(3) ? number.back() : static_cast<char>('0' + below(10));
  }
  return number;
}

std::string DigitPages::codesOf(const Face& face, const std::string& digits) const {
  std::string out = "<";
  for (const char digit : digits) {
    char code[8];
    const int value = face.key[0] == 'a' ? digit : scrambled(digit);
    std::snprintf(code, sizeof code, face.bytes == 1 ? "%02X" : "%04X", value);
    out += code;
  }
  return out + ">";
}

std::string DigitPages::covered(const std::string& spoken, const std::string& content) const {
  return "/Span<</ActualText" + hex(spoken) + ">>BDC " + content + "EMC ";
}

void DigitPages::choosePage(DigitPage& page) {
  m_face = &faces[oneIn(8) ? 6 + below(2) : below(6)];
  m_otherFace = oneIn(3) ? &faces[below(6)] : m_face;
  m_size = 6 + below(9);
  static constexpr double spacings[] = {0, 0, 0, -0.03, 0.02, 0.1, 0.3, 0.6, 0.9};
  m_spacing = spacings[below(9)];
  static constexpr double stretches[] = {1, 1, 1, 0.4, 0.8, 1.5};
  m_stretch = stretches[below(6)];
  m_pieceLength = below(4); // 0: whole, 1: each digit, 2 and 3: so many
  m_placing = below(4);     // 0: goes on, 1: Td, 2: Tm, 3: TJ
  m_operator = below(4);    // Tj TJ ' "
  m_twice = oneIn(4) ? 1 + below(2) : 0;
  m_covering = static_cast<Covering>(oneIn(2) ? 0 : below(4));
  static constexpr double wordSpacings[] = {0, 0.3, -0.25, 2};
  m_wordSpacing = wordSpacings[below(4)];
  m_zoom = oneIn(4) ? 100 : 1;
  m_blanks = m_face->key[0] == 'a' && m_otherFace->key[0] == 'a' && oneIn(2);
  page.mayBeUnreadable =
      m_covering == Covering::None && (m_face->key[0] == 'u' || m_otherFace->key[0] == 'u');
  page.style = std::string(m_face->name) + "/" + m_otherFace->name + " size " + text(m_size) +
               " Tc " + text(m_spacing) + " Tz " + text(m_stretch) + " pieces " +
               std::to_string(m_pieceLength) + " placing " + std::to_string(m_placing) +
               " operator " + std::to_string(m_operator) + " twice " + std::to_string(m_twice) +
               " ActualText " + std::to_string(static_cast<int>(m_covering)) + " Tw " +
               text(m_wordSpacing) + (m_blanks ? " blanks" : "") + (m_zoom > 1 ? " zoom" : "");
}

std::string DigitPages::chooseMatrix(DigitPage& page) {
  static constexpr const char* matrices[] = {"1 0 0 1 0 0",
                                             "1 0 0 1 0 0",
                                             "0 1 -1 0 700 0",
                                             "-1 0 0 -1 600 800",
                                             "0 -1 1 0 0 700",
                                             "-1 0 0 1 600 0",
                                             "1 0 0 -1 0 800",
                                             "0.01 0 0 0.01 100 100",
                                             "0.5 0 0 0.5 10 10",
                                             "0.8 0.6 -0.6 0.8 450 0",
                                             "0.96 0.28 -0.28 0.96 150 0"};
  const int chosen = below(11);
  page.oblique = chosen >= 9;
  page.style += std::string(" cm ") + matrices[chosen];
  return std::string(matrices[chosen]) + " cm ";
}

/// A length in the text's own space.
std::string DigitPages::inText(double length) const {
  return text(length * m_zoom) + " ";
}

std::string DigitPages::placed(double x, double y) const {
  const std::string scale = text(1 / m_zoom);
  return scale + " 0 0 " + scale + " " + text(x) + " " + text(y) + " Tm ";
}

// One piece of a number at x, which moves to where the next one begins.
std::string DigitPages::showPiece(const std::string& digits, double& x, double y, bool last) {
  const Face& face = last && digits.size() < 4 ? *m_otherFace : *m_face;
  std::string out = "/" + std::string(face.name) + " " + inText(m_size * face.unit) + "Tf ";
  if (m_placing == 1 || m_operator >= 2) {
    out += placed(0, 0) + inText(x) + inText(y) + "Td ";
  } else if (m_placing == 2) {
    out += placed(x, y);
  }
  const std::string codes = codesOf(face, digits);
  if (m_operator == 2) {
    out += "0 TL " + codes + " ' ";
  } else if (m_operator == 3) {
    out += "0 TL " + inText(m_wordSpacing * m_size) + inText(m_spacing * m_size) + codes + " \" ";
  } else if (m_operator == 1 || m_placing == 3) {
    const double kern = 40 / 1000.0 * m_size;
    out += "[";
    for (const char digit : digits) {
      const std::string amount = text(kern / (m_size * face.unit) * 1000);
      out += codesOf(face, std::string(1, digit)) + amount + " -" + amount + " ";
    }
    out += "]TJ ";
  } else {
    out += codes + " Tj ";
  }
  x += static_cast<double>(digits.size()) * (face.width * face.unit + m_spacing) * m_size *
       m_stretch;
  if (digits.find(' ') != std::string::npos) {
    x += (face.blank - face.width + m_wordSpacing) * m_size * m_stretch;
  }
  return m_covering == Covering::Glyph && digits.size() == 1 ? covered(digits, out) : out;
}

std::string DigitPages::drawOnce(const std::string& number, double x, double y, bool again) {
  std::string out = placed(x, y);
  std::size_t length = m_pieceLength == 0 ? number.size() : static_cast<std::size_t>(m_pieceLength);
  if (m_covering == Covering::Glyph) {
    length = 1;
  }
  for (std::size_t at = 0; at < number.size(); at += length) {
    const std::string digits = number.substr(at, length);
    const double from = x;
    out += showPiece(digits, x, y, at + length >= number.size());
    if (again && m_twice == 1) {
      double second = from + 0.02 * m_size;
      out += placed(second, y);
      out += showPiece(digits, second, y, at + length >= number.size());
      out += placed(x, y);
    }
  }
  return m_covering == Covering::Number ? covered(number, out) : out;
}

std::string DigitPages::drawNumber(const std::string& number, double x, double y) {
  std::string out = drawOnce(number, x, y, m_twice == 1);
  if (m_twice == 2) {
    out += drawOnce(number, x + 0.02 * m_size, y, false);
  }
  return out;
}

double DigitPages::lengthOf(const std::string& number) const {
  const double width =
      std::max(m_face->width * m_face->unit, m_otherFace->width * m_otherFace->unit);
  return static_cast<double>(number.size()) * (width + m_spacing) * m_size * m_stretch;
}

std::string DigitPages::row(DigitPage& page, double y) {
  const std::string first = newNumber();
  const std::string second = newNumber();
  const std::string spoken = first + " " + second;
  page.numbers.insert(page.numbers.end(), {first, second});
  const double x = 20;
  const double next = x + lengthOf(first) + 2 * m_size * m_stretch;
  const std::string line =
      m_blanks ? drawNumber(spoken, x, y) : drawNumber(first, x, y) + drawNumber(second, next, y);
  return m_covering == Covering::Line ? covered(spoken, line) : line;
}

DigitPage DigitPages::addPage() {
  DigitPage page;
  choosePage(page);
  std::string content = chooseMatrix(page) + "BT " + inText(m_spacing * m_size) + "Tc " +
                        inText(m_wordSpacing * m_size) + "Tw " + text(m_stretch * 100) + " Tz ";
  for (int line = 0; line < 8; ++line) {
    content += row(page, 700 - line * 1.3 * m_size);
  }
  const std::string turn = oneIn(3) ? std::to_string(90 * below(4)) : "0";
  page.style += " Rotate " + turn;
  m_pdf.addPage(content + "ET", m_resources, "/MediaBox[-2000 -2000 3000 3000]/Rotate " + turn);
  return page;
}

} // namespace glyphruntest
