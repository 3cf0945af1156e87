// Beginnings: pages on which documents may begin, and what speaks for it.
#pragma once

#include "engine/suggest/AnchorGroups.h"
#include "engine/suggest/PageNumbers.h"
#include "engine/suggest/PageValues.h"

#include <optional>
#include <vector>

namespace folivex {

struct Beginnings {
  std::vector<int> pages;      ///< from 0, ascending
  std::vector<Anchor> anchors; ///< some of them, the plainest first
  int anchorCount = 0;
  bool onEveryPage = false;
  bool byNumbers = false;         ///< page numbers begin anew here
  std::optional<int> byBookmarks; ///< of this level
  bool separators = false;        ///< the pages are sheets between the documents
  /// Stand on all pages, and change here and nowhere else.
  std::vector<ValuePlace> runs;
  std::vector<ValuePlace> values; ///< of these pages; texts of the first of them only
  double evidence = 0;
  int kindsOfEvidence = 0; ///< that do not depend on each other
};

/// The likeliest first, a dozen at most.
std::vector<Beginnings> findBeginnings(const PageSample& sample, const PageNumbers& numbers);

} // namespace folivex
