#include "engine/plan/RangePlanner.h"

#include "engine/job/RunState.h"
#include "engine/setup/SplitSetup.h"

#include <algorithm>

namespace folivex {

RangePlanner::RangePlanner(const SplitSetup& setup, RunState& run, RangeSaver& saver)
    : run_(run), saver_(saver), method_(splitMethodOf(setup.pageExtract)),
      takesRestOfLine_(takesRestOfLine(fileNameMethodOf(setup.extract))),
      searchTextEmpty_(setup.findString.isEmpty()) {
  run_.pendingStart = run_.pendingEnd = -1;
}

void RangePlanner::openAt(int pageIndex) {
  run_.pendingStart = pageIndex;
}

bool RangePlanner::isUnique() const {
  return method_ == SplitMethod::MatchToNextUniqueMatch ||
         method_ == SplitMethod::MatchToNextUniqueMatchAtPosition;
}

void RangePlanner::closeAtMatch(int pageIndex) {
  if (run_.pendingStart < 0) {
    return;
  }
  const int start = run_.pendingStart;
  const int end = method_ == SplitMethod::MatchedPageOnly ? start : std::max(start, pageIndex - 1);
  if (isUnique()) {
    // A range that repeats the one before stays open: should no word follow the match, the end of
    // the document still finds it.
    if (!saveUnique(end)) {
      closed();
    }
    return;
  }
  save(start, end, texts_.rangeText);
  closed();
}

void RangePlanner::closeAtUntil(int pageIndex) {
  if (run_.pendingStart < 0) {
    return;
  }
  const int last = method_ == SplitMethod::MatchToUntil ? pageIndex : pageIndex - 1;
  save(run_.pendingStart, std::max(run_.pendingStart, last), texts_.rangeText);
  closed();
}

void RangePlanner::closeAtEnd(int lastPageIndex, int pageCount) {
  if (run_.pendingStart < 0) {
    return;
  }
  const int start = run_.pendingStart;
  const int end = std::max(start, lastPageIndex);
  if (searchTextEmpty_ && texts_.rangeText.isEmpty()) {
    texts_.rangeText = texts_.matchedWord;
  }
  if (pageCount == 1 && method_ == SplitMethod::MatchToNextUniqueMatch) {
    method_ = SplitMethod::MatchToNextMatch;
  }
  switch (method_) {
  case SplitMethod::MatchToNextUniqueMatch:
  case SplitMethod::MatchToNextUniqueMatchAtPosition:
    saveUnique(end);
    break;
  case SplitMethod::MatchToNextMatchAtPosition:
    save(start, end, texts_.line.text.isEmpty() ? texts_.rangeText : texts_.line.text);
    break;
  case SplitMethod::MatchedPageOnly:
    save(start, start, texts_.rangeText);
    break;
  default:
    save(start, end, texts_.rangeText);
  }
  closed();
}

bool RangePlanner::saveUnique(int end) {
  const bool repeats = repeatsPrevious();
  const int start = repeats ? previous_->start : run_.pendingStart;
  // A repeated range is the earlier output again, so it keeps that output's name also where only
  // the collected text tells that the two are one.
  const bool namedAsBefore = !repeats || texts_.rangeText == previous_->plannedText;
  const QString planned = namedAsBefore ? texts_.rangeText : previous_->shownText;
  save(start, end, planned, repeats);
  previous_ = SavedRange{start, planned, texts_.rangeText};
  return repeats;
}

bool RangePlanner::repeatsPrevious() {
  QString& collected = texts_.line.text;
  collected = saver_.cleanRestOfLine(collected);
  if (!previous_) {
    return false;
  }
  // Where the range text alone names the output, two ranges planned with one text are one, whatever
  // the saver then showed for it.
  const bool samePlannedText = !takesRestOfLine_ && texts_.rangeText == previous_->plannedText;
  return samePlannedText || texts_.rangeText == previous_->shownText ||
         collected == previous_->shownText;
}

void RangePlanner::save(int start, int end, const QString& text, bool repeats) {
  run_.pendingEnd = end;
  SplitRange range{start, end, text, texts_.line.text, texts_.pickedWord, repeats};
  if (!run_.showOnly) {
    saver_.saveRange(range);
  }
  texts_.rangeText = range.rangeText;
  texts_.rangeSaved();
}

void RangePlanner::closed() {
  run_.pendingStart = run_.pendingEnd = -1;
}

} // namespace folivex
