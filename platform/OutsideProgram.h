// OutsideProgram: starting another program and waiting for it.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace folivex::platform {

/// Exit code of a program that was never read.
inline constexpr int exitCodeUnknown = -9;

struct OutsideProgram {
  enum class OnStop {
    Terminate,  ///< the program is ended, with exit code 1; it ends with this process, too
    KeepWaiting ///< nobody ends it, not even the end of this process
  };

  QString program; ///< a path, or a name looked for on the search path
  QStringList arguments;
  QString workingFolder; ///< empty: this process's own
  OnStop onStop = OnStop::Terminate;
};

struct ProgramEnd {
  bool started = false;
  bool crashed = false;
  int exitCode = exitCodeUnknown;
  QString errorOutput; ///< the end of what it wrote to its standard error, at most 4,096 characters
};

/// Starts the program without a window and waits until it has ended. Every 100 ms `tick` is called;
/// it lets the window live and returns true when the wait is to be stopped.
ProgramEnd runOutsideProgram(const OutsideProgram& program, const std::function<bool()>& tick);

/// Path of one of the program's own companions ("Scanlite"): beside this program, else on the
/// search path; empty when there is none.
QString companionProgram(const QString& name);

} // namespace folivex::platform
