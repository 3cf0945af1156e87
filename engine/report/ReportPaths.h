// Where the reports of a run are written.
#pragma once

#include "engine/base/PagePart.h"
#include "engine/setup/SplitSetup.h"

namespace folivex {

/// The path of a report that is switched off.
inline const QString& nullReport() {
  static const QString path = QStringLiteral("nul");
  return path;
}

struct ReportPaths {
  QString text;
  QString csv;
  QString emailCsv;
};

/// The report paths for `source` (full path; a trailing blank is no part of it). They lie beside
/// the source, or in `outputFolder` when the program may not write where it runs and no report
/// folder is set, or in the report folder of the setup. Each part of a source has its own.
ReportPaths reportPaths(const SplitSetup& setup, const QString& source, const QString& outputFolder,
                        bool folderWritable, const PagePart& part = {});

/// True when a file can be made in the program's current folder; the file that proves it is
/// removed.
bool currentFolderIsWritable();

} // namespace folivex
