#include "widgets/ProgramIcon.h"

#include <QPainter>
#include <QPainterPath>

namespace folivex {

namespace {

// All in parts of the icon's width.
constexpr double left = 0.16;
constexpr double right = 0.84;
constexpr double top = 0.04;
constexpr double bottom = 0.96;
constexpr double cut = 0.5;      ///< height of the cut
constexpr double cutGap = 0.05;  ///< half of what lies between both parts
constexpr double cutSlope = 0.1; ///< what the cut falls by from left to right, half of it
constexpr double shift = 0.08;   ///< the lower part stands aside
constexpr double corner = 0.2;   ///< folded

QPainterPath upperPart() {
  QPainterPath path(QPointF(left, top));
  path.lineTo(right - corner, top);
  path.lineTo(right, top + corner);
  path.lineTo(right, cut - cutGap + cutSlope);
  path.lineTo(left, cut - cutGap - cutSlope);
  path.closeSubpath();
  return path;
}

QPainterPath lowerPart() {
  QPainterPath path(QPointF(left + shift, cut + cutGap - cutSlope));
  path.lineTo(right + shift, cut + cutGap + cutSlope);
  path.lineTo(right + shift, bottom);
  path.lineTo(left + shift, bottom);
  path.closeSubpath();
  return path;
}

QPainterPath fold() {
  QPainterPath path(QPointF(right - corner, top));
  path.lineTo(right, top + corner);
  path.lineTo(right - corner, top + corner);
  path.closeSubpath();
  return path;
}

QPixmap drawn(int size) {
  QPixmap pixmap(size, size);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(size, size);
  painter.setPen(Qt::NoPen);
  painter.translate(-shift / 2, 0);
  const QColor upper(0x1f, 0x6f, 0xb8);
  const QColor lower(0x13, 0x8a, 0x8f);
  painter.fillPath(upperPart(), upper);
  painter.fillPath(lowerPart(), lower);
  painter.fillPath(fold(), upper.lighter(170));
  // A line of text in each part, where there is room for one.
  constexpr int smallestWithText = 24;
  if (size >= smallestWithText) {
    constexpr double height = 0.06;
    constexpr double inset = 0.12;
    const QColor text(255, 255, 255, 220);
    painter.fillRect(QRectF(left + inset, top + corner + inset / 2, 0.3, height), text);
    for (const double line : {0.7, 0.82}) {
      painter.fillRect(QRectF(left + shift + inset, line, line > 0.8 ? 0.28 : 0.44, height), text);
    }
  }
  return pixmap;
}

} // namespace

QIcon programIcon() {
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
    icon.addPixmap(drawn(size));
  }
  return icon;
}

} // namespace folivex
