#include "platform/ChildProgram.h"

#include "platform/ChildLife.h"

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>

#include <csignal>

#if defined(Q_OS_UNIX)
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace folivex::platform {

namespace {

constexpr int tickMilliseconds = 100;
// Shorter than the patience of the program that stops us.
constexpr int graceMilliseconds = 2000;
constexpr qsizetype keptOutput = 65536;

volatile std::sig_atomic_t stopAsked = 0;

#if defined(Q_OS_UNIX)
void noteStop(int /*signal*/) {
  stopAsked = 1;
}

void limit(int resource, qint64 most) {
  const rlimit value = {static_cast<rlim_t>(most), static_cast<rlim_t>(most)};
  setrlimit(static_cast<__rlimit_resource_t>(resource), &value);
}
#endif

/// What is said here happens in the child, before it becomes the program.
void prepare(QProcess& process, const ChildProgram& program) {
#if defined(Q_OS_UNIX)
  process.setChildProcessModifier([memory = program.mostMemory, file = program.longestFile,
                                   parent = QCoreApplication::applicationPid()] {
    // Programs start workers: a group of its own lets one signal reach them all.
    setpgid(0, 0);
    if (memory > 0) {
      limit(RLIMIT_AS, memory);
    }
    if (file > 0) {
      limit(RLIMIT_FSIZE, file);
    }
    limit(RLIMIT_CORE, 0);
    // Nobody can pass on a SIGKILL: at least the child does not outlive us.
    endWithParent(parent);
  });
#else
  Q_UNUSED(process);
  Q_UNUSED(program);
#endif
}

void stopGroup(QProcess& process) {
#if defined(Q_OS_UNIX)
  const pid_t group = static_cast<pid_t>(process.processId());
  ::kill(-group, SIGTERM);
  process.waitForFinished(graceMilliseconds);
  ::kill(-group, SIGKILL);
#else
  process.terminate();
  process.waitForFinished(graceMilliseconds);
#endif
  process.kill();
  process.waitForFinished(-1);
}

ChildEnd endOf(const QProcess& process) {
  if (process.exitStatus() == QProcess::NormalExit) {
    return ChildEnd::Exited;
  }
#if defined(Q_OS_UNIX)
  // For a program that a signal ended, Qt hands on the signal.
  if (process.exitCode() == SIGXFSZ) {
    return ChildEnd::WroteTooMuch;
  }
#endif
  return ChildEnd::Crashed;
}

} // namespace

void passOnStopSignals() {
#if defined(Q_OS_UNIX)
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    struct sigaction action = {};
    action.sa_handler = noteStop;
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
  }
#endif
}

ChildRun runChild(const ChildProgram& program) {
  ChildRun run;
  const QString path = QStandardPaths::findExecutable(program.name);
  if (path.isEmpty()) {
    return run;
  }
  QProcess process;
  process.setProcessEnvironment(program.environment);
  process.setWorkingDirectory(program.workingFolder);
  process.setProcessChannelMode(QProcess::MergedChannels);
  process.setStandardInputFile(QProcess::nullDevice());
  prepare(process, program);
  process.start(path, program.arguments);
  if (!process.waitForStarted(-1)) {
    return run;
  }
  tieToThisProcess(process.processId());
  QByteArray output;
  bool ended = false;
  while (!ended && stopAsked == 0 && !program.deadline.hasExpired()) {
    ended = process.waitForFinished(tickMilliseconds) || process.state() == QProcess::NotRunning;
    output = (output + process.readAll()).right(keptOutput);
  }
  run.output = QString::fromLocal8Bit(output).trimmed();
  if (!ended) {
    stopGroup(process);
    run.end = stopAsked != 0 ? ChildEnd::Stopped : ChildEnd::TimedOut;
    return run;
  }
  run.exitCode = process.exitCode();
  run.end = endOf(process);
  return run;
}

} // namespace folivex::platform
