// PageMatchState: what the matching engine carries from word to word.
#pragma once

namespace folivex {

/// One per job. What the planner resets when a range is saved stands in RangeTexts.
struct PageMatchState {
  bool matchPending = false;     ///< the previous word was a start match: the next opens the range
  bool afterTextPending = false; ///< the previous word was the filename-after text
  bool rangeAwaitingUntil = false; ///< the until methods: a range waits for its until word
  bool startSeen = false;          ///< MatchToUntilAtPosition: start matching is over
  bool wordNumberTaken = false;    ///< a word-number search has taken this page's word
};

} // namespace folivex
