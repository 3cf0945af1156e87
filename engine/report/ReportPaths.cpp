#include "engine/report/ReportPaths.h"

#include "platform/Paths.h"

#include <QDir>
#include <QTemporaryFile>

namespace folivex {

namespace {

/// The report folder counts from two characters on.
bool hasReportFolder(const SplitSetup& setup) {
  return setup.reportOptionsOutputFolder.size() > 1;
}

} // namespace

ReportPaths reportPaths(const SplitSetup& setup, const QString& source, const QString& outputFolder,
                        bool folderWritable, const PagePart& part) {
  QString file = source;
  if (file.endsWith(QLatin1Char(' '))) {
    file.chop(1);
  }
  QString stem = file;
  if (!folderWritable && setup.reportOptionsOutputFolder.isEmpty() && setup.reportOptionsCurrent) {
    stem = platform::joinPath(outputFolder, platform::fileTitle(file));
  } else if (!setup.reportOptionsCurrent && hasReportFolder(setup)) {
    stem = platform::joinPath(setup.reportOptionsOutputFolder, platform::fileTitle(file));
  }
  if (!part.isAll()) {
    stem += QStringLiteral("_pages_%1-%2").arg(part.first).arg(part.last);
  }
  ReportPaths paths{nullReport(), nullReport(), nullReport()};
  if (setup.reportOptionsTxt) {
    paths.text = stem + QStringLiteral("_report.txt");
  }
  if (setup.reportOptionsCsv) {
    paths.csv = stem + QStringLiteral("_report.csv");
  }
  if (setup.emailEnable) {
    paths.emailCsv = stem + QStringLiteral("_email_report.csv");
  }
  return paths;
}

bool currentFolderIsWritable() {
  // A file without a name, where the system has such: a run that is killed now leaves nothing.
  return QTemporaryFile(QDir::current().filePath(QStringLiteral("perm.dat"))).open();
}

} // namespace folivex
