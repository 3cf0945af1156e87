// SourceRun: the page loop over one source.
#pragma once

#include "engine/base/Text.h"
#include "engine/job/Findings.h"
#include "engine/job/JobContext.h"
#include "engine/job/PageWindow.h"
#include "engine/match/PageMatcher.h"
#include "engine/output/PageAddresses.h"
#include "engine/plan/RangePlanner.h"
#include "engine/words/SourceWords.h"

#include <vector>

namespace folivex {

/// Walks the pages of an open source in order, hands each to the matching engine, and closes the
/// range that is open after the last one. For the bookmark methods the ranges come from the
/// outline.
class SourceRun {
public:
  /// Takes no ownership; all must outlive the run.
  SourceRun(const SplitSetup& setup, const RunContext& job, SourceWords& words, RangeSaver& saver);

  /// Told what the matching engine sees; may be null, must outlive the run.
  void setObserver(MatchObserver* observer) {
    m_observer = observer;
    m_matcher.setObserver(observer);
  }

  /// Told of the words that make documents; may be null, must outlive the run.
  void setMarks(MarkTaker* marks) { m_matcher.setMarks(marks); }

  /// Given the words of every page that is read; may be null, must outlive the run.
  void setAddresses(PageAddresses* addresses) { m_addresses = addresses; }

  /// Scans the window of the open file's `pageCount` pages, or takes its bookmarks.
  void run(int pageCount);

  /// Reads nothing but the addresses of these ranges (from 1, inclusive, in any order), each page
  /// once.
  void readAddresses(std::vector<IntRange> ranges);

  /// Walks one page (index from 0) and tells the observer each word with its position; nothing is
  /// matched.
  void listPage(int pageIndex);

  /// After a run that was stopped: the first page (from 1) of the range that was open then, or the
  /// first that was not looked at. 0 when the run came to its end.
  int firstUnfinishedPage() const { return m_firstUnfinished; }

  const Findings& findings() const { return m_findings; }

private:
  void scanPages(PageWindow window);
  void walk(PageWindow window);
  void scanPage(int pageIndex);
  void takeBookmarks(int pageCount);

  const SplitSetup& m_setup;
  RunState& m_state;
  SourceWords& m_words;
  RangeSaver& m_saver;
  Operator& m_person;
  RangePlanner m_planner;
  PageMatcher m_matcher;
  MatchObserver* m_observer = nullptr;
  PageAddresses* m_addresses = nullptr;
  Findings m_findings;
  int m_firstUnfinished = 0;
};

} // namespace folivex
