// Reports: the text and CSV report of a run.
#pragma once

#include "engine/job/RunState.h"
#include "engine/report/ReportPaths.h"
#include "platform/TextFile.h"

#include <QDateTime>

namespace folivex {

/// The program's version as the reports show it.
inline const QString& reportVersion() {
  static const QString version = QStringLiteral("v4.00");
  return version;
}

/// One saved range as the reports show it; pages count from 1, inclusive.
struct ReportLine {
  int firstPage = 0;
  int lastPage = 0;
  QString matchedText;
  QString outputPath;
};

/// Both reports of one run. Writing goes on when a write fails; close() tells.
class Reports {
public:
  /// Why a report could not be opened: `error` is RunError::TextReport or CsvReport, or None.
  struct Opened {
    RunError error = RunError::None;
    QString message;
  };

  /// Deletes old reports at the paths, opens new ones and writes their headers for `source` and the
  /// search text. `now` is local time. On failure nothing is open.
  Opened open(const ReportPaths& paths, const QString& source, const QString& searchText,
              const QDateTime& now);
  bool isOpen() const { return m_open; }
  const ReportPaths& paths() const { return m_paths; }

  void writeRange(const ReportLine& line);
  /// Removes the line that writeRange() wrote last from both reports. Only one line can be taken
  /// back.
  void takeBackRange();
  void writeTotals(int fileCount);
  void flush();

  /// Closes both; tells the first report that could not be written whole.
  Opened close();

private:
  struct Report {
    platform::TextWriter file;
    qint64 lastLine = -1; ///< where the last range line begins
  };

  static bool openOne(Report& report, const QString& path);
  void writeHeaders(const QString& source, const QString& searchText, const QDateTime& now);

  ReportPaths m_paths;
  Report m_text;
  Report m_csv;
  bool m_open = false;
};

} // namespace folivex
