#include "scanlite/ChildProgram.h"

#include <QDeadlineTimer>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>

#include <csignal>

#if defined(Q_OS_UNIX)
#include <unistd.h>
#endif
#if defined(Q_OS_LINUX)
#include <sys/prctl.h>
#endif

namespace scanlite {

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
#endif

// The OCR program starts workers of its own: a group of its own lets one signal reach them all.
void leadOwnGroup(QProcess& process) {
#if defined(Q_OS_UNIX)
  process.setChildProcessModifier([] {
    setpgid(0, 0);
#if defined(Q_OS_LINUX)
    // Nobody can pass on a SIGKILL: at least the child does not outlive us.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
#endif
  });
#else
  Q_UNUSED(process);
#endif
}

void signalGroup(qint64 group, int signal) {
#if defined(Q_OS_UNIX)
  ::kill(static_cast<pid_t>(-group), signal);
#else
  Q_UNUSED(group);
  Q_UNUSED(signal);
#endif
}

void stopGroup(QProcess& process) {
  const qint64 group = process.processId();
  signalGroup(group, SIGTERM);
  process.waitForFinished(graceMilliseconds);
#if defined(Q_OS_UNIX)
  signalGroup(group, SIGKILL);
#endif
  process.kill();
  process.waitForFinished(-1);
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

ChildRun runChild(const QString& program, const QStringList& arguments, const QString& workFolder) {
  ChildRun run;
  const QString path = QStandardPaths::findExecutable(program);
  if (path.isEmpty()) {
    return run;
  }
  QProcess process;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("TMPDIR"), workFolder);
  environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
  process.setProcessEnvironment(environment);
  process.setProcessChannelMode(QProcess::MergedChannels);
  process.setStandardInputFile(QProcess::nullDevice());
  leadOwnGroup(process);
  process.start(path, arguments);
  if (!process.waitForStarted(-1)) {
    return run;
  }
  QByteArray output;
  bool ended = false;
  while (!ended && stopAsked == 0) {
    ended = process.waitForFinished(tickMilliseconds) || process.state() == QProcess::NotRunning;
    output = (output + process.readAll()).right(keptOutput);
  }
  if (!ended) {
    stopGroup(process);
    run.end = ChildEnd::Stopped;
    return run;
  }
  run.end = process.exitStatus() == QProcess::NormalExit ? ChildEnd::Exited : ChildEnd::Crashed;
  run.exitCode = process.exitCode();
  run.output = QString::fromUtf8(output).trimmed();
  return run;
}

} // namespace scanlite
