// Pages of account numbers, drawn in every way that page descriptions know.
#pragma once

#include <tests/support/PdfBuilder.h>

#include <random>
#include <string>
#include <vector>

namespace glyphruntest {

/// What a reader must find on one page.
struct DigitPage {
  std::vector<std::string> numbers; ///< in the order of their lines
  bool mayBeUnreadable = false;     ///< a font of it tells too little
  bool oblique = false;
  std::string style; ///< what is particular about it, for a person
};

/// Adds pages to a file; equal seeds give equal pages everywhere.
class DigitPages {
public:
  DigitPages(testpdf::PdfBuilder& pdf, std::uint32_t seed);

  DigitPage addPage();

private:
  struct Face {
    const char* name;
    double width; ///< of a digit, in units of the size given to Tf
    double unit;  ///< what to multiply a size with for Tf
    const char* key;
    int bytes;
    double blank = 0; ///< width of a blank
  };
  static const Face faces[8];
  enum class Covering { None, Glyph, Number, Line };

  int below(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }
  bool oneIn(int count) { return below(count) == 0; }
  std::string newNumber();
  void choosePage(DigitPage& page);
  std::string chooseMatrix(DigitPage& page);
  std::string drawNumber(const std::string& number, double x, double y);
  std::string drawOnce(const std::string& number, double x, double y, bool again);
  std::string showPiece(const std::string& digits, double& x, double y, bool last);
  std::string codesOf(const Face& face, const std::string& digits) const;
  std::string covered(const std::string& text, const std::string& content) const;

  double lengthOf(const std::string& number) const;
  std::string placed(double x, double y) const;
  std::string inText(double length) const;
  std::string row(DigitPage& page, double y);

  testpdf::PdfBuilder& m_pdf;
  std::mt19937 m_random;
  std::string m_resources;
  // Of the page.
  const Face* m_face = nullptr;
  const Face* m_otherFace = nullptr;
  double m_size = 10;
  double m_spacing = 0;     ///< Tc, in ems
  double m_stretch = 1;     ///< Tz
  double m_wordSpacing = 0; ///< Tw, in ems
  double m_zoom = 1;        ///< font sizes are so many times larger, the text matrix smaller
  bool m_blanks = false;    ///< a blank parts the numbers of a line, in one string
  int m_pieceLength = 0;
  int m_placing = 0;
  int m_operator = 0;
  int m_twice = 0;
  Covering m_covering = Covering::None;
};

} // namespace glyphruntest
