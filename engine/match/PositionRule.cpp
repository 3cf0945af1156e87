#include "engine/match/PositionRule.h"

#include "engine/match/MatchText.h"

#include <algorithm>
#include <cstdlib>

namespace folivex {

PositionRule::Axis PositionRule::Axis::parsed(QStringView text) {
  Axis axis;
  axis.low = axis.high = axis.alternative = leadingInteger(text);
  // The first character may be the sign of the low value.
  if (const qsizetype dash = text.indexOf(u'-', 1); dash > 0) {
    axis.high = leadingInteger(text.sliced(dash + 1));
  }
  if (const qsizetype bar = text.indexOf(u'|', 1); bar > 0) {
    axis.alternative = leadingInteger(text.sliced(bar + 1));
  }
  return axis;
}

qint64 PositionRule::Axis::distance(int value) const {
  if (low <= 0 && high == low && alternative == low) {
    return 0;
  }
  const qint64 toRange = std::max({qint64{0}, qint64{low} - value, qint64{value} - high});
  return std::min(toRange, std::abs(qint64{value} - alternative));
}

PositionRule::PositionRule(QStringView h, QStringView v)
    : h_(Axis::parsed(h)), v_(Axis::parsed(v)) {}

PositionRule::PositionRule(int h, int v) : h_{h, h, h}, v_{v, v, v} {}

bool PositionRule::holds(int h, int v, qsizetype length) const {
  if (v_.holds(v) && h_.holds(h)) {
    return true;
  }
  const auto isAnyOfLength = [length](const Axis& axis) {
    return axis.low < 0 && -qint64{axis.low} == length;
  };
  const bool onLine = v == v_.low;
  const bool onColumn = h == h_.low;
  return (onLine && (isAnyOfLength(h_) || h_.low == 0)) ||
         (onColumn && (isAnyOfLength(v_) || v_.low == 0));
}

qint64 PositionRule::distance(int h, int v) const {
  return h_.distance(h) + v_.distance(v);
}

} // namespace folivex
