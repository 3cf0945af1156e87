// BatchTable: the list view of the batch list.
#pragma once

#include "batch/BatchEntries.h"

#include <QTableView>

#include <vector>

class QLabel;

namespace folivex {

class BatchModel;

/// Whole rows are selected. While there are none, it says how to get some.
class BatchTable : public QTableView {
public:
  /// The model must outlive the table.
  BatchTable(BatchModel& model, QWidget* parent);

  /// In no order.
  std::vector<RowRange> selectedRows() const;
  /// -1 when none is.
  int firstSelectedRow() const;

  void selectOnly(int row);
  /// Moves the keyboard there without selecting.
  void goTo(int row);
  void scrollToRow(int row);
  void showWhetherEmpty();

  /// Width at which every column has its initial one.
  int preferredWidth() const;

protected:
  void keyPressEvent(QKeyEvent* event) override;

private:
  QLabel* m_whenEmpty;
};

} // namespace folivex
