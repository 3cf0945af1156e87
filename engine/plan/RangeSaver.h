// RangeSaver: where a planned range goes.
#pragma once

#include "engine/plan/SplitRange.h"

namespace folivex {

/// Takes the ranges in the order in which they are closed.
class RangeSaver {
public:
  virtual ~RangeSaver() = default;

  /// Names, writes and records the range, or holds it while it may grow. On return
  /// `range.rangeText` is the text that the reports show: for the two "take rest of line" methods
  /// the cleaned rest of line, else the text as given. The planner compares the next range with
  /// that text.
  virtual void saveRange(SplitRange& range) = 0;

  /// The rest-of-line text as naming cleans it. Has no side effect: nothing is numbered or made.
  virtual QString cleanRestOfLine(const QString& text) = 0;
};

} // namespace folivex
