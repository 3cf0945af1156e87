// BatchEntries: the rows of the batch list, in the order in which they are processed.
#pragma once

#include "batch/BatchEntry.h"
#include "engine/job/BatchRun.h"

#include <functional>
#include <vector>

namespace folivex {

/// Rows from `first` to `last`, both included, counted from 0.
struct RowRange {
  int first = 0;
  int last = 0;
};

enum class RowChange {
  Added,
  Removed,
  AllOver, ///< rows came or went in many places
  Changed
};

/// Is told what happens to the rows, for showing them.
class BatchEntriesWatcher {
public:
  virtual ~BatchEntriesWatcher() = default;

  /// Must call `make`, which makes the change.
  virtual void onChange(RowChange change, RowRange rows, const std::function<void()>& make) = 0;
  virtual void showRow(int row) = 0;
};

/// The same path may stand here any number of times. Rows that are not there are ignored by every
/// operation. Each operation costs at most one walk over the rows.
class BatchEntries : public BatchRows {
public:
  /// One at a time; null for none. Not owned.
  void setWatcher(BatchEntriesWatcher* watcher) { m_watcher = watcher; }

  int count() const override { return static_cast<int>(m_entries.size()); }
  QString useFlag(int row) const override { return at(row).useFlag; }
  QString path(int row) const override { return at(row).path; }
  void setStatus(int row, const QString& status, const QString& result) override;
  void showRow(int row) override;

  /// An empty entry when there is no such row.
  const BatchEntry& at(int row) const;
  const std::vector<BatchEntry>& all() const { return m_entries; }

  // Kept up to date with every change, so asking costs nothing.
  int inUse() const { return m_inUse; }
  int done() const { return m_done; }
  int fileErrors() const { return m_fileErrors; }

  void append(std::vector<BatchEntry> entries);
  void clear();
  /// In any order; overlapping ranges are fine.
  void remove(const std::vector<RowRange>& ranges);
  /// Puts back the rows that went last, to where they stood; the next call those before them.
  void bringBack();
  bool canBringBack() const { return !m_removed.empty(); }

  /// Changes places with the row above or below; returns where the row stands now, or -1 when
  /// nothing moved.
  int moveUp(int row);
  int moveDown(int row);

  /// Of each row: No, or nothing, becomes Yes; anything else becomes No.
  void toggleUse(RowRange rows);

private:
  bool has(int row) const { return row >= 0 && row < count(); }
  void change(RowChange change, RowRange rows, const std::function<void()>& make);
  void swapWithNext(int row);
  void countIn(RowRange rows, int sign);

  struct RemovedRow {
    int row = 0; ///< as it stood
    BatchEntry entry;
  };

  std::vector<BatchEntry> m_entries;
  std::vector<std::vector<RemovedRow>> m_removed; ///< rows that went at once, in their order
  BatchEntriesWatcher* m_watcher = nullptr;
  int m_inUse = 0;
  int m_done = 0;
  int m_fileErrors = 0;
};

} // namespace folivex
