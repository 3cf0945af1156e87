// EmailModel: the rows of the e-mail list as a table view wants them, filtered and sorted for the
// eye alone.
#pragma once

#include "mail/EmailList.h"

#include <QAbstractTableModel>

#include <functional>
#include <vector>

namespace folivex {

/// Sorting and filtering never touch the list: its order is the sending order, which the vertical
/// header tells as numbers from 1. Both take time in proportion to the rows (sorting a little
/// more), which a proxy model of Qt does not for filters that leave scattered rows.
class EmailModel : public QAbstractTableModel {
public:
  /// `list` must outlive this, and be changed through the functions below only.
  explicit EmailModel(EmailList& list);

  /// That of the settings, for rows without one of their own.
  void setSubject(const QString& subject) {
    changeList([&] { m_subject = subject; });
  }
  /// Anything may change in `change`.
  void changeList(const std::function<void()>& change);
  /// A row of the list has another address now, or its file was looked at. It stays where it is
  /// seen.
  void rowChanged(std::size_t row);

  /// Leaves the rows with this text, in any case, in address, file, copy address or subject. Empty:
  /// all.
  void setFilter(const QString& text);
  const QString& filter() const { return m_filter; }

  /// Of the list, for a row that is seen.
  std::size_t listRow(int viewRow) const { return m_shown[static_cast<std::size_t>(viewRow)]; }
  std::size_t shownCount() const { return m_shown.size(); }

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  int columnCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation,
                      int role = Qt::DisplayRole) const override;
  /// A negative column: in sending order.
  void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

private:
  std::vector<std::size_t> rowsToShow() const;
  void putInOrder(std::vector<std::size_t>& rows) const;
  QString textOf(const EmailRow& row, EmailColumn column) const;
  QString shownText(const EmailRow& row, EmailColumn column) const;

  EmailList& m_list;
  QString m_subject;
  QString m_filter;
  int m_sortColumn = -1;
  Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
  std::vector<std::size_t> m_shown; ///< rows of the list, as they are seen
};

} // namespace folivex
