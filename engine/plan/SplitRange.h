// SplitRange: one planned output.
#pragma once

#include <QString>

namespace folivex {

/// One closed range on its way to naming and writing. Pages are indexes from 0, inclusive.
struct SplitRange {
  int firstPage = 0;
  int lastPage = 0;
  QString rangeText;  ///< text that names the output
  QString restOfLine; ///< text collected for the "take rest of line" names, at most 1023 characters
  QString pickedWord; ///< word seen at the picked position since the last save, empty when none
  /// The range repeats the one saved before it, from the same first page, with more pages: its
  /// output takes the place of the earlier one.
  bool repeatsPrevious = false;
};

} // namespace folivex
