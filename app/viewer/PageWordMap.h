// PageWordMap: finding words of a page by place.
#pragma once

#include "app/viewer/ViewedPage.h"
#include "engine/match/PositionRange.h"

namespace folivex {

/// The positions within a rectangle, in points of the page as shown.
PositionRange rangeOf(const QRectF& rectangle, bool swapAxes);

enum class WordStep { Left, Right, Up, Down };

/// Indexes are those of the words given; -1 is no word.
class PageWordMap {
public:
  /// `words` must outlive this.
  explicit PageWordMap(const std::vector<ViewedWord>& words) : m_words(words) {}

  /// The word whose box the point lies in, or nearly; of several the smallest.
  int wordAt(QPointF point) const;

  /// The word a step away from `from`: before or behind it in reading order, or nearest in the line
  /// above or below. `from` itself where there is none; from no word, the first.
  int step(int from, WordStep step) const;

  std::vector<int> wordsIn(const PositionRange& range) const;

  /// The words of a match: the one at its position and, for a text of several words, those before
  /// it that belong to the text. Empty when no such word stands there.
  std::vector<int> wordsOfMatch(const QString& text, int h, int v) const;

  /// Every place where the words, joined by one blank each, hold the text, whatever its case; the
  /// words of each, in reading order.
  std::vector<std::vector<int>> wordsWith(const QString& text) const;

private:
  const ViewedWord& at(int index) const { return m_words[static_cast<std::size_t>(index)]; }
  int count() const { return static_cast<int>(m_words.size()); }
  int nearestInLine(int someOfLine, double middle) const;

  const std::vector<ViewedWord>& m_words;
};

} // namespace folivex
