#include "app/viewer/PlanModel.h"

#include "widgets/ListTable.h"
#include "widgets/Theme.h"

#include <utility>

namespace folivex {

namespace {

PlanColumn columnOf(int section) {
  return static_cast<PlanColumn>(section);
}

bool isNumeric(PlanColumn column) {
  return column == PlanColumn::Pages || column == PlanColumn::Count;
}

} // namespace

void PlanModel::setRows(std::unique_ptr<PlanRows> rows, const QString& text, bool warningsOnly) {
  rows->choose(text, warningsOnly);
  beginResetModel();
  m_rows = std::move(rows);
  endResetModel();
}

void PlanModel::choose(const QString& text, bool warningsOnly) {
  // A reset, since telling of each group of rows that goes would cost a view far more.
  beginResetModel();
  m_rows->choose(text, warningsOnly);
  endResetModel();
}

void PlanModel::setStale(bool isStale) {
  if (isStale != m_isStale) {
    m_isStale = isStale;
    emit dataChanged(index(0, 0), index(rowCount() - 1, planColumnCount - 1), {Qt::ForegroundRole});
  }
}

int PlanModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : m_rows->count();
}

int PlanModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : planColumnCount;
}

QVariant PlanModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= m_rows->count()) {
    return {};
  }
  const PlanColumn column = columnOf(index.column());
  switch (role) {
  case Qt::DisplayRole:
    return m_rows->text(index.row(), column);
  case Qt::ToolTipRole:
    return cellToolTip(m_rows->text(index.row(), column));
  case Qt::TextAlignmentRole:
    return QVariant(Qt::AlignVCenter | (isNumeric(column) ? Qt::AlignRight : Qt::AlignLeft));
  case Qt::ForegroundRole:
    if (column != PlanColumn::Note) {
      return m_isStale ? QVariant(hintColor()) : QVariant();
    }
    // A number at the name loses nothing.
    return QVariant(m_isStale || m_rows->planned(index.row()).fate == PlannedOutput::Fate::Renamed
                        ? hintColor()
                        : problemColor());
  default:
    return {};
  }
}

QVariant PlanModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= planColumnCount) {
    return {};
  }
  const PlanColumn column = columnOf(section);
  if (role == Qt::TextAlignmentRole) {
    return QVariant(Qt::AlignVCenter | (isNumeric(column) ? Qt::AlignRight : Qt::AlignLeft));
  }
  return role == Qt::DisplayRole ? QVariant(planColumnTitle(column)) : QVariant();
}

void PlanModel::sort(int column, Qt::SortOrder order) {
  if (column < 0 || column >= planColumnCount) {
    return;
  }
  emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
  const QModelIndexList before = persistentIndexList();
  std::vector<int> outputs;
  for (const QModelIndex& index : before) {
    outputs.push_back(m_rows->output(index.row()));
  }
  m_rows->sort({columnOf(column), order == Qt::DescendingOrder});
  std::vector<int> rowOf(static_cast<std::size_t>(m_rows->total()), -1);
  for (int row = 0; row < m_rows->count(); ++row) {
    rowOf[static_cast<std::size_t>(m_rows->output(row))] = row;
  }
  QModelIndexList after;
  for (qsizetype i = 0; i < before.size(); ++i) {
    const int output = outputs[static_cast<std::size_t>(i)];
    after += index(rowOf[static_cast<std::size_t>(output)], before[i].column());
  }
  changePersistentIndexList(before, after);
  emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

} // namespace folivex
