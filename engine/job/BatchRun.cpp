#include "engine/job/BatchRun.h"

#include "platform/FileSystem.h"

#include <QFileInfo>

namespace folivex {

QString noListText() {
  return QStringLiteral("You must prepare a list first or load one");
}

BatchResult runBatch(BatchRows& rows, RunState& state, Operator& person,
                     const std::function<RowResult(const QString& path)>& processFile) {
  const QString fileError = QStringLiteral("file error");
  BatchResult batch;
  if (rows.count() == 0) {
    person.message(noListText());
    return batch;
  }
  const auto isInUse = [&rows](int row) { return rows.useFlag(row) == QStringLiteral("Yes"); };
  int inUse = 0;
  for (int row = 0; row < rows.count(); ++row) {
    inUse += isInUse(row) ? 1 : 0;
  }
  for (int row = 0, source = 0; row < rows.count() && !batch.stopped; ++row) {
    person.handlePendingEvents();
    if (!isInUse(row)) {
      continue;
    }
    person.beginSource(++source, inUse);
    const QString path = rows.path(row);
    if (!platform::isReadableFile(path)) {
      rows.setStatus(row, fileError,
                     QFileInfo::exists(path) ? QStringLiteral("The file cannot be read.")
                                             : QStringLiteral("The file is not there."));
      ++batch.failed;
      person.note(QStringLiteral("%1: the file cannot be opened").arg(path));
      continue;
    }
    rows.setStatus(row, QStringLiteral("Processing"), {});
    ++batch.processed;
    const bool automationBefore = state.automation;
    state.automation = true;
    const RowResult result = processFile(path);
    state.automation = automationBefore;
    batch.failed += result.end == RowEnd::Failed ? 1 : 0;
    // The next file would clear the flag: a Stop ends the whole batch.
    batch.stopped = state.userStop;
    rows.setStatus(row,
                   result.end == RowEnd::Stopped ? QStringLiteral("Stopped")
                   : result.end == RowEnd::Done  ? QStringLiteral("Done")
                                                 : fileError,
                   result.text);
    rows.showRow(row);
  }
  person.message(QStringLiteral("Done!\n\n%1 files processed").arg(batch.processed));
  return batch;
}

} // namespace folivex
