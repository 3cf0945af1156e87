// RangePlanner: turns matches into page ranges.
#pragma once

#include "engine/match/MatchTaker.h"
#include "engine/plan/RangeSaver.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SplitMethod.h"

#include <optional>

namespace folivex {

struct RunState;
struct SplitSetup;

/// Follows the open range of one job in RunState::pendingStart, closes it by the
/// rules of the split method, and hands it at once to the saver. In a show-only run ranges are
/// followed and nothing is handed on. One planner serves one job.
class RangePlanner : public MatchTaker {
public:
  /// Takes no ownership; all three must outlive the planner. Settings are read here, once.
  /// No range is open afterwards.
  RangePlanner(const SplitSetup& setup, RunState& run, RangeSaver& saver);

  void openAt(int pageIndex) override;
  void closeAtMatch(int pageIndex) override;
  void closeAtUntil(int pageIndex) override;
  /// Ends the range that is open after the last page. `lastPageIndex` is the last page that was
  /// scanned, `pageCount` the number of pages of the whole document.
  void closeAtEnd(int lastPageIndex, int pageCount);

  RangeTexts& texts() override { return m_texts; }

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
  const SplitMethodTraits& m_method;
  bool m_takesRestOfLine;
  bool m_searchTextEmpty;
  RangeTexts m_texts;
  std::optional<SavedRange> m_previous;
};

} // namespace folivex
