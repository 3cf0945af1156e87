#include "mail/import/EmailImport.h"

#include "platform/OutsideProgram.h"
#include "platform/Paths.h"
#include "sheetflat/Csv.h"

#include <QFileInfo>
#include <QTemporaryDir>

namespace folivex {

namespace {

EmailImport notDone(const QString& spreadsheet, const QString& reason) {
  EmailImport import;
  import.problem = QStringLiteral("%1: %2").arg(spreadsheet, reason);
  return import;
}

/// What Sheetflat said, without its own name and the file's in front.
QString reasonIn(const platform::ProgramEnd& end, const QString& source) {
  QString reason = end.errorOutput;
  const QString prefix = QStringLiteral("Sheetflat: %1: ").arg(source);
  if (reason.startsWith(prefix)) {
    reason.remove(0, prefix.size());
  }
  return reason.isEmpty() ? QStringLiteral("Sheetflat ended with %1").arg(end.exitCode) : reason;
}

} // namespace

EmailImport importEmailList(const QString& spreadsheet, const std::function<bool()>& tick) {
  platform::OutsideProgram program;
  program.program = platform::companionProgram(QStringLiteral("Sheetflat"));
  if (program.program.isEmpty()) {
    return notDone(spreadsheet, QStringLiteral("the program Sheetflat was not found"));
  }
  const QTemporaryDir work(platform::temporaryFolder() + QStringLiteral("folivex-import-XXXXXX"));
  if (!work.isValid()) {
    return notDone(spreadsheet, work.errorString());
  }
  const QFileInfo source(platform::withoutTrailingBlanks(spreadsheet));
  const QString csv = work.filePath(QStringLiteral("sheet.csv"));
  program.arguments = {source.absoluteFilePath(), csv};
  bool isStopped = false;
  const platform::ProgramEnd end = platform::runOutsideProgram(program, [&] {
    isStopped = isStopped || tick();
    return isStopped;
  });
  if (isStopped) {
    return notDone(spreadsheet, QStringLiteral("the import was stopped"));
  }
  if (!end.started || end.crashed || end.exitCode != 0) {
    return notDone(spreadsheet, reasonIn(end, source.absoluteFilePath()));
  }
  QString text;
  QString problem;
  if (!sheetflat::readTextFile(csv, text, problem)) {
    return notDone(spreadsheet, problem);
  }
  EmailImport import = emailsOfRows(sheetflat::parseCsv(text, u',').records, source.absolutePath());
  return import.done ? import : notDone(spreadsheet, import.problem);
}

} // namespace folivex
