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
  /// The range is the one saved before it, from the same first page, grown longer.
  bool repeatsPrevious = false;
};

} // namespace folivex
