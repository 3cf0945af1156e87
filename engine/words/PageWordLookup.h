// PageWordLookup: words of a page by their position, for the names that ask for one.
#pragma once

#include "engine/base/Text.h"

namespace folivex {

/// A page with more words than this is no page of a document, and is not looked at.
inline constexpr int mostWordsOfLookup = 32768;
inline QString tooManyWordsText() {
  return QStringLiteral("Too many words on the page!");
}

/// Reads one word of the source that is being split.
class PageWordLookup {
public:
  virtual ~PageWordLookup() = default;

  /// Text of the word that stands within both ranges on this page (index from 0; positions in the
  /// text library's points, truncated), at most 255 characters; empty when no word stands there.
  /// What hinders the look-up is told to the operator by the implementation, not here.
  virtual QString wordAt(int pageIndex, IntRange h, IntRange v) = 0;
};

} // namespace folivex
