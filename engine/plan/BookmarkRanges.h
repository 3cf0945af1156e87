// Ranges taken from a source's bookmarks.
#pragma once

#include "engine/plan/SplitRange.h"
#include "engine/setup/SplitMethod.h"

#include <vector>

namespace folivex {

/// One entry of the outline, in the order in which a reader lists them.
struct Bookmark {
  QString title;
  int level = 0; ///< 0 for the top level
  int page = 0;  ///< from 1; 0 when the entry leads to no page of the file
};

/// The ranges of a file of `pageCount` pages: each runs from the page of an entry of the method's
/// level to the page before the next one, the last to the end of the file, and carries the entry's
/// title as its text.
///
/// Entries without a page are passed over. Of several entries on one page the first names the
/// range. Entries that stand out of page order are put in it. Pages before the first entry are in
/// no range.
std::vector<SplitRange> bookmarkRanges(const std::vector<Bookmark>& outline, SplitMethod method,
                                       int pageCount);

} // namespace folivex
