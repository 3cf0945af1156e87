// Tool: the OCR and PDF programs that do the work.
#pragma once

#include "platform/ChildProgram.h"

namespace scanlite {

/// Runs the program `name` to its end. Its temporary files go into the folder `workFolder`, and
/// what it writes is in English.
folivex::platform::ChildRun runTool(const QString& name, const QStringList& arguments,
                                    const QString& workFolder);

} // namespace scanlite
