#include "engine/match/PositionRule.h"

#include <algorithm>
#include <cstdlib>

namespace folivex {

PositionRule::Axis PositionRule::Axis::parsed(QStringView text) {
  Axis axis{leadingRange(text), leadingInteger(text)};
  if (const qsizetype bar = text.indexOf(u'|', 1); bar > 0) {
    axis.alternative = leadingInteger(text.sliced(bar + 1));
  }
  return axis;
}

qint64 PositionRule::Axis::distance(int value) const {
  if (range.low <= 0 && range.high == range.low && alternative == range.low) {
    return 0;
  }
  const qint64 toRange =
      std::max({qint64{0}, qint64{range.low} - value, qint64{value} - range.high});
  return std::min(toRange, std::abs(qint64{value} - alternative));
}

PositionRule::PositionRule(QStringView h, QStringView v)
    : m_h(Axis::parsed(h)), m_v(Axis::parsed(v)) {}

PositionRule::PositionRule(int h, int v) : m_h{{h, h}, h}, m_v{{v, v}, v} {}

bool PositionRule::holds(int h, int v, qsizetype length) const {
  if (m_v.holds(v) && m_h.holds(h)) {
    return true;
  }
  const auto isAnyOfLength = [length](const Axis& axis) {
    return axis.range.low < 0 && -qint64{axis.range.low} == length;
  };
  const bool onLine = v == m_v.range.low;
  const bool onColumn = h == m_h.range.low;
  return (onLine && (isAnyOfLength(m_h) || m_h.range.low == 0)) ||
         (onColumn && (isAnyOfLength(m_v) || m_v.range.low == 0));
}

qint64 PositionRule::distance(int h, int v) const {
  return m_h.distance(h) + m_v.distance(v);
}

} // namespace folivex
