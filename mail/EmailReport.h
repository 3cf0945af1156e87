// EmailReport: what a send run tells about each entry, beside the log.
#pragma once

#include "platform/TextFile.h"

#include <QDateTime>
#include <QString>

namespace folivex {

struct EmailReportLine {
  QDateTime time; ///< local
  QString recipient;
  QString file;   ///< the file attached
  QString result; ///< "OK", "Error - ..." or why it was not sent
};

class EmailReport {
public:
  virtual ~EmailReport() = default;
  virtual void write(const EmailReportLine& line) = 0;
};

/// The CSV report ("..._email_report.csv", see ReportPaths::emailCsv). Fields with a comma, a quote
/// or a line end are quoted, and none begins in a way that a spreadsheet takes for a formula. The
/// null device takes everything and keeps nothing. Made 0600.
class EmailCsvReport : public EmailReport {
public:
  /// Replaces an older report. Empty, or the message to show.
  QString open(const QString& path, const QString& source, const QDateTime& now);
  void write(const EmailReportLine& line) override;
  /// False when it could not be written whole.
  [[nodiscard]] bool close();

private:
  platform::TextWriter m_file;
};

} // namespace folivex
