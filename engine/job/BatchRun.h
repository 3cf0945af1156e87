// BatchRun: the same job for every row of a list.
#pragma once

#include "engine/base/Operator.h"
#include "engine/base/RunState.h"

#include <functional>

namespace folivex {

/// The list that a batch run works through; rows count from 0.
class BatchRows {
public:
  virtual ~BatchRows() = default;

  virtual int count() const = 0;
  /// The use flag as it stands; a row is taken when it is exactly "Yes".
  virtual QString useFlag(int row) const = 0;
  virtual QString path(int row) const = 0;
  /// `result` says what came of the row, for a person; empty while that is not known.
  virtual void setStatus(int row, const QString& status, const QString& result) = 0;
  /// Makes the row visible, where there is something to see.
  virtual void showRow(int row) = 0;
};

/// What a batch run came to.
struct BatchResult {
  int processed = 0;
  int failed = 0; ///< rows in use with "file error"
  bool stopped = false;
};

/// Before there is a list, or one with rows.
QString noListText();

/// What became of one row.
enum class RowEnd {
  Done,
  Failed, ///< not all of it was split
  Stopped ///< in the middle
};

struct RowResult {
  RowEnd end = RowEnd::Done;
  QString text; ///< pages, outputs, and what went wrong
};

/// Runs `processFile` for each row in use, in list order and in automation mode, and sets the rows'
/// status: "Processing", then "Done", or "file error" for a file that cannot be opened or not be
/// split whole, or "Stopped". A file that fails does not end the batch; Stop does, at the next row.
/// At the end the person is told.
BatchResult runBatch(BatchRows& rows, RunState& state, Operator& person,
                     const std::function<RowResult(const QString& path)>& processFile);

} // namespace folivex
