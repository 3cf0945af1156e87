// PositionRule: where on the page a word must stand.
#pragma once

#include "engine/base/Text.h"

namespace folivex {

/// A position to match, in the text library's points.
///
/// Each coordinate is a value, a range n-m, or either with an alternative value behind "|". Zero in
/// one coordinate means anywhere in that direction, and a negative value any word of that many
/// characters; both only where the other coordinate is met exactly (not through its range).
class PositionRule {
public:
  /// As typed by an operator; a text that is no number counts as 0.
  PositionRule(QStringView h, QStringView v);
  /// Values alone, without range or alternative.
  PositionRule(int h, int v);

  /// Whether a word of `length` characters at h, v stands where the rule says.
  bool holds(int h, int v, qsizetype length) const;

  /// How far h, v is from the nearest place that the rule names, in points along both axes;
  /// a coordinate that may be anywhere adds nothing.
  qint64 distance(int h, int v) const;

private:
  struct Axis {
    IntRange range;
    int alternative = 0;

    static Axis parsed(QStringView text);
    bool holds(int value) const { return range.contains(value) || value == alternative; }
    qint64 distance(int value) const;
  };

  Axis m_h;
  Axis m_v;
};

} // namespace folivex
