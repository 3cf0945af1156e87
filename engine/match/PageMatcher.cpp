#include "engine/match/PageMatcher.h"

#include "engine/base/RunState.h"
#include "engine/match/MarkTaker.h"
#include "engine/match/MatchObserver.h"
#include "engine/match/MatchTaker.h"
#include "engine/match/MatchText.h"
#include "engine/setup/SplitSetup.h"
#include "engine/words/WordSource.h"

#include <utility>

namespace folivex {

namespace {

Qt::CaseSensitivity sensitivityOf(const SplitSetup& setup) {
  return setup.ignoreCase ? Qt::CaseInsensitive : Qt::CaseSensitive;
}

bool namesAfterMatchedWord(FileNameMethod method) {
  return method == FileNameMethod::MatchedWord || method == FileNameMethod::PositionMatch;
}

} // namespace

PageMatcher::PageMatcher(const SplitSetup& setup, RunState& run, MatchTaker& taker)
    : m_run(run), m_taker(taker), m_texts(taker.texts()),
      m_method(splitTraitsOf(setup.pageExtract)), m_nameMethod(fileNameMethodOf(setup.extract)),
      m_sensitivity(sensitivityOf(setup)), m_wordNumber(wordNumberOf(setup.findString)),
      m_searchText(setup.findString), m_untilText(setup.extractUntil),
      m_afterText(setup.extractFileName), m_startPosition(setup.matchPosH, setup.matchPosV),
      m_untilPosition(setup.untilMatchPosH, setup.untilMatchPosV), m_placer(setup.rotated),
      m_collector(setup), m_searchRing(m_wordNumber ? QString() : setup.findString, m_sensitivity),
      m_untilRing(setup.extractUntil, m_sensitivity),
      m_afterRing(setup.extractFileName, Qt::CaseSensitive) {}

void PageMatcher::beginPage() {
  LineCollector::beginPage(m_texts.line,
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
    startAfterText(pageIndex, word);
  }
  collect(pageIndex, word);

  m_state.matchPending = false;
  noteAfterText(word.text);
  if (!takeStart(pageIndex, word)) {
    takeUntil(pageIndex, word);
  }
}

void PageMatcher::openPending(int pageIndex, const PlacedWord& word) {
  m_taker.openAt(pageIndex);
  // The word behind a filename-after text names the range itself.
  if (m_state.afterTextPending) {
    return;
  }
  m_texts.rangeText =
      namesAfterMatchedWord(m_nameMethod) ? m_texts.matchedWord : word.text.toString();
  m_texts.nameBuilt(m_nameMethod);
  if (takesRestOfLine(m_nameMethod)) {
    LineCollector::startLine(m_texts.line, word.v);
  } else if (m_nameMethod == FileNameMethod::NextWord ||
             m_nameMethod == FileNameMethod::AfterText) {
    markName(pageIndex, word, false);
  }
}

void PageMatcher::startAfterText(int pageIndex, const PlacedWord& word) {
  if (!m_texts.afterTextFirstTime) {
    return;
  }
  m_texts.afterTextFirstTime = false;
  m_texts.rangeText = word.text.toString();
  m_texts.line.text.clear();
  LineCollector::startLine(m_texts.line, word.v);
  m_takesLineAnew = takesRestOfLine(m_nameMethod);
  if (!m_takesLineAnew) {
    markName(pageIndex, word, true);
  }
}

void PageMatcher::collect(int pageIndex, const PlacedWord& word) {
  const qsizetype before = m_texts.line.text.size();
  m_collector.offer(m_texts.line, word);
  if (m_texts.line.text.size() > before && takesRestOfLine(m_nameMethod)) {
    markName(pageIndex, word, std::exchange(m_takesLineAnew, false));
  }
}

void PageMatcher::markName(int pageIndex, const PlacedWord& word, bool anew) const {
  if (m_marks != nullptr) {
    m_marks->names(pageIndex, word, anew);
  }
}

void PageMatcher::noteAfterText(QStringView text) {
  m_state.afterTextPending = m_texts.seekAfterText && isAfterText(text);
}

bool PageMatcher::isAfterText(QStringView text) const {
  return !m_afterText.isEmpty() && (text == m_afterText || m_afterRing.matches());
}

bool PageMatcher::isSearchText(QStringView text) const {
  if (m_wordNumber && !m_state.wordNumberTaken) {
    return false;
  }
  return m_searchText.isEmpty() || equalTexts(text, m_searchText, m_sensitivity);
}

bool PageMatcher::takeStart(int pageIndex, const PlacedWord& word) {
  const bool waitsForUntil =
      m_method.untilWord && !m_method.atPosition && m_state.rangeAwaitingUntil;
  if (waitsForUntil || m_state.startSeen) {
    return false;
  }
  const bool byWord = isSearchText(word.text);
  if (!byWord && !m_searchRing.matches()) {
    return false;
  }
  if (m_method.atPosition && !m_startPosition.holds(word.h, word.v, word.text.size())) {
    return false;
  }
  startAt(pageIndex, word, byWord ? word.text.toString() : m_searchRing.joinedText());
  m_state.rangeAwaitingUntil = m_method.untilWord;
  m_state.startSeen = m_method.untilWord && m_method.atPosition;
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
  if (!m_method.atPosition) {
    if (m_marks != nullptr) {
      m_marks->ends(pageIndex, m_untilText, word);
    }
    m_taker.closeAtUntil(pageIndex);
    m_state.rangeAwaitingUntil = false;
  } else if (m_untilPosition.holds(word.h, word.v, word.text.size())) {
    startAt(pageIndex, word, byWord ? word.text.toString() : m_untilRing.joinedText());
  }
}

void PageMatcher::startAt(int pageIndex, const PlacedWord& word, const QString& matchedText) {
  // Closing hands a range on, and the word's text need not outlive that.
  const QString wordText = word.text.toString();
  if (m_state.startSeen) {
    m_taker.closeAtUntil(pageIndex);
  } else {
    m_taker.closeAtMatch(pageIndex);
  }
  m_texts.matchedWord = matchedText;
  if (m_marks != nullptr) {
    m_marks->begins(pageIndex, matchedText, word);
  }
  if (namesAfterMatchedWord(m_nameMethod)) {
    markName(pageIndex, word, false);
  }
  if (m_method.atPosition) {
    m_texts.line.text = wordText;
  }
  // Whether a name was built before must not decide what the next one is made of.
  if (namesAfterText(m_nameMethod) && isAfterText(wordText)) {
    m_state.afterTextPending = true;
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
