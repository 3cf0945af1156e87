#include "engine/match/PositionRange.h"

namespace folivex {

QString spanText(int from, int to) {
  return from == to ? QString::number(from) : QStringLiteral("%1-%2").arg(from).arg(to);
}

QString rangeText(const PositionRange& range) {
  return QStringLiteral("h %1, v %2")
      .arg(spanText(range.hFrom, range.hTo), spanText(range.vFrom, range.vTo));
}

QString positionText(int h, int v) {
  return QStringLiteral("h %1, v %2").arg(h).arg(v);
}

} // namespace folivex
