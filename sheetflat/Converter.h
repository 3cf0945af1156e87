// Converter: running the spreadsheet converter (ssconvert of Gnumeric) to its end.
#pragma once

#include "platform/ChildProgram.h"

namespace sheetflat {

/// Runs the converter in `workFolder`, which also holds its settings and temporary files, until
/// `deadline` at most. Nothing that a sheet makes it do takes more than 2 GB of memory or writes a
/// file larger than csvSizeLimit.
folivex::platform::ChildRun runConverter(const QStringList& arguments, const QString& workFolder,
                                         const QDeadlineTimer& deadline);

} // namespace sheetflat
