#include "batch/BatchTable.h"

#include "batch/BatchModel.h"

#include <QHeaderView>
#include <QKeyEvent>

#include <algorithm>
#include <array>

namespace folivex {

namespace {

constexpr std::array<int, BatchModel::columnCountAll> initialWidths = {82, 460, 80, 320}; // pixels

} // namespace

BatchTable::BatchTable(BatchModel& model, QWidget* parent) : ListTable(model, parent) {
  verticalHeader()->hide();
  setInitialWidths(initialWidths);
  horizontalHeader()->setSectionResizeMode(BatchModel::Filename, QHeaderView::Stretch);
  setWhenEmpty(QStringLiteral("Drop PDF files or folders here,\nor choose \"Add PDF File(s) to "
                              "List\" or \"Scan for files\" from the File menu."));
}

std::vector<RowRange> BatchTable::selectedRows() const {
  // The selection's own ranges: asking row by row grows with the square of them.
  std::vector<RowRange> rows;
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    rows.push_back({range.top(), range.bottom()});
  }
  return rows;
}

int BatchTable::firstSelectedRow() const {
  int first = -1;
  for (const RowRange& range : selectedRows()) {
    first = first < 0 ? range.first : std::min(first, range.first);
  }
  return first;
}

void BatchTable::selectOnly(int row) {
  selectRow(row);
  scrollToRow(row);
}

void BatchTable::goTo(int row) {
  const QModelIndex index = model()->index(row, BatchModel::Use);
  if (index.isValid()) {
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    scrollToRow(row);
  }
}

void BatchTable::scrollToRow(int row) {
  scrollTo(model()->index(row, BatchModel::Use), EnsureVisible);
}

void BatchTable::keyPressEvent(QKeyEvent* event) {
  // The key that moves a row up selects everything in other tables; it must never do so here, not
  // even when there is nothing to move.
  if (event->matches(QKeySequence::SelectAll)) {
    event->ignore();
    return;
  }
  ListTable::keyPressEvent(event);
}

} // namespace folivex
