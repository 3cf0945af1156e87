// WordSource: where the engine gets the words of a page from.
#pragma once

#include "engine/words/PageWord.h"

namespace folivex {

/// The words of one page at a time, as the matching engine reads them: extract a page, ask for the
/// count, put the words in reading order, read them one by one.
class WordSource {
public:
  virtual ~WordSource() = default;

  /// Extracts the words of pages first..last (from 1, inclusive) of the open file.
  virtual void filePages(int first, int last) = 0;
  /// Number of words of the extracted pages.
  virtual int numWords() = 0;
  /// Puts the extracted words in reading order.
  virtual void doReverseSort() = 0;
  /// Word `index` (from 0), its text cut at maxWordLength; valid until the next call.
  virtual PageWord word(int index) = 0;
};

} // namespace folivex
