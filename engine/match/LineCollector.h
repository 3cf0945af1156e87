// LineCollector: takes the words of a line for a file name.
#pragma once

#include "engine/match/RangeTexts.h"
#include "engine/match/WordPlacer.h"

#include <QString>

namespace folivex {

struct SplitSetup;

/// Adds words to a LineCollection by the rules of the setup: so many words of a line at most, up to
/// a horizontal position, up to a word with a given beginning, with a separator between them.
class LineCollector {
public:
  explicit LineCollector(const SplitSetup& setup);

  /// Starts to take the words of the line at `v`; the word at hand is yet to be taken.
  static void startLine(LineCollection& line, int v);
  /// Page border: a line that is being collected ends; with `thenFirstLine` the first line of the
  /// new page follows it behind a "_".
  static void beginPage(LineCollection& line, bool thenFirstLine);

  /// Offers the next word to whatever is being collected.
  void offer(LineCollection& line, const PlacedWord& word) const;

private:
  void offerToLine(LineCollection& line, const PlacedWord& word) const;
  void append(QString& text, QStringView word) const;

  int m_wordsPerLine;
  int m_stopAtH; ///< 0: no such stop
  QString m_stopPrefix;
  QString m_separator;
};

} // namespace folivex
