#include "mail/windows/EmailModel.h"

#include "mail/MailAddress.h"
#include "mail/MailHeader.h"
#include "platform/FileSystem.h"
#include "widgets/ListTable.h"
#include "widgets/Theme.h"

#include <QApplication>
#include <QCollator>
#include <QPalette>

#include <algorithm>

namespace folivex {

namespace {

/// More of a body than this is on no screen.
constexpr qsizetype longestCell = 300;

using Rows = std::vector<std::size_t>;

/// What the person should know of the file before it is sent, short.
QString fileWarning(const EmailEntry& entry) {
  return entry.isChanged           ? QStringLiteral("changed since written")
         : entry.addressesDiffer   ? QStringLiteral("pages with different addresses")
         : entry.holdsEarlierPages ? QStringLiteral("with pages of earlier runs")
                                   : QString();
}

QString addressRemark(const EmailEntry& entry) {
  if (entry.address.isEmpty()) {
    return QStringLiteral(
        "No address: nothing is sent for this row. Double-click it to enter one.");
  }
  const QString problem = addressProblem(entry.address);
  return problem.isEmpty() ? QString()
                           : QStringLiteral("This cannot be sent: the address %1.").arg(problem);
}

/// Asked only when somebody points at the row: the disk may be slow.
QString fileRemark(const EmailEntry& entry) {
  if (entry.isChanged) {
    return QStringLiteral("The file was changed since it was written. It is not sent unless you "
                          "look at it and choose \"Accept as it is now\".");
  }
  return platform::isReadableFile(entry.file)
             ? QString()
             : QStringLiteral("This cannot be sent: the file cannot be read.");
}

/// Texts of pages and sheets are no markup; the outer one makes the lines.
QString toolTipOf(const EmailRow& row, const QString& text) {
  QStringList lines = {text, addressRemark(row.entry), fileRemark(row.entry)};
  lines.removeAll(QString());
  if (!row.entry.furtherAddresses.isEmpty()) {
    lines += QStringLiteral("Other addresses on its pages: %1")
                 .arg(row.entry.furtherAddresses.join(QStringLiteral(", ")));
  }
  for (QString& line : lines) {
    line = line.toHtmlEscaped().replace(u'\n', QStringLiteral("<br>"));
  }
  return QStringLiteral("<qt>%1</qt>").arg(lines.join(QStringLiteral("<br>")));
}

QVariant cellColor(const EmailRow& row, EmailColumn column) {
  if (row.entry.address.isEmpty()) {
    return QApplication::palette().brush(QPalette::PlaceholderText);
  }
  if (column == EmailColumn::Email && !isMailAddress(row.entry.address)) {
    return problemColor();
  }
  if (column == EmailColumn::File && !fileWarning(row.entry).isEmpty()) {
    return problemColor();
  }
  return {};
}

int pageOf(const EmailRow& row, EmailColumn column) {
  return column == EmailColumn::ExtractPageStart ? row.entry.extractPageStart
                                                 : row.entry.extractPageEnd;
}

bool isPageColumn(EmailColumn column) {
  return factsOf(column).text == nullptr;
}

/// Asks for the key of each row once.
template <typename KeyOf> void sortByKeys(Rows& rows, Qt::SortOrder order, const KeyOf& keyOf) {
  std::vector<std::pair<decltype(keyOf(0)), std::size_t>> keyed;
  keyed.reserve(rows.size());
  for (const std::size_t row : rows) {
    keyed.emplace_back(keyOf(row), row);
  }
  std::ranges::stable_sort(keyed, [order](const auto& a, const auto& b) {
    return order == Qt::AscendingOrder ? a.first < b.first : b.first < a.first;
  });
  std::ranges::transform(keyed, rows.begin(), [](const auto& each) { return each.second; });
}

} // namespace

EmailModel::EmailModel(EmailList& list) : m_list(list), m_shown(rowsToShow()) {}

/// The subject that a mail goes out with, not what its row has of its own.
QString EmailModel::textOf(const EmailRow& row, EmailColumn column) const {
  return column == EmailColumn::Subject ? subjectOf(row.entry, m_subject) : row.cell(column);
}

QString EmailModel::shownText(const EmailRow& row, EmailColumn column) const {
  QString text = textOf(row, column);
  if (column != EmailColumn::File) {
    text = text.left(longestCell);
  } else if (const QString warning = fileWarning(row.entry); !warning.isEmpty()) {
    text = QStringLiteral("%1  (%2)").arg(text, warning);
  }
  return withoutControlCharacters(text); // a cell is one line
}

Rows EmailModel::rowsToShow() const {
  Rows rows;
  rows.reserve(m_list.count());
  const auto matches = [this](const QString& text) {
    return text.contains(m_filter, Qt::CaseInsensitive);
  };
  for (std::size_t row = 0; row < m_list.count(); ++row) {
    const EmailEntry& entry = m_list.rows()[row].entry;
    if (m_filter.isEmpty() || matches(entry.address) || matches(entry.file) || matches(entry.cc) ||
        matches(subjectOf(entry, m_subject))) {
      rows.push_back(row);
    }
  }
  putInOrder(rows);
  return rows;
}

void EmailModel::putInOrder(Rows& rows) const {
  if (m_sortColumn < 0) {
    return;
  }
  const auto column = static_cast<EmailColumn>(m_sortColumn);
  if (isPageColumn(column)) {
    sortByKeys(rows, m_sortOrder,
               [&](std::size_t row) { return pageOf(m_list.rows()[row], column); });
    return;
  }
  QCollator collator;
  collator.setNumericMode(true); // "9.pdf" stands before "10.pdf"
  collator.setCaseSensitivity(Qt::CaseInsensitive);
  sortByKeys(rows, m_sortOrder,
             [&](std::size_t row) { return collator.sortKey(textOf(m_list.rows()[row], column)); });
}

void EmailModel::changeList(const std::function<void()>& change) {
  beginResetModel();
  change();
  m_shown = rowsToShow();
  endResetModel();
}

void EmailModel::rowChanged(std::size_t row) {
  const auto found = std::ranges::find(m_shown, row);
  if (found != m_shown.end()) {
    const int viewRow = static_cast<int>(found - m_shown.begin());
    emit dataChanged(index(viewRow, 0), index(viewRow, emailColumnCount - 1));
  }
}

void EmailModel::setFilter(const QString& text) {
  changeList([&] { m_filter = text; });
}

void EmailModel::sort(int column, Qt::SortOrder order) {
  emit layoutAboutToBeChanged({}, VerticalSortHint);
  const Rows before = m_shown;
  m_sortColumn = column;
  m_sortOrder = order;
  std::ranges::sort(m_shown); // equal rows stand in sending order
  putInOrder(m_shown);
  std::vector<int> placeOf(m_list.count());
  for (std::size_t i = 0; i < m_shown.size(); ++i) {
    placeOf[m_shown[i]] = static_cast<int>(i);
  }
  const QModelIndexList from = persistentIndexList();
  QModelIndexList to;
  to.reserve(from.size());
  for (const QModelIndex& old : from) {
    to += index(placeOf[before[static_cast<std::size_t>(old.row())]], old.column());
  }
  changePersistentIndexList(from, to);
  emit layoutChanged({}, VerticalSortHint);
}

int EmailModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int EmailModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : emailColumnCount;
}

QVariant EmailModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};
  }
  const EmailRow& row = m_list.rows()[listRow(index.row())];
  const auto column = static_cast<EmailColumn>(index.column());
  switch (role) {
  case Qt::DisplayRole:
    return shownText(row, column);
  case Qt::ToolTipRole:
    return toolTipOf(row, textOf(row, column));
  case Qt::ForegroundRole:
    return cellColor(row, column);
  case Qt::TextAlignmentRole:
    return isPageColumn(column) ? QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter)
                                : QVariant();
  case Qt::AccessibleDescriptionRole:
    return addressRemark(row.entry);
  default:
    return {};
  }
}

QVariant EmailModel::headerData(int section, Qt::Orientation orientation, int role) const {
  const bool isColumn = orientation == Qt::Horizontal;
  if (section < 0 || section >= (isColumn ? emailColumnCount : rowCount())) {
    return {};
  }
  if (!isColumn) {
    return role == Qt::DisplayRole
               ? QVariant::fromValue(static_cast<qulonglong>(listRow(section) + 1))
               : QVariant();
  }
  switch (role) {
  case Qt::DisplayRole:
    return headerOf(static_cast<EmailColumn>(section));
  case Qt::TextAlignmentRole:
    return headerAlignment();
  case Qt::ToolTipRole:
    return QStringLiteral("%1: click to sort what you see. The mails go out in the order of the "
                          "numbers at the left, however the rows are sorted; a third click sorts "
                          "by them.")
        .arg(headerOf(static_cast<EmailColumn>(section)));
  default:
    return {};
  }
}

} // namespace folivex
