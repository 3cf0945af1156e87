#include "batch/BatchTable.h"

#include "batch/BatchModel.h"
#include "widgets/GridDelegate.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <numeric>

namespace folivex {

namespace {

constexpr std::array<int, BatchModel::columnCountAll> initialWidths = {82, 460, 80}; // pixels
constexpr int rowPadding = 8;                                                        // pixels

QLabel* whenEmptyLabel(QWidget* viewport) {
  auto* label = new QLabel(
      QStringLiteral("Drop PDF files or folders here,\nor choose \"Add PDF File(s) to List\" or "
                     "\"Scan for files\" from the File menu."),
      viewport);
  label->setObjectName(QStringLiteral("whenEmpty"));
  label->setAlignment(Qt::AlignCenter);
  label->setWordWrap(true);
  label->setForegroundRole(QPalette::PlaceholderText);
  label->setAttribute(Qt::WA_TransparentForMouseEvents);
  auto* layout = new QVBoxLayout(viewport);
  layout->addWidget(label);
  return label;
}

} // namespace

BatchTable::BatchTable(BatchModel& model, QWidget* parent)
    : QTableView(parent), m_whenEmpty(whenEmptyLabel(viewport())) {
  setModel(&model);
  setSelectionBehavior(SelectRows);
  setSelectionMode(ExtendedSelection);
  setEditTriggers(NoEditTriggers);
  setShowGrid(false); // the delegate does
  setItemDelegate(new GridDelegate(this));
  setWordWrap(false);
  setTextElideMode(Qt::ElideMiddle); // both the drive and the name tell something
  setTabKeyNavigation(false);
  setContextMenuPolicy(Qt::CustomContextMenu);
  setVerticalScrollMode(ScrollPerItem);

  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + rowPadding);
  QHeaderView* header = horizontalHeader();
  header->setHighlightSections(false);
  for (std::size_t column = 0; column < initialWidths.size(); ++column) {
    setColumnWidth(static_cast<int>(column), initialWidths[column]);
  }
  header->setSectionResizeMode(BatchModel::Filename, QHeaderView::Stretch);
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

void BatchTable::showWhetherEmpty() {
  m_whenEmpty->setVisible(model()->rowCount() == 0);
}

int BatchTable::preferredWidth() const {
  return std::accumulate(initialWidths.begin(), initialWidths.end(), 2 * frameWidth());
}

void BatchTable::keyPressEvent(QKeyEvent* event) {
  // The key that moves a row up selects everything in other tables; it must never do so here, not
  // even when there is nothing to move.
  if (event->matches(QKeySequence::SelectAll)) {
    event->ignore();
    return;
  }
  QTableView::keyPressEvent(event);
}

} // namespace folivex
