#include "batch/BatchModel.h"

#include "widgets/ListTable.h"
#include "widgets/Theme.h"

#include <QApplication>
#include <QFont>
#include <QPalette>

#include <array>

namespace folivex {

namespace {

constexpr std::array<const char*, BatchModel::columnCountAll> headers = {"Use", "Filename",
                                                                         "Status", "Result"};

/// A name may hold line breaks and the like; each is shown as its picture, on one line.
QString onOneLine(QString text) {
  constexpr char16_t firstPicture = 0x2400;
  for (QChar& c : text) {
    if (c.unicode() < 0x20) {
      c = QChar(static_cast<char16_t>(firstPicture + c.unicode()));
    } else if (c == QChar::LineSeparator || c == QChar::ParagraphSeparator) {
      c = QChar(0x2424);
    }
  }
  return text;
}

QString cellText(const BatchEntry& entry, int column) {
  switch (column) {
  case BatchModel::Use:
    return entry.useFlag;
  case BatchModel::Filename:
    return onOneLine(entry.path);
  case BatchModel::Result:
    return onOneLine(entry.result);
  default:
    return entry.status;
  }
}

QVariant cellColor(const BatchEntry& entry, int column) {
  if (column == BatchModel::Status && entry.status == statusDone) {
    return successColor();
  }
  if (column >= BatchModel::Status && entry.status == statusFileError) {
    return problemColor();
  }
  if (entry.useFlag != useYes) {
    return QApplication::palette().brush(QPalette::PlaceholderText);
  }
  return {};
}

/// Not in the status column: it is too narrow for its longest text in bold.
QVariant cellFont(const BatchEntry& entry, int column) {
  if (column != BatchModel::Filename || entry.status != statusProcessing) {
    return {};
  }
  QFont font;
  font.setBold(true);
  return font;
}

} // namespace

BatchModel::BatchModel(BatchEntries& rows) : m_rows(rows) {
  m_rows.setWatcher(this);
}

BatchModel::~BatchModel() {
  m_rows.setWatcher(nullptr);
}

int BatchModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : m_rows.count();
}

int BatchModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columnCountAll;
}

QVariant BatchModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};
  }
  const BatchEntry& entry = m_rows.at(index.row());
  switch (role) {
  case Qt::DisplayRole:
    return cellText(entry, index.column());
  case Qt::ToolTipRole:
    return cellToolTip(cellText(entry, index.column()));
  case Qt::ForegroundRole:
    return cellColor(entry, index.column());
  case Qt::FontRole:
    return cellFont(entry, index.column());
  default:
    return {};
  }
}

QVariant BatchModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCountAll) {
    return {};
  }
  if (role == Qt::DisplayRole) {
    return QString::fromLatin1(headers[static_cast<std::size_t>(section)]);
  }
  if (role == Qt::TextAlignmentRole) {
    return headerAlignment();
  }
  return {};
}

void BatchModel::onChange(RowChange change, RowRange rows, const std::function<void()>& make) {
  switch (change) {
  case RowChange::Added:
    beginInsertRows({}, rows.first, rows.last);
    make();
    endInsertRows();
    break;
  case RowChange::Removed:
    beginRemoveRows({}, rows.first, rows.last);
    make();
    endRemoveRows();
    break;
  case RowChange::AllOver:
    beginResetModel();
    make();
    endResetModel();
    break;
  case RowChange::Changed:
    make();
    emit dataChanged(index(rows.first, 0), index(rows.last, columnCountAll - 1));
    break;
  }
  if (onChanged) {
    onChanged();
  }
}

void BatchModel::showRow(int row) {
  if (onShowRow) {
    onShowRow(row);
  }
}

} // namespace folivex
