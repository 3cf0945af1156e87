// PositionRange: a place or an area of a page, in the whole numbers that settings are made of.
#pragma once

#include <QString>

namespace folivex {

/// In points, both ends inclusive, none below 1: in a search, 0 would mean "anywhere" and a minus
/// "so many characters".
struct PositionRange {
  int hFrom = 1;
  int hTo = 1;
  int vFrom = 1;
  int vTo = 1;

  bool operator==(const PositionRange&) const = default;
};

/// "320-325", or "320" for both ends.
QString spanText(int from, int to);
/// "h 320-325, v 90".
QString rangeText(const PositionRange& range);
/// "h 72, v 140".
QString positionText(int h, int v);

} // namespace folivex
