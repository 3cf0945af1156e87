// Reports: the text and CSV report of a run.
#pragma once

#include "engine/base/RunState.h"
#include "engine/report/ReportPaths.h"
#include "platform/TextFile.h"

#include <QDateTime>

#include <functional>
#include <vector>

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

/// Both reports of one run. Writing goes on when a write fails; close() tells. Until then the last
/// line of each says that the run was not finished, which is what a killed run leaves.
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
  /// Whether a line is to go, by its output's path and first page.
  using IsDropped = std::function<bool(const QString& outputPath, int firstPage)>;
  /// Removes the lines of outputs that are not there after all. The lines behind them move up.
  void dropRanges(const IsDropped& isDropped);
  void writeTotals(int fileCount);
  /// A finding that a reader of the text report must not miss.
  void writeFinding(const QString& sentence);
  void flush();

  /// Closes both; tells the first report that could not be written whole.
  Opened close();

private:
  /// One line in both reports.
  struct Range {
    QString outputPath;
    int firstPage;
    bool isDropped;
    qint64 inText; ///< where the line begins, in bytes
    qint64 inCsv;
  };

  static bool openOne(platform::TextWriter& file, const QString& path);
  void dropLines(platform::TextWriter& file, const QString& path, qint64 Range::*begin) const;
  void writeHeaders(const QString& source, const QString& searchText, const QDateTime& now);

  ReportPaths m_paths;
  platform::TextWriter m_text;
  platform::TextWriter m_csv;
  std::vector<Range> m_ranges;
  bool m_open = false;
};

} // namespace folivex
