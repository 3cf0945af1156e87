// RunReports: the e-mail report of every source whose outputs are mailed.
#pragma once

#include "mail/EmailReport.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace folivex {

struct FinishedRun;
struct SplitSetup;

/// One list may hold the outputs of several sources; each line goes to the report of the source
/// that its file was split from. A file that two sources made belongs to the later one.
class RunReports : public EmailReport {
public:
  /// Replaces the report of an earlier run of the same source. One that cannot be written is told
  /// by close(); sending goes on without it.
  void open(const SplitSetup& setup, const FinishedRun& run);
  void write(const EmailReportLine& line) override;
  /// What could not be written, in lines; empty when all was.
  QString close();

private:
  struct Report {
    QString path;
    EmailCsvReport file;
  };
  std::vector<std::unique_ptr<Report>> m_reports; ///< null: it cannot be written
  QHash<QString, std::size_t> m_reportOf;         ///< by output file
  QStringList m_problems;
};

} // namespace folivex
