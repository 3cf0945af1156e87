#include "engine/match/PageMatcher.h"

#include "engine/job/RunState.h"
#include "engine/match/MatchObserver.h"
#include "engine/match/MatchText.h"
#include "engine/plan/RangePlanner.h"
#include "engine/setup/SplitSetup.h"
#include "engine/words/WordSource.h"

namespace folivex {

namespace {

Qt::CaseSensitivity sensitivityOf(const SplitSetup& setup) {
  return setup.ignoreCase ? Qt::CaseInsensitive : Qt::CaseSensitive;
}

bool matchesAtPosition(SplitMethod method) {
  return method == SplitMethod::MatchToNextMatchAtPosition ||
         method == SplitMethod::MatchToNextUniqueMatchAtPosition ||
         method == SplitMethod::MatchToUntilAtPosition;
}

bool endsAtUntil(SplitMethod method) {
  return method == SplitMethod::MatchToUntil || method == SplitMethod::MatchToUntilAtPosition;
}

bool namesAfterMatchedWord(FileNameMethod method) {
  return method == FileNameMethod::MatchedWord || method == FileNameMethod::PositionMatch;
}

} // namespace

PageMatcher::PageMatcher(const SplitSetup& setup, RunState& run, RangePlanner& planner)
    : run_(run), planner_(planner), nameMethod_(fileNameMethodOf(setup.extract)),
      sensitivity_(sensitivityOf(setup)), wordNumber_(wordNumberOf(setup.findString)),
      searchText_(setup.findString), untilText_(setup.extractUntil),
      afterText_(setup.extractFileName), startPosition_(setup.matchPosH, setup.matchPosV),
      untilPosition_(setup.untilMatchPosH, setup.untilMatchPosV), placer_(setup.rotated),
      collector_(setup), searchRing_(wordNumber_ ? QString() : setup.findString, sensitivity_),
      untilRing_(setup.extractUntil, sensitivity_),
      afterRing_(setup.extractFileName, Qt::CaseSensitive) {}

void PageMatcher::setPickedPosition(int h, int v) {
  pickedH_ = h;
  pickedV_ = v;
}

void PageMatcher::beginPage() {
  LineCollector::beginPage(planner_.texts().line,
                           nameMethod_ == FileNameMethod::AfterTextRestOfLineAndNextPage);
}

void PageMatcher::scanPage(int pageIndex, WordSource& source) {
  placer_.beginPage();
  state_.wordNumberTaken = false;
  leavePage_ = false;

  source.filePages(pageIndex + 1, pageIndex + 1);
  const int count = source.numWords();
  if (listing_ && count < 1 && observer_ != nullptr) {
    observer_->onEmptyPage(pageIndex);
  }
  source.doReverseSort();
  if (observer_ != nullptr) {
    observer_->onWordCount(pageIndex, count);
  }
  for (int i = 0; i < count && !leavePage_; ++i) {
    const PageWord word = source.word(i);
    // An empty text matches nothing, whether it is the library's filler or stands somewhere.
    if (word.text.isEmpty()) {
      continue;
    }
    takeWordNumber(i, word.text.left(maxWordLength));
    takeWord(pageIndex, placer_.place(word));
  }
}

void PageMatcher::takeWordNumber(int wordIndex, QStringView text) {
  if (wordNumber_ && wordIndex == *wordNumber_ - 1) {
    searchText_ = text.toString();
    state_.wordNumberTaken = true;
  }
}

void PageMatcher::takeWord(int pageIndex, const PlacedWord& word) {
  RangeTexts& texts = planner_.texts();
  if (pickedH_ > 0 && pickedV_ > 0 && word.h == pickedH_ && word.v == pickedV_) {
    texts.pickedWord = word.text.toString();
  }
  if (listing_) {
    if (observer_ != nullptr) {
      observer_->onListedWord(word.text, word.h, word.v);
    }
    return;
  }
  searchRing_.push(word.text);
  untilRing_.push(word.text);
  afterRing_.push(word.text);

  if (state_.matchPending) {
    openPending(pageIndex, word);
  }
  if (state_.afterTextPending) {
    startAfterText(word);
  }
  collector_.offer(texts.line, word);

  state_.matchPending = false;
  noteAfterText(word.text);
  if (!takeStart(pageIndex, word)) {
    takeUntil(pageIndex, word);
  }
}

void PageMatcher::openPending(int pageIndex, const PlacedWord& word) {
  RangeTexts& texts = planner_.texts();
  planner_.openAt(pageIndex);
  // The word behind a filename-after text names the range itself.
  if (state_.afterTextPending) {
    return;
  }
  texts.rangeText = namesAfterMatchedWord(nameMethod_) ? texts.matchedWord : word.text.toString();
  texts.nameBuilt(nameMethod_);
  if (takesRestOfLine(nameMethod_)) {
    LineCollector::startLine(texts.line, word.v);
  }
}

void PageMatcher::startAfterText(const PlacedWord& word) {
  RangeTexts& texts = planner_.texts();
  if (!texts.afterTextFirstTime) {
    return;
  }
  texts.afterTextFirstTime = false;
  texts.rangeText = word.text.toString();
  texts.line.text.clear();
  LineCollector::startLine(texts.line, word.v);
}

void PageMatcher::noteAfterText(QStringView text) {
  state_.afterTextPending = planner_.texts().seekAfterText && !afterText_.isEmpty() &&
                            (text == afterText_ || afterRing_.matches());
}

bool PageMatcher::isSearchText(QStringView text) const {
  if (wordNumber_ && !state_.wordNumberTaken) {
    return false;
  }
  return searchText_.isEmpty() || equalTexts(text, searchText_, sensitivity_);
}

bool PageMatcher::takeStart(int pageIndex, const PlacedWord& word) {
  const SplitMethod method = planner_.method();
  const bool waitsForUntil = method == SplitMethod::MatchToUntil && state_.rangeAwaitingUntil;
  if (waitsForUntil || state_.startSeen) {
    return false;
  }
  const bool byWord = isSearchText(word.text);
  if (!byWord && !searchRing_.matches()) {
    return false;
  }
  if (matchesAtPosition(method) && !startPosition_.holds(word.h, word.v, word.text.size())) {
    return false;
  }
  startAt(pageIndex, word, byWord ? word.text.toString() : searchRing_.joinedText());
  state_.rangeAwaitingUntil = endsAtUntil(method);
  state_.startSeen = method == SplitMethod::MatchToUntilAtPosition;
  return true;
}

void PageMatcher::takeUntil(int pageIndex, const PlacedWord& word) {
  if (!state_.rangeAwaitingUntil || untilText_.isEmpty()) {
    return;
  }
  const bool byWord = equalTexts(word.text, untilText_, sensitivity_);
  if (!byWord && !untilRing_.matches()) {
    return;
  }
  if (planner_.method() == SplitMethod::MatchToUntil) {
    planner_.closeAtUntil(pageIndex);
    state_.rangeAwaitingUntil = false;
  } else if (untilPosition_.holds(word.h, word.v, word.text.size())) {
    startAt(pageIndex, word, byWord ? word.text.toString() : untilRing_.joinedText());
  }
}

void PageMatcher::startAt(int pageIndex, const PlacedWord& word, const QString& matchedText) {
  RangeTexts& texts = planner_.texts();
  // Closing hands a range on, and the word's text need not outlive that.
  const QString wordText = word.text.toString();
  if (state_.startSeen) {
    planner_.closeAtUntil(pageIndex);
  } else {
    planner_.closeAtMatch(pageIndex);
  }
  texts.matchedWord = matchedText;
  if (matchesAtPosition(planner_.method())) {
    texts.line.text = wordText;
  }
  state_.matchPending = true;
  if (run_.showOnly) {
    ++run_.matchesShown;
    if (observer_ != nullptr && !observer_->onMatch(pageIndex, matchedText, word.h, word.v)) {
      run_.userStop = true;
      leavePage_ = true;
    }
  }
}

} // namespace folivex
