// AnchorGroups: words that stand on the same pages.
#pragma once

#include "engine/suggest/PageSample.h"

#include <unordered_map>
#include <vector>

namespace folivex {

/// A word that stands on the pages on which documents begin and on no other in this way.
struct Anchor {
  enum class Reach {
    Anywhere, ///< the text stands there only, once a page
    AtPlace,  ///< the text at h, v
    AtColumn  ///< the text at h, somewhere in v
  };

  TextId text = noText;
  Reach reach = Reach::Anywhere;
  int h = 0;
  Span v;
};

struct AnchorGroup {
  std::vector<int> pages;
  std::vector<Anchor> anchors;
  int anchorCount = 0;
};

/// Of all sets of pages on which some words stand and on which no other page has them, those with
/// the most words. Sets of one page, or of all of them, are none but for `wanted`.
std::unordered_map<PageSet, AnchorGroup> findAnchorGroups(const PageSample& sample,
                                                          const std::vector<PageSet>& wanted);

} // namespace folivex
