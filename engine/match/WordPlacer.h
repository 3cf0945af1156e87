// WordPlacer: the position at which a word counts.
#pragma once

#include "engine/words/PageWord.h"

#include <limits>

namespace folivex {

/// A word that is no filler, cut to its capacity, where it counts as standing.
struct PlacedWord {
  QStringView text;
  int h = 0;
  int v = 0;
};

/// Turns the words of a page, in the order of the word source, into placed ones.
class WordPlacer {
public:
  /// `swapAxes`: the pages are in landscape layout, h and v of every word are exchanged.
  explicit WordPlacer(bool swapAxes) : swapAxes_(swapAxes) {}

  void beginPage() { previousH_ = previousV_ = -1; }

  /// A word that does not stand to the right of the one before it on the same line counts as
  /// standing 10 to its right, so that words of one place can be told apart.
  PlacedWord place(const PageWord& word) {
    constexpr int step = 10;
    constexpr int largest = std::numeric_limits<int>::max() - step;
    int h = swapAxes_ ? word.v : word.h;
    const int v = swapAxes_ ? word.h : word.v;
    if (h <= previousH_ && v == previousV_) {
      h = (previousH_ < largest ? previousH_ : largest) + step;
    }
    previousH_ = h;
    previousV_ = v;
    return {word.text.left(maxWordLength), h, v};
  }

private:
  bool swapAxes_;
  int previousH_ = -1;
  int previousV_ = -1;
};

} // namespace folivex
