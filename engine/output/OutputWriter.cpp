#include "engine/output/OutputWriter.h"

#include "engine/output/CAppendPdfInit.h"
#include "engine/output/CSplitPdfInit.h"
#include "engine/output/ExternalCommand.h"
#include "engine/words/Utf16.h"
#include "platform/OutsideProgram.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace folivex {

namespace {

/// While the library is waited for, a window is kept alive this often.
constexpr int waitStepMs = 20;

} // namespace

OutputWriter::OutputWriter(const SplitSetup& setup, RunState& state, Libraries libraries,
                           Operator& person, PageAccount& account)
    : m_setup(setup), m_state(state), m_libraries(libraries), m_person(person), m_account(account),
      m_handed(libraries.split) {}

void OutputWriter::startSource(const QString& source, int totalPages) {
  m_source = source;
  m_totalPages = totalPages;
  m_written.clear();
  m_unwritten.clear();
  m_failedOutputs = 0;
}

QSet<QString> OutputWriter::unwrittenPaths() const {
  return {m_unwritten.keyBegin(), m_unwritten.keyEnd()};
}

bool OutputWriter::isMissing(const QString& path, int firstPage) const {
  const auto unwritten = m_unwritten.constFind(path);
  return unwritten != m_unwritten.constEnd() &&
         (unwritten->contains(firstPage) || !m_written.contains(path));
}

void OutputWriter::output(const ReservedOutput& output) {
  m_person.handlePendingEvents();
  if (output.path.isEmpty()) {
    return;
  }
  if (m_state.userStop || m_state.abortRun) {
    m_account.stopped(output.firstPage, output.lastPage);
    m_unwritten[output.path].insert(output.firstPage);
    return;
  }
  ++m_state.outputCount;
  makeFolderOf(output.path);
  m_person.progress({QStringLiteral("Splitting/Saving to: %1").arg(output.path), output.firstPage,
                     m_totalPages, m_state.outputCount});
  if (usesExternalCommand(m_setup)) {
    runExternalCommand(output);
  } else {
    writeWithLibrary(output);
  }
}

void OutputWriter::replaced(const ReservedOutput& lost) {
  m_account.replaced(lost.firstPage, lost.lastPage);
}

void OutputWriter::makeFolderOf(const QString& path) {
  const qsizetype separator =
      std::max(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QDir::separator()));
  if (separator > 0) {
    // A folder that cannot be made shows when the file is written, with the reason.
    QDir().mkpath(path.left(separator));
  }
}

void OutputWriter::runExternalCommand(const ReservedOutput& output) {
  const ExternalCommand command =
      externalCommand(m_setup, m_source, output.path, output.firstPage, output.lastPage);
  platform::OutsideProgram program;
  program.program = command.program;
  program.arguments = command.arguments;
  program.workingFolder = QDir::currentPath();
  program.onStop = platform::OutsideProgram::OnStop::KeepWaiting;
  const platform::ProgramEnd end = platform::runOutsideProgram(program, [this] {
    m_person.handlePendingEvents();
    return m_state.userStop;
  });
  if (QFileInfo::exists(output.path)) {
    wrote(output);
  } else if (!end.started) {
    failed(output, QStringLiteral("the external command \"%1\" could not be started: %2")
                       .arg(command.program, end.errorOutput));
  } else {
    failed(output, QStringLiteral("the external command \"%1\" ended with %2 and left no file")
                       .arg(command.program)
                       .arg(end.exitCode));
  }
}

void OutputWriter::writeWithLibrary(const ReservedOutput& output) {
  m_person.handlePendingEvents();
  settle(0);
  if (m_setup.alwaysAppend && (QFileInfo::exists(output.path) || m_handed.holds(output.path))) {
    appendTo(output);
  } else if (handOver(output, output.path)) {
    m_handed.add(output);
  } else {
    failed(output, m_libraries.split.lastErrorText());
  }
}

bool OutputWriter::handOver(const ReservedOutput& output, const QString& target) {
  const int result = m_libraries.split.SplitPdfPages(utf16(target), output.firstPage,
                                                     output.lastPage, m_totalPages);
  m_person.handlePendingEvents();
  m_libraries.split.GetProcessingStatus();
  return result == CSplitPdfInit::ok;
}

/// Empty, or why the pages could not be written.
QString OutputWriter::writeAtOnce(const ReservedOutput& output, const QString& target) {
  finish();
  if (!handOver(output, target)) {
    return m_libraries.split.lastErrorText();
  }
  while (m_libraries.split.DrainRanges(waitStepMs) > 0) {
    m_person.handlePendingEvents();
  }
  CSplitPdfInit::FailedRange failure{};
  return m_libraries.split.TakeFailedRange(&failure) == CSplitPdfInit::ok
             ? QString()
             : QString::fromUtf16(failure.reason);
}

void OutputWriter::settle(int milliseconds) {
  for (const HandedOutputs::Fate& fate : m_handed.settled(milliseconds)) {
    if (fate.failed) {
      failed(fate.output, fate.problem);
    } else {
      wrote(fate.output);
    }
  }
}

void OutputWriter::finish() {
  settle(waitStepMs);
  while (!m_handed.isEmpty()) {
    m_person.handlePendingEvents();
    settle(waitStepMs);
  }
}

void OutputWriter::appendTo(const ReservedOutput& output) {
  const QString addition = output.path + QStringLiteral(".tmp");
  QFile::remove(addition);
  if (const QString problem = writeAtOnce(output, addition); !problem.isEmpty()) {
    failed(output, problem);
    return;
  }
  const bool appended =
      m_libraries.append.getAppendPDFToFile(utf16(addition), utf16(output.path), u"") != 0;
  m_libraries.append.GetStatus();
  if (appended) {
    wrote(output);
  } else {
    appendFailed(output);
  }
  QFile::remove(addition);
}

void OutputWriter::appendFailed(const ReservedOutput& output) {
  m_state.error = RunError::Append;
  failed(output, m_libraries.append.lastErrorText());
  if (m_state.commandLine) {
    m_state.abortRun = true;
  } else if (!m_state.automation) {
    m_person.message(QStringLiteral("problem appending to file: %1").arg(output.path));
  }
}

void OutputWriter::wrote(const ReservedOutput& output) {
  const auto earlier = m_written.constFind(output.path);
  if (!m_setup.alwaysAppend && earlier != m_written.constEnd()) {
    m_account.overwritten(earlier->first, earlier->last);
  }
  m_written.insert(output.path, {output.firstPage, output.lastPage});
  m_account.written(output.firstPage, output.lastPage);
}

void OutputWriter::failed(const ReservedOutput& output, const QString& reason) {
  m_account.failed(output.firstPage, output.lastPage);
  ++m_failedOutputs;
  m_unwritten[output.path].insert(output.firstPage);
  if (m_state.error == RunError::None) {
    m_state.error = RunError::OutputFailed;
  }
  m_person.note(QStringLiteral("%1: pages %2-%3 could not be written: %4")
                    .arg(output.path)
                    .arg(output.firstPage)
                    .arg(output.lastPage)
                    .arg(reason));
}

} // namespace folivex
