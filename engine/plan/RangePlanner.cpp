#include "engine/plan/RangePlanner.h"

#include "engine/base/RunState.h"
#include "engine/setup/SplitSetup.h"

#include <algorithm>

namespace folivex {

RangePlanner::RangePlanner(const SplitSetup& setup, RunState& run, RangeSaver& saver)
    : m_run(run), m_saver(saver), m_method(splitTraitsOf(setup.pageExtract)),
      m_takesRestOfLine(takesRestOfLine(fileNameMethodOf(setup.extract))),
      m_searchTextEmpty(setup.findString.isEmpty()) {
  m_run.pendingStart = -1;
}

void RangePlanner::openAt(int pageIndex) {
  m_run.pendingStart = pageIndex;
}

void RangePlanner::closeAtMatch(int pageIndex) {
  if (m_run.pendingStart < 0) {
    return;
  }
  const int start = m_run.pendingStart;
  const int end = m_method.onePage ? start : std::max(start, pageIndex - 1);
  if (m_method.unique) {
    // A range that repeats the one before stays open: should no word follow the match, the end of
    // the document still finds it.
    if (!saveUnique(end)) {
      closed();
    }
    return;
  }
  save(start, end, m_texts.rangeText);
  closed();
}

void RangePlanner::closeAtUntil(int pageIndex) {
  if (m_run.pendingStart < 0) {
    return;
  }
  const int last = m_method.atPosition ? pageIndex - 1 : pageIndex;
  save(m_run.pendingStart, std::max(m_run.pendingStart, last), m_texts.rangeText);
  closed();
}

void RangePlanner::closeAtEnd(int lastPageIndex, int pageCount) {
  if (m_run.pendingStart < 0) {
    return;
  }
  const int start = m_run.pendingStart;
  const int end = std::max(start, lastPageIndex);
  if (m_searchTextEmpty && m_texts.rangeText.isEmpty()) {
    m_texts.rangeText = m_texts.matchedWord;
  }
  if (m_method.unique && (pageCount != 1 || m_method.atPosition)) {
    saveUnique(end);
  } else {
    save(start, m_method.onePage ? start : end, m_texts.rangeText);
  }
  closed();
}

bool RangePlanner::saveUnique(int end) {
  const bool repeats = repeatsPrevious();
  const int start = repeats ? m_previous->start : m_run.pendingStart;
  // A repeated range is the earlier output again, so it keeps that output's name also where only
  // the collected text tells that the two are one.
  const bool namedAsBefore = !repeats || m_texts.rangeText == m_previous->plannedText;
  const QString planned = namedAsBefore ? m_texts.rangeText : m_previous->shownText;
  save(start, end, planned, repeats);
  m_previous = SavedRange{start, planned, m_texts.rangeText};
  return repeats;
}

bool RangePlanner::repeatsPrevious() {
  QString& collected = m_texts.line.text;
  collected = m_saver.cleanRestOfLine(collected);
  if (!m_previous) {
    return false;
  }
  // Where the range text alone names the output, two ranges planned with one text are one, whatever
  // the saver then showed for it. Where the rest of the line does, the range text is its first word
  // only: "ACME Ltd" must not join the document of "ACME".
  const bool sameRangeText = !m_takesRestOfLine && (m_texts.rangeText == m_previous->plannedText ||
                                                    m_texts.rangeText == m_previous->shownText);
  return sameRangeText || collected == m_previous->shownText;
}

void RangePlanner::save(int start, int end, const QString& text, bool repeats) {
  SplitRange range{start, end, text, m_texts.line.text, repeats};
  if (!m_run.showOnly) {
    m_saver.saveRange(range);
  }
  m_texts.rangeText = range.rangeText;
  m_texts.rangeSaved();
}

void RangePlanner::closed() {
  m_run.pendingStart = -1;
}

} // namespace folivex
