// ListTable: the view of a list whose rows are worked on as a whole.
#pragma once

#include <QStyledItemDelegate>
#include <QTableView>

#include <span>

class QLabel;

namespace folivex {

/// Draws the grid lines, which the style of the system makes invisible on dark ground. The view's
/// own grid is to be switched off.
class GridDelegate : public QStyledItemDelegate {
public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
};

/// Whole rows are selected and none is edited in place. Rows have one height and grid lines that
/// are seen on every ground. While there are none, a text says how to get some.
class ListTable : public QTableView {
public:
  /// The model must outlive the table.
  ListTable(QAbstractItemModel& model, QWidget* parent);

  /// Pixels, from the first column on. Where a header needs more, the headers have two lines; the
  /// model must let them wrap (headerAlignment()).
  void setInitialWidths(std::span<const int> widths);
  /// Width at which every column that is shown has its initial width.
  int preferredWidth() const;

  using QTableView::sizeHintForColumn;

  void setWhenEmpty(const QString& text);
  /// To be called whenever rows have come or gone.
  void showWhetherEmpty();

private:
  QLabel* m_whenEmpty;
};

/// What a model tells of its headers as Qt::TextAlignmentRole.
QVariant headerAlignment();

/// Text of a cell as its tool tip: no markup, broken into lines.
QString cellToolTip(const QString& text);

} // namespace folivex
