// RangePlanner: turns matches into page ranges.
#pragma once

#include "engine/naming/FileNameMethod.h"
#include "engine/plan/RangeSaver.h"
#include "engine/plan/RangeTexts.h"
#include "engine/plan/SplitMethod.h"

#include <optional>

namespace folivex {

struct RunState;
struct SplitSetup;

/// Follows the open range of one job in RunState::pendingStart and pendingEnd, closes it by the
/// rules of the split method, and hands it at once to the saver. In a show-only run ranges are
/// followed and nothing is handed on. One planner serves one job.
class RangePlanner {
public:
  /// Takes no ownership; all three must outlive the planner. Settings are read here, once.
  /// No range is open afterwards.
  RangePlanner(const SplitSetup& setup, RunState& run, RangeSaver& saver);

  /// The range begins on this page; called for the word after a start match.
  void openAt(int pageIndex);
  /// A start match on this page ends the open range, if any.
  void closeAtMatch(int pageIndex);
  /// The until word on this page ends the open range, if any: this page belongs to it in the method
  /// MatchToUntil, to the next range in MatchToUntilAtPosition.
  void closeAtUntil(int pageIndex);
  /// Ends the range that is open after the last page. `lastPageIndex` is the last page that was
  /// scanned, `pageCount` the number of pages of the whole document.
  void closeAtEnd(int lastPageIndex, int pageCount);

  RangeTexts& texts() { return m_texts; }
  const RangeTexts& texts() const { return m_texts; }
  /// The job's method; closeAtEnd() may change it, for a document of one page.
  SplitMethod method() const { return m_method; }

private:
  /// The range that was saved last, as the unique methods compare it.
  struct SavedRange {
    int start = 0;
    QString plannedText; ///< range text when it was handed on
    QString shownText;   ///< range text when it came back
  };

  bool repeatsPrevious();
  /// Returns whether the range repeats the one before.
  bool saveUnique(int end);
  void save(int start, int end, const QString& text, bool repeats = false);
  void closed();

  RunState& m_run;
  RangeSaver& m_saver;
  SplitMethod m_method;
  bool m_takesRestOfLine;
  bool m_searchTextEmpty;
  RangeTexts m_texts;
  std::optional<SavedRange> m_previous;
};

} // namespace folivex
