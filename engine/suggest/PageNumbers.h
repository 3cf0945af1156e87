// PageNumbers: the page numbers that are printed on the pages.
#pragma once

#include "engine/suggest/PageSample.h"

#include <optional>
#include <vector>

namespace folivex {

/// Numbers that begin anew, which documents of a pile have: "Page 1 of 3", "1/3", "- 1 -", "1".
struct AnewNumbers {
  std::vector<int> firstPages; ///< those with number 1, from 0
  TextId before = noText;      ///< the word in front, when it is always the same
  TextId one = noText;         ///< the word that is the 1, when it is always the same
};

struct PageNumbers {
  std::optional<AnewNumbers> anew;
  bool runThrough = false; ///< numbers that count the pages of the whole file
};

PageNumbers findPageNumbers(const PageSample& sample);

} // namespace folivex
