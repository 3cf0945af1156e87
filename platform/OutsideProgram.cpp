#include "platform/OutsideProgram.h"

#include "platform/ChildLife.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace folivex::platform {

namespace {

constexpr int stepMilliseconds = 100;
constexpr int patienceMilliseconds = 3000;
constexpr qsizetype keptErrorOutput = 4096;

void keepTail(QByteArray& tail, QProcess& process) {
  tail += process.readAllStandardError();
  if (tail.size() > keptErrorOutput) {
    tail = tail.right(keptErrorOutput);
  }
}

void end(QProcess& process) {
  process.terminate();
  if (!process.waitForFinished(patienceMilliseconds)) {
    process.kill();
    process.waitForFinished();
  }
}

/// Who is waited for even on a Stop may be in the middle of a file.
void tie(QProcess& process, const OutsideProgram& program) {
#if defined(Q_OS_UNIX)
  if (program.onStop == OutsideProgram::OnStop::Terminate) {
    process.setChildProcessModifier(
        [parent = QCoreApplication::applicationPid()] { endWithParent(parent); });
  }
#else
  Q_UNUSED(process);
  Q_UNUSED(program);
#endif
}

} // namespace

ProgramEnd runOutsideProgram(const OutsideProgram& program, const std::function<bool()>& tick) {
  ProgramEnd result;
  QProcess process;
  process.setProgram(program.program);
  process.setArguments(program.arguments);
  if (!program.workingFolder.isEmpty()) {
    process.setWorkingDirectory(program.workingFolder);
  }
  process.setStandardInputFile(QProcess::nullDevice());
  process.setStandardOutputFile(QProcess::nullDevice());
  tie(process, program);
  process.start();
  if (!process.waitForStarted()) {
    result.errorOutput = process.errorString();
    return result;
  }
  result.started = true;
  if (program.onStop == OutsideProgram::OnStop::Terminate) {
    tieToThisProcess(process.processId());
  }

  QByteArray errorOutput;
  bool stopped = false;
  while (process.state() != QProcess::NotRunning && !process.waitForFinished(stepMilliseconds)) {
    keepTail(errorOutput, process);
    if (tick() && program.onStop == OutsideProgram::OnStop::Terminate) {
      end(process);
      stopped = true;
    }
  }
  keepTail(errorOutput, process);
  result.errorOutput = QString::fromLocal8Bit(errorOutput).trimmed();
  result.crashed = !stopped && process.exitStatus() == QProcess::CrashExit;
  result.exitCode = stopped ? 1 : process.exitCode();
  return result;
}

QString companionProgram(const QString& name) {
  const QString beside =
      QStandardPaths::findExecutable(name, {QCoreApplication::applicationDirPath()});
  return beside.isEmpty() ? QStandardPaths::findExecutable(name) : beside;
}

} // namespace folivex::platform
