// ChildProgram: a program of somebody else, run to its end by one of our companions.
#pragma once

#include <QDeadlineTimer>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace folivex::platform {

struct ChildProgram {
  QString name; ///< looked for on the search path
  QStringList arguments;
  QString workingFolder; ///< empty: this process's own
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  QDeadlineTimer deadline = QDeadlineTimer(QDeadlineTimer::Forever);
  // Bytes; 0: no limit of ours. Where the system knows no such limits there are none.
  qint64 mostMemory = 0;
  qint64 longestFile = 0;
};

enum class ChildEnd {
  Exited,       ///< exitCode is the program's own
  Missing,      ///< not on the search path, or it cannot be started
  Crashed,      ///< ended by a signal that was not ours
  WroteTooMuch, ///< a file reached longestFile
  TimedOut,
  Stopped ///< we were told to stop
};

struct ChildRun {
  ChildEnd end = ChildEnd::Missing;
  int exitCode = 0;
  QString output; ///< what it wrote on both of its streams, the last 64 KB of it
};

/// From now on the signals that ask a program to stop end the running child first. Call once.
void passOnStopSignals();

/// Runs the program and waits for its end. Timed out or told to stop, it has two seconds to clean
/// up behind itself; then it is gone, and all that it had started. It does not outlive this
/// process.
ChildRun runChild(const ChildProgram& program);

} // namespace folivex::platform
