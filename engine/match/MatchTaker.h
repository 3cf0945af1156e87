// MatchTaker: where matches go.
#pragma once

#include "engine/match/RangeTexts.h"

namespace folivex {

/// Told of the matches of one job in page order; makes ranges of them. Page indexes count from 0.
class MatchTaker {
public:
  virtual ~MatchTaker() = default;

  /// The range begins on this page; called for the word after a start match.
  virtual void openAt(int pageIndex) = 0;
  /// A start match on this page ends the open range, if any.
  virtual void closeAtMatch(int pageIndex) = 0;
  /// The until word on this page ends the open range, if any: this page belongs to it in the method
  /// MatchToUntil, to the next range in MatchToUntilAtPosition.
  virtual void closeAtUntil(int pageIndex) = 0;

  /// The same object for the whole job: the matcher fills it, a range that closes takes from it.
  virtual RangeTexts& texts() = 0;
};

} // namespace folivex
