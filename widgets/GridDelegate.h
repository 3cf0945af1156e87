// GridDelegate: cells of a table with grid lines that are seen on every ground.
#pragma once

#include <QStyledItemDelegate>

namespace folivex {

/// Draws the grid lines, which the style of the system makes invisible on dark ground. The view's
/// own grid is to be switched off.
class GridDelegate : public QStyledItemDelegate {
public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
};

} // namespace folivex
