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
  explicit WordPlacer(bool swapAxes) : m_swapAxes(swapAxes) {}

  void beginPage() { m_previousH = m_previousV = -1; }

  /// A word that does not stand to the right of the one before it on the same line counts as
  /// standing 10 to its right, so that words of one place can be told apart.
  PlacedWord place(const PageWord& word) {
    constexpr int step = 10;
    constexpr int largest = std::numeric_limits<int>::max() - step;
    int h = m_swapAxes ? word.v : word.h;
    const int v = m_swapAxes ? word.h : word.v;
    if (h <= m_previousH && v == m_previousV) {
      h = (m_previousH < largest ? m_previousH : largest) + step;
    }
    m_previousH = h;
    m_previousV = v;
    return {word.text.left(maxWordLength), h, v};
  }

private:
  bool m_swapAxes;
  int m_previousH = -1;
  int m_previousV = -1;
};

} // namespace folivex
