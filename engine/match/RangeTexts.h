// RangeTexts: the texts that a range is named after, and what a save resets of them.
#pragma once

#include "engine/setup/FileNameMethod.h"

#include <QString>

#include <optional>

namespace folivex {

/// Capacity of joined and collected texts; what is longer is cut.
inline constexpr qsizetype maxCollectedLength = 1023;

/// Words of one line on their way into a file name.
struct LineCollection {
  QString text;                ///< at most maxCollectedLength characters
  bool onLine = false;         ///< words of the line `lineV` are taken, before all else
  bool onNextPageLine = false; ///< words of the page's first line are taken
  std::optional<int> lineV;    ///< v of that line; none: the next word that is no blank gives it
  int wordsOnLine = 0;         ///< words of the line seen so far
};

/// Filled by the matching engine while it scans, read by the planner when a range closes. Lives as
/// long as the job: ranges and collections cross page borders.
struct RangeTexts {
  QString rangeText;   ///< will name the open range's output
  QString matchedWord; ///< the word, or the words with a blank between, of the last start match
  LineCollection line;

  /// The filename-after text is looked for only between a range's opening and its save.
  bool seekAfterText = false;
  /// Only the first filename-after text of a range starts a collection.
  bool afterTextFirstTime = true;

  /// What building a name with `method` changes here: the name may be built ahead, at the match.
  void nameBuilt(FileNameMethod method) {
    if (namesAfterText(method)) {
      seekAfterText = true;
    }
  }

  /// The range was saved: the next one collects afresh.
  void rangeSaved() {
    seekAfterText = false;
    afterTextFirstTime = true;
    line = {};
  }
};

} // namespace folivex
