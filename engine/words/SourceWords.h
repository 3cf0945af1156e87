// SourceWords: what a run reads of the file that it splits.
#pragma once

#include "engine/words/PageWordLookup.h"
#include "engine/words/WordSource.h"

#include <QString>

#include <vector>

namespace folivex {

/// What is to be known about a page whose words were read.
enum class PageState : unsigned char {
  Good,
  Empty,      ///< has no text at all
  Unreadable, ///< has text with no way to Unicode, which is U+FFFD in its words
  Damaged     ///< the words that could be read are there
};

/// One entry of the outline, in the order in which a reader lists them.
struct Bookmark {
  QString title;
  int level = 0; ///< 0 for the top level
  int page = 0;  ///< from 1; 0 when the entry leads to no page of the file
};

/// The words of an open source, page by page and by position, and its outline. Where they come from
/// makes no difference to what a run or a plan makes of them.
class SourceWords : public WordSource, public PageWordLookup {
public:
  /// Of the pages that were extracted last.
  virtual PageState pageState() = 0;
  virtual std::vector<Bookmark> outline() = 0;
};

} // namespace folivex
