// PlanModel: a planned split for a table view.
#pragma once

#include "app/viewer/PlanRows.h"

#include <QAbstractTableModel>

namespace folivex {

/// The columns are those of PlanColumn, in their order.
class PlanModel : public QAbstractTableModel {
public:
  explicit PlanModel(QObject* parent)
      : QAbstractTableModel(parent), m_rows(std::make_unique<PlanRows>()) {}

  const PlanRows& rows() const { return *m_rows; }
  /// Rows with this text in any column and, if asked for, a warning are shown.
  void setRows(std::unique_ptr<PlanRows> rows, const QString& text, bool warningsOnly);
  void choose(const QString& text, bool warningsOnly);
  /// Rows that may no longer be true are drawn fainter.
  void setStale(bool isStale);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  void sort(int column, Qt::SortOrder order) override;

private:
  std::unique_ptr<PlanRows> m_rows;
  bool m_isStale = false;
};

} // namespace folivex
