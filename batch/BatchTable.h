// BatchTable: the list view of the batch list.
#pragma once

#include "batch/BatchEntries.h"
#include "widgets/ListTable.h"

#include <vector>

namespace folivex {

class BatchModel;

class BatchTable : public ListTable {
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

protected:
  void keyPressEvent(QKeyEvent* event) override;
};

} // namespace folivex
