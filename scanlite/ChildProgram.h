// Running a program of somebody else to its end.
#pragma once

#include <QString>
#include <QStringList>

namespace scanlite {

enum class ChildEnd {
  Exited,  ///< exitCode is the program's own
  Missing, ///< not on the search path, or it cannot be started
  Crashed, ///< ended by a signal that was not ours
  Stopped  ///< we were told to stop, and the program and all that it had started are gone
};

struct ChildRun {
  ChildEnd end = ChildEnd::Missing;
  int exitCode = 0;
  QString output; ///< what it wrote on both of its streams, the last 64 KB of it
};

/// From now on the signals that ask a program to stop end the running child first. Call once.
void passOnStopSignals();

/// Runs `program`, found on the search path, and waits for its end. Its temporary files go into the
/// folder `workFolder`, and what it writes is in English.
ChildRun runChild(const QString& program, const QStringList& arguments, const QString& workFolder);

} // namespace scanlite
