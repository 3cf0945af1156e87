#include "mail/windows/EmailTable.h"

#include "mail/windows/EmailModel.h"

#include <QHeaderView>
#include <QKeyEvent>

#include <algorithm>
#include <array>

namespace folivex {

namespace {

/// Says in the place of an address that there is none, and of a path shows the end: the folders are
/// the same in every row.
class EmailDelegate : public GridDelegate {
public:
  using GridDelegate::GridDelegate;

protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    GridDelegate::initStyleOption(option, index);
    if (index.column() == static_cast<int>(EmailColumn::Email) && option->text.isEmpty()) {
      option->text = QStringLiteral("no address");
      option->font.setItalic(true);
      option->features |= QStyleOptionViewItem::HasDisplay;
    }
    if (index.column() == static_cast<int>(EmailColumn::File)) {
      option->textElideMode = Qt::ElideLeft;
    }
  }
};

} // namespace

EmailTable::EmailTable(EmailModel& model, QWidget* parent)
    : ListTable(model, parent), m_model(model) {
  setItemDelegate(new EmailDelegate(this));
  verticalHeader()->setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);
  QHeaderView* header = horizontalHeader();
  header->setSortIndicatorClearable(true);
  header->setSortIndicator(-1, Qt::AscendingOrder);
  setSortingEnabled(true);
  std::array<int, emailColumnCount> widths{};
  std::ranges::transform(emailColumns, widths.begin(), &EmailColumnFacts::width);
  setInitialWidths(widths);
  connect(this, &QTableView::doubleClicked, this,
          [this](const QModelIndex& index) { editRow(index); });
}

std::vector<std::size_t> EmailTable::selectedRows() const {
  // The selection's own ranges: asking row by row grows with the square of them.
  std::vector<std::size_t> rows;
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) {
      rows.push_back(m_model.listRow(row));
    }
  }
  return rows;
}

std::size_t EmailTable::selectedCount() const {
  int count = 0;
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    count += range.height();
  }
  return static_cast<std::size_t>(count);
}

void EmailTable::setFilter(const QString& text) {
  const std::vector<std::size_t> selected = selectedRows();
  m_model.setFilter(text);
  select(selected);
  showWhetherEmpty();
}

void EmailTable::select(const std::vector<std::size_t>& listRows) {
  std::vector<bool> wanted;
  for (const std::size_t row : listRows) {
    wanted.resize(std::max(wanted.size(), row + 1));
    wanted[row] = true;
  }
  QItemSelection selection;
  const int count = m_model.rowCount();
  const auto isWanted = [&](int viewRow) {
    const std::size_t row = m_model.listRow(viewRow);
    return row < wanted.size() && wanted[row];
  };
  for (int first = 0; first < count; ++first) {
    if (!isWanted(first)) {
      continue;
    }
    int last = first;
    while (last + 1 < count && isWanted(last + 1)) {
      ++last;
    }
    selection.append(
        QItemSelectionRange(m_model.index(first, 0), m_model.index(last, emailColumnCount - 1)));
    first = last;
  }
  selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void EmailTable::showOwnTexts(bool shown) {
  for (int column = static_cast<int>(EmailColumn::Body);
       column <= static_cast<int>(EmailColumn::SeparateInvoices); ++column) {
    setColumnHidden(column, !shown);
  }
}

void EmailTable::showWhetherEmpty() {
  setWhenEmpty(m_model.filter().isEmpty()
                   ? QStringLiteral("Choose \"Load email list\" or \"Import from "
                                    "spreadsheet...\" from the File menu.")
                   : QStringLiteral("No row holds \"%1\".").arg(m_model.filter()));
  ListTable::showWhetherEmpty();
}

void EmailTable::editRow(const QModelIndex& index) {
  if (index.isValid() && onEdit) {
    onEdit(m_model.listRow(index.row()));
  }
}

void EmailTable::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_F2 || event->key() == Qt::Key_Return ||
      event->key() == Qt::Key_Enter) {
    editRow(currentIndex());
    return;
  }
  ListTable::keyPressEvent(event);
}

} // namespace folivex
