#include "sheetflat/Converter.h"

#include "sheetflat/Csv.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>

#include <csignal>

#if defined(Q_OS_UNIX)
#include <sys/resource.h>
#include <unistd.h>
#endif
#if defined(Q_OS_LINUX)
#include <sys/prctl.h>
#endif

namespace sheetflat {

namespace {

constexpr int tickMilliseconds = 100;
// Shorter than the patience of the program that stops us.
constexpr int graceMilliseconds = 1500;
constexpr qsizetype keptOutput = 4096;

volatile std::sig_atomic_t stopAsked = 0;

#if defined(Q_OS_UNIX)
constexpr rlim_t memoryLimit = 2UL * 1024 * 1024 * 1024;

void noteStop(int /*signal*/) {
  stopAsked = 1;
}

void limit(int resource, rlim_t most) {
  const rlimit value = {most, most};
  setrlimit(static_cast<__rlimit_resource_t>(resource), &value);
}
#endif

void confine(QProcess& process) {
#if defined(Q_OS_UNIX)
  process.setChildProcessModifier([] {
    limit(RLIMIT_AS, memoryLimit);
    limit(RLIMIT_FSIZE, csvSizeLimit);
    limit(RLIMIT_CORE, 0);
#if defined(Q_OS_LINUX)
    // Nobody can pass on a SIGKILL: at least the converter does not outlive us.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
  });
#else
  Q_UNUSED(process);
#endif
}

// The converter reads and keeps settings of the person's own where it is let.
QProcessEnvironment environmentIn(const QString& workFolder) {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  for (const char* variable :
       {"HOME", "TMPDIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
    environment.insert(QString::fromLatin1(variable), workFolder);
  }
  environment.insert(QStringLiteral("GSETTINGS_BACKEND"), QStringLiteral("memory"));
  environment.remove(QStringLiteral("DISPLAY"));
  environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
  return environment;
}

void end(QProcess& process) {
  process.terminate();
  if (!process.waitForFinished(graceMilliseconds)) {
    process.kill();
    process.waitForFinished(-1);
  }
}

ConverterEnd endOf(const QProcess& process) {
  if (process.exitStatus() == QProcess::NormalExit) {
    return ConverterEnd::Exited;
  }
#if defined(Q_OS_UNIX)
  // For a program that a signal ended, Qt hands on the signal.
  if (process.exitCode() == SIGXFSZ) {
    return ConverterEnd::WroteTooMuch;
  }
#endif
  return ConverterEnd::Crashed;
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

ConverterRun runConverter(const QStringList& arguments, const QString& workFolder,
                          const QDeadlineTimer& deadline) {
  ConverterRun run;
  const QString program = QStandardPaths::findExecutable(QStringLiteral("ssconvert"));
  if (program.isEmpty()) {
    return run;
  }
  QProcess process;
  process.setProcessEnvironment(environmentIn(workFolder));
  process.setWorkingDirectory(workFolder);
  process.setProcessChannelMode(QProcess::MergedChannels);
  process.setStandardInputFile(QProcess::nullDevice());
  confine(process);
  process.start(program, arguments);
  if (!process.waitForStarted(-1)) {
    return run;
  }
  QByteArray output;
  bool ended = false;
  while (!ended && stopAsked == 0 && !deadline.hasExpired()) {
    ended = process.waitForFinished(tickMilliseconds) || process.state() == QProcess::NotRunning;
    output = (output + process.readAll()).right(keptOutput);
  }
  run.output = QString::fromLocal8Bit(output).trimmed();
  if (!ended) {
    end(process);
    run.end = stopAsked != 0 ? ConverterEnd::Stopped : ConverterEnd::TimedOut;
    return run;
  }
  run.exitCode = process.exitCode();
  run.end = endOf(process);
  return run;
}

} // namespace sheetflat
