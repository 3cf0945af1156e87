#include "engine/job/ResultRecord.h"

#include "engine/base/RunFinding.h"
#include "engine/report/RecordFields.h"
#include "platform/Paths.h"

namespace folivex {

namespace {

QJsonObject reportsOf(const RunOutcome& outcome) {
  QJsonObject reports;
  const auto add = [&reports](const char* kind, const QString& path) {
    if (!path.isEmpty() && !platform::isNullDevice(path)) {
      QJsonObject report;
      setPath(report, path);
      reports[QLatin1StringView(kind)] = report;
    }
  };
  add("text", outcome.reports.text);
  add("csv", outcome.reports.csv);
  add("fileList", outcome.fileList);
  return reports;
}

void addOutcome(QJsonObject& record, const RunOutcome& outcome) {
  if (const QJsonObject reports = reportsOf(outcome); !reports.isEmpty()) {
    record[QLatin1StringView("reports")] = reports;
  }
  // A list of outputs to be made later leaves all pages where they are.
  if (outcome.account.pageCount() > 0 && outcome.fileList.isEmpty()) {
    record[QLatin1StringView("pages")] = pagesRecord(outcome.account);
    record[QLatin1StringView("files")] = outcome.writtenFiles;
  }
}

} // namespace

QJsonObject sourceRecord(const QString& path, int sources) {
  QJsonObject record = recordOf("source");
  setPath(record, path);
  record[QLatin1StringView("of")] = sources;
  return record;
}

QJsonObject resultRecord(const SourceResult& result) {
  QJsonObject record = recordOf("result");
  setPath(record, result.path);
  record[QLatin1StringView("exitCode")] = result.exitCode;
  record[QLatin1StringView("error")] = findingWord(runFindingOf(result.exitCode));
  const bool isOpened = result.outcome != nullptr && result.outcome->source;
  if (const auto& source = isOpened ? result.outcome->source : result.source) {
    setStamp(record, *source);
  }
  if (result.outcome != nullptr) {
    addOutcome(record, *result.outcome);
  }
  if (!result.mails.isEmpty()) {
    record[QLatin1StringView("mails")] = result.mails;
  }
  return record;
}

} // namespace folivex
