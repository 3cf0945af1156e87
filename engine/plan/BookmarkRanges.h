// Ranges taken from a source's bookmarks.
#pragma once

#include "engine/plan/SplitRange.h"
#include "engine/setup/SplitMethod.h"
#include "engine/words/SourceWords.h"

#include <vector>

namespace folivex {

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
