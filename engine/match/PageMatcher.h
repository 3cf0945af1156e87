// PageMatcher: looks for the search words on the pages of a job.
#pragma once

#include "engine/match/LineCollector.h"
#include "engine/match/PositionRule.h"
#include "engine/match/WordPlacer.h"
#include "engine/match/WordRing.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SplitMethod.h"
#include "engine/words/PageWord.h"

#include <QString>

#include <optional>

namespace folivex {

class MarkTaker;
class MatchObserver;
class MatchTaker;
class WordSource;
struct RunState;
struct SplitSetup;

/// What the matcher carries from word to word. One per job. What the planner resets when a range is
/// saved stands in RangeTexts.
struct PageMatchState {
  bool matchPending = false;     ///< the previous word was a start match: the next opens the range
  bool afterTextPending = false; ///< the previous word was the filename-after text
  bool rangeAwaitingUntil = false; ///< the until methods: a range waits for its until word
  bool startSeen = false;          ///< MatchToUntilAtPosition: start matching is over
  bool wordNumberTaken = false;    ///< a word-number search has taken this page's word
};

/// Scans one page after the other, in page order, and tells the taker of what it finds. One
/// matcher serves one job: its state crosses page borders.
class PageMatcher {
public:
  /// Takes no ownership; all must outlive the matcher. Settings are read here, once.
  PageMatcher(const SplitSetup& setup, RunState& run, MatchTaker& taker);

  /// May be null. Not owned.
  void setObserver(MatchObserver* observer) { m_observer = observer; }
  /// May be null. Not owned.
  void setMarks(MarkTaker* marks) { m_marks = marks; }
  /// Listing mode: every word is told with its position, nothing is matched.
  void setListing(bool on) { m_listing = on; }

  /// The job goes on to another page; called before each scanPage().
  void beginPage();
  /// Reads and matches the page (index from 0). A page without words changes nothing.
  void scanPage(int pageIndex, WordSource& source);

  const PageMatchState& state() const { return m_state; }

private:
  void takeWord(int pageIndex, const PlacedWord& word);
  void openPending(int pageIndex, const PlacedWord& word);
  void startAfterText(int pageIndex, const PlacedWord& word);
  void collect(int pageIndex, const PlacedWord& word);
  void noteAfterText(QStringView text);
  bool isAfterText(QStringView text) const;
  void takeWordNumber(int wordIndex, QStringView text);
  bool takeStart(int pageIndex, const PlacedWord& word);
  void takeUntil(int pageIndex, const PlacedWord& word);
  void startAt(int pageIndex, const PlacedWord& word, const QString& matchedText);
  void markName(int pageIndex, const PlacedWord& word, bool anew) const;
  bool isSearchText(QStringView text) const;

  RunState& m_run;
  MatchTaker& m_taker;
  RangeTexts& m_texts; ///< the taker's
  MatchObserver* m_observer = nullptr;
  MarkTaker* m_marks = nullptr;
  bool m_listing = false;
  bool m_leavePage = false;     ///< a show-only run is not to go on
  bool m_takesLineAnew = false; ///< the line's next word is the first of another text for a name

  // What the setup asks for.
  const SplitMethodTraits& m_method;
  FileNameMethod m_nameMethod;
  Qt::CaseSensitivity m_sensitivity;
  std::optional<int> m_wordNumber; ///< counted from 1: each page's word of this number is searched
  QString m_searchText;            ///< with a word number: this page's word
  QString m_untilText;
  QString m_afterText;
  PositionRule m_startPosition;
  PositionRule m_untilPosition;

  WordPlacer m_placer;
  LineCollector m_collector;
  WordRing m_searchRing;
  WordRing m_untilRing;
  WordRing m_afterRing;
  PageMatchState m_state;
};

} // namespace folivex
