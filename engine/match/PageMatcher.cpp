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
    : m_run(run), m_planner(planner), m_nameMethod(fileNameMethodOf(setup.extract)),
      m_sensitivity(sensitivityOf(setup)), m_wordNumber(wordNumberOf(setup.findString)),
      m_searchText(setup.findString), m_untilText(setup.extractUntil),
      m_afterText(setup.extractFileName), m_startPosition(setup.matchPosH, setup.matchPosV),
      m_untilPosition(setup.untilMatchPosH, setup.untilMatchPosV), m_placer(setup.rotated),
      m_collector(setup), m_searchRing(m_wordNumber ? QString() : setup.findString, m_sensitivity),
      m_untilRing(setup.extractUntil, m_sensitivity),
      m_afterRing(setup.extractFileName, Qt::CaseSensitive) {}

void PageMatcher::beginPage() {
  LineCollector::beginPage(m_planner.texts().line,
                           m_nameMethod == FileNameMethod::AfterTextRestOfLineAndNextPage);
}

void PageMatcher::scanPage(int pageIndex, WordSource& source) {
  m_placer.beginPage();
  m_state.wordNumberTaken = false;
  m_leavePage = false;

  source.filePages(pageIndex + 1, pageIndex + 1);
  const int count = source.numWords();
  if (m_listing && count < 1 && m_observer != nullptr) {
    m_observer->onEmptyPage(pageIndex);
  }
  source.doReverseSort();
  if (m_observer != nullptr) {
    m_observer->onWordCount(pageIndex, count);
  }
  for (int i = 0; i < count && !m_leavePage; ++i) {
    const PageWord word = source.word(i);
    // An empty text matches nothing, whether it is the library's filler or stands somewhere.
    if (word.text.isEmpty()) {
      continue;
    }
    takeWordNumber(i, word.text.left(maxWordLength));
    takeWord(pageIndex, m_placer.place(word));
  }
}

void PageMatcher::takeWordNumber(int wordIndex, QStringView text) {
  if (m_wordNumber && wordIndex == *m_wordNumber - 1) {
    m_searchText = text.toString();
    m_state.wordNumberTaken = true;
  }
}

void PageMatcher::takeWord(int pageIndex, const PlacedWord& word) {
  RangeTexts& texts = m_planner.texts();
  if (m_listing) {
    if (m_observer != nullptr) {
      m_observer->onListedWord(word.text, word.h, word.v);
    }
    return;
  }
  m_searchRing.push(word.text);
  m_untilRing.push(word.text);
  m_afterRing.push(word.text);

  if (m_state.matchPending) {
    openPending(pageIndex, word);
  }
  if (m_state.afterTextPending) {
    startAfterText(word);
  }
  m_collector.offer(texts.line, word);

  m_state.matchPending = false;
  noteAfterText(word.text);
  if (!takeStart(pageIndex, word)) {
    takeUntil(pageIndex, word);
  }
}

void PageMatcher::openPending(int pageIndex, const PlacedWord& word) {
  RangeTexts& texts = m_planner.texts();
  m_planner.openAt(pageIndex);
  // The word behind a filename-after text names the range itself.
  if (m_state.afterTextPending) {
    return;
  }
  texts.rangeText = namesAfterMatchedWord(m_nameMethod) ? texts.matchedWord : word.text.toString();
  texts.nameBuilt(m_nameMethod);
  if (takesRestOfLine(m_nameMethod)) {
    LineCollector::startLine(texts.line, word.v);
  }
}

void PageMatcher::startAfterText(const PlacedWord& word) {
  RangeTexts& texts = m_planner.texts();
  if (!texts.afterTextFirstTime) {
    return;
  }
  texts.afterTextFirstTime = false;
  texts.rangeText = word.text.toString();
  texts.line.text.clear();
  LineCollector::startLine(texts.line, word.v);
}

void PageMatcher::noteAfterText(QStringView text) {
  m_state.afterTextPending = m_planner.texts().seekAfterText && !m_afterText.isEmpty() &&
                             (text == m_afterText || m_afterRing.matches());
}

bool PageMatcher::isSearchText(QStringView text) const {
  if (m_wordNumber && !m_state.wordNumberTaken) {
    return false;
  }
  return m_searchText.isEmpty() || equalTexts(text, m_searchText, m_sensitivity);
}

bool PageMatcher::takeStart(int pageIndex, const PlacedWord& word) {
  const SplitMethod method = m_planner.method();
  const bool waitsForUntil = method == SplitMethod::MatchToUntil && m_state.rangeAwaitingUntil;
  if (waitsForUntil || m_state.startSeen) {
    return false;
  }
  const bool byWord = isSearchText(word.text);
  if (!byWord && !m_searchRing.matches()) {
    return false;
  }
  if (matchesAtPosition(method) && !m_startPosition.holds(word.h, word.v, word.text.size())) {
    return false;
  }
  startAt(pageIndex, word, byWord ? word.text.toString() : m_searchRing.joinedText());
  m_state.rangeAwaitingUntil = endsAtUntil(method);
  m_state.startSeen = method == SplitMethod::MatchToUntilAtPosition;
  return true;
}

void PageMatcher::takeUntil(int pageIndex, const PlacedWord& word) {
  if (!m_state.rangeAwaitingUntil || m_untilText.isEmpty()) {
    return;
  }
  const bool byWord = equalTexts(word.text, m_untilText, m_sensitivity);
  if (!byWord && !m_untilRing.matches()) {
    return;
  }
  if (m_planner.method() == SplitMethod::MatchToUntil) {
    m_planner.closeAtUntil(pageIndex);
    m_state.rangeAwaitingUntil = false;
  } else if (m_untilPosition.holds(word.h, word.v, word.text.size())) {
    startAt(pageIndex, word, byWord ? word.text.toString() : m_untilRing.joinedText());
  }
}

void PageMatcher::startAt(int pageIndex, const PlacedWord& word, const QString& matchedText) {
  RangeTexts& texts = m_planner.texts();
  // Closing hands a range on, and the word's text need not outlive that.
  const QString wordText = word.text.toString();
  if (m_state.startSeen) {
    m_planner.closeAtUntil(pageIndex);
  } else {
    m_planner.closeAtMatch(pageIndex);
  }
  texts.matchedWord = matchedText;
  if (matchesAtPosition(m_planner.method())) {
    texts.line.text = wordText;
  }
  m_state.matchPending = true;
  if (m_run.showOnly) {
    ++m_run.matchesShown;
    if (m_observer != nullptr && !m_observer->onMatch(pageIndex, matchedText, word.h, word.v)) {
      m_run.userStop = true;
      m_leavePage = true;
    }
  }
}

} // namespace folivex
