// BatchModel: the rows of the batch list as a table view wants them.
#pragma once

#include "batch/BatchEntries.h"

#include <QAbstractTableModel>

#include <functional>

namespace folivex {

class BatchModel : public QAbstractTableModel, private BatchEntriesWatcher {
public:
  enum Column { Use, Filename, Status, Result, columnCountAll };

  /// Watches `rows` as long as it lives; they must outlive it.
  explicit BatchModel(BatchEntries& rows);
  ~BatchModel() override;
  BatchModel(const BatchModel&) = delete;
  BatchModel& operator=(const BatchModel&) = delete;

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  int columnCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  /// A row is to be made visible.
  std::function<void(int row)> onShowRow;
  /// The rows are others, or say something else, than before.
  std::function<void()> onChanged;

private:
  void onChange(RowChange change, RowRange rows, const std::function<void()>& make) override;
  void showRow(int row) override;

  BatchEntries& m_rows;
};

} // namespace folivex
