// The outline (bookmarks) of a document as a flat list.
#pragma once

#include "PdfFile.h"

#include <string>
#include <vector>

namespace glyphrun {

struct OutlineEntry {
  std::u16string title;
  std::int32_t level = 0; ///< 0 for the top level
  std::int32_t page = 0;  ///< from 1; 0 when the entry leads to no page of the file
};

/// Entries in the order in which a reader lists them. Loops end where they close.
std::vector<OutlineEntry> readOutline(PdfFile& file);

} // namespace glyphrun
