// The barcode readers of others, each behind one function. They are handed pictures of anybody:
// call them only in a process that may die.
#pragma once

#include "scanlite/GreyPicture.h"

#include <string>

namespace scanlite {

enum class Symbology {
  Matrix,  ///< squares, with codes that correct errors and tell what cannot be corrected
  Checked, ///< bars with check characters
  Weak     ///< bars with a weak check, or none: Code 39, EAN-8
};

enum class Reader { ZXing = 1, ZBar = 2 };

/// One symbol as one reader sees it.
struct Reading {
  Symbology symbology = Symbology::Matrix;
  const char* kind = ""; ///< the symbology's name, without blanks
  std::string text;      ///< UTF-8
  PixelBox box;
  int lines = 0; ///< of a symbol of bars: how many lines across it gave this text
  Reader reader = Reader::ZXing;
};

std::vector<Reading> readWithZXing(const GreyPicture& picture);
std::vector<Reading> readWithZBar(const GreyPicture& picture);

} // namespace scanlite
