#include "mail/delivery/RunReports.h"

#include "engine/report/ReportPaths.h"
#include "engine/setup/SplitSetup.h"
#include "mail/delivery/FinishedRun.h"

namespace folivex {

void RunReports::open(const SplitSetup& setup, const FinishedRun& run) {
  auto report = std::make_unique<Report>();
  report->path =
      reportPaths(setup, run.source, outputFolderOf(setup, run.source), currentFolderIsWritable())
          .emailCsv;
  const QString problem = report->file.open(report->path, run.source, QDateTime::currentDateTime());
  if (!problem.isEmpty()) {
    m_problems += problem;
    report.reset();
  }
  for (const AddressedOutput& output : run.outputs) {
    m_reportOf[output.file] = m_reports.size();
  }
  m_reports.push_back(std::move(report));
}

void RunReports::write(const EmailReportLine& line) {
  const auto found = m_reportOf.constFind(line.file);
  if (found != m_reportOf.constEnd() && m_reports[*found]) {
    m_reports[*found]->file.write(line);
  }
}

QString RunReports::close() {
  for (const auto& report : m_reports) {
    if (report && !report->file.close()) {
      m_problems += QStringLiteral("The e-mail report could not be written whole: ") + report->path;
    }
  }
  m_reports.clear();
  m_reportOf.clear();
  QString problems = m_problems.join(u'\n');
  m_problems.clear();
  return problems;
}

} // namespace folivex
