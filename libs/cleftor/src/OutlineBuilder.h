#pragma once

#include "LinkRules.h"

namespace cleftor {

/// Writes the bookmarks into the ranges. One whose page is elsewhere stays as a heading without a
/// target when bookmarks below it are kept. Returns the number of the outline, 0 when there is
/// none.
int writeOutline(Source& source, ObjectCopier& copier, LinkRules& links, DocumentWriter& writer,
                 const std::vector<pages::PageRange>& ranges);

} // namespace cleftor
