// PageMatcher: looks for the search words on the pages of a job.
#pragma once

#include "engine/match/LineCollector.h"
#include "engine/match/PageMatchState.h"
#include "engine/match/PositionRule.h"
#include "engine/match/WordPlacer.h"
#include "engine/match/WordRing.h"
#include "engine/naming/FileNameMethod.h"
#include "engine/words/PageWord.h"

#include <QString>

#include <optional>

namespace folivex {

class MatchObserver;
class RangePlanner;
class WordSource;
struct RunState;
struct SplitSetup;

/// Scans one page after the other, in page order, and drives the planner with what it finds. One
/// matcher serves one job: its state crosses page borders.
class PageMatcher {
public:
  /// Takes no ownership; all must outlive the matcher. Settings are read here, once.
  PageMatcher(const SplitSetup& setup, RunState& run, RangePlanner& planner);

  /// May be null. Not owned.
  void setObserver(MatchObserver* observer) { observer_ = observer; }
  /// Listing mode: every word is told with its position, nothing is matched.
  void setListing(bool on) { listing_ = on; }
  /// The position whose word is kept in RangeTexts::pickedWord; both values above 0, else none.
  void setPickedPosition(int h, int v);

  /// The job goes on to another page; called before each scanPage().
  void beginPage();
  /// Reads and matches the page (index from 0). A page without words changes nothing.
  void scanPage(int pageIndex, WordSource& source);

  const PageMatchState& state() const { return state_; }

private:
  void takeWord(int pageIndex, const PlacedWord& word);
  void openPending(int pageIndex, const PlacedWord& word);
  void startAfterText(const PlacedWord& word);
  void noteAfterText(QStringView text);
  void takeWordNumber(int wordIndex, QStringView text);
  bool takeStart(int pageIndex, const PlacedWord& word);
  void takeUntil(int pageIndex, const PlacedWord& word);
  void startAt(int pageIndex, const PlacedWord& word, const QString& matchedText);
  bool isSearchText(QStringView text) const;

  RunState& run_;
  RangePlanner& planner_;
  MatchObserver* observer_ = nullptr;
  bool listing_ = false;
  bool leavePage_ = false; ///< a show-only run is not to go on
  int pickedH_ = 0;
  int pickedV_ = 0;

  // What the setup asks for.
  FileNameMethod nameMethod_;
  Qt::CaseSensitivity sensitivity_;
  std::optional<int> wordNumber_; ///< counted from 1: each page's word of this number is searched
  QString searchText_;            ///< with a word number: this page's word
  QString untilText_;
  QString afterText_;
  PositionRule startPosition_;
  PositionRule untilPosition_;

  WordPlacer placer_;
  LineCollector collector_;
  WordRing searchRing_;
  WordRing untilRing_;
  WordRing afterRing_;
  PageMatchState state_;
};

} // namespace folivex
