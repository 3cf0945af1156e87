// PlanModel: a planned split for a table view.
#pragma once

#include "app/viewer/PlanRows.h"

#include <QAbstractTableModel>

namespace folivex {

/// The columns are those of PlanColumn, in their order.
class PlanModel : public QAbstractTableModel {
public:
  explicit PlanModel(QObject* parent) : QAbstractTableModel(parent) {}

  const PlanRows& rows() const { return m_rows; }
  void setPlan(SplitPlan plan);
  void choose(const QString& text, bool warningsOnly);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  void sort(int column, Qt::SortOrder order) override;

private:
  PlanRows m_rows;
};

} // namespace folivex
