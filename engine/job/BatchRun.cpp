#include "engine/job/BatchRun.h"

#include "platform/FileSystem.h"

namespace folivex {

BatchResult runBatch(BatchRows& rows, RunState& state, Operator& person,
                     const std::function<RowEnd(const QString& path)>& processFile) {
  const QString fileError = QStringLiteral("file error");
  BatchResult result;
  if (rows.count() == 0) {
    person.message(QStringLiteral("You must prepare a list first or load one"));
    return result;
  }
  for (int row = 0; row < rows.count() && !result.stopped; ++row) {
    person.handlePendingEvents();
    if (rows.useFlag(row) != QStringLiteral("Yes")) {
      continue;
    }
    const QString path = rows.path(row);
    if (!platform::isReadableFile(path)) {
      rows.setStatus(row, fileError);
      person.note(QStringLiteral("%1: the file cannot be opened").arg(path));
      continue;
    }
    rows.setStatus(row, QStringLiteral("Processing"));
    ++result.processed;
    const bool automationBefore = state.automation;
    state.automation = true;
    const RowEnd end = processFile(path);
    state.automation = automationBefore;
    // The next file would clear the flag: a Stop ends the whole batch.
    result.stopped = state.userStop;
    rows.setStatus(row, end == RowEnd::Stopped ? QStringLiteral("Stopped")
                        : end == RowEnd::Done  ? QStringLiteral("Done")
                                               : fileError);
    rows.showRow(row);
  }
  person.message(QStringLiteral("Done!\n\n%1 files processed").arg(result.processed));
  return result;
}

} // namespace folivex
