// Converter: running the spreadsheet converter (ssconvert of Gnumeric) to its end.
#pragma once

#include <QDeadlineTimer>
#include <QString>
#include <QStringList>

namespace sheetflat {

enum class ConverterEnd {
  Exited,  ///< exitCode is the converter's own
  Missing, ///< not on the search path, or it cannot be started
  Crashed, ///< ended by a signal that was not ours
  WroteTooMuch,
  TimedOut,
  Stopped ///< we were told to stop; the converter is gone
};

struct ConverterRun {
  ConverterEnd end = ConverterEnd::Missing;
  int exitCode = 0;
  QString output; ///< what it wrote on both of its streams, the last 4 KB of it
};

/// From now on the signals that ask a program to stop end the running converter first. Call once.
void passOnStopSignals();

/// Runs the converter in `workFolder`, which also holds its settings and temporary files, until
/// `deadline` at most. Nothing that a sheet makes it do takes more than 2 GB of memory or writes a
/// file larger than csvSizeLimit.
ConverterRun runConverter(const QStringList& arguments, const QString& workFolder,
                          const QDeadlineTimer& deadline);

} // namespace sheetflat
