#include "widgets/GridDelegate.h"

#include <QPainter>

namespace folivex {

namespace {

constexpr float gridStrength = 0.2F;

} // namespace

void GridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  QStyledItemDelegate::paint(painter, option, index);
  QColor line = option.palette.color(QPalette::Text);
  line.setAlphaF(gridStrength);
  const QRect& cell = option.rect;
  painter->setPen(line);
  painter->drawLine(cell.bottomLeft(), cell.bottomRight());
  painter->drawLine(cell.topRight(), cell.bottomRight() - QPoint(0, 1));
}

} // namespace folivex
