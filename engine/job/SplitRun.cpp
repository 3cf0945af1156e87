#include "engine/job/SplitRun.h"

#include "engine/job/BatchScope.h"
#include "engine/job/JobContext.h"
#include "engine/job/OutputRecords.h"
#include "engine/job/PlanCheck.h"
#include "engine/job/RangePipeline.h"
#include "engine/job/SourceFile.h"
#include "engine/output/ClaimedPlaces.h"
#include "engine/output/OutputFileList.h"
#include "engine/output/OutputWriter.h"
#include "engine/report/Reports.h"
#include "platform/DiskSync.h"

#include <algorithm>
#include <optional>

namespace folivex {

namespace {

QString sourceChangedText(const QString& source) {
  return QStringLiteral("%1: was changed or replaced while it was read; the new files made of it "
                        "are taken away again, and nothing is mailed. Run it again when it is "
                        "complete.")
      .arg(source);
}

void settleCounts(const OutputWriter& writer, RunOutcome& outcome, RunState& state) {
  outcome.writtenFiles = writer.writtenFiles();
  outcome.outputsFailed = writer.failedOutputs() > 0;
  if (outcome.outputsFailed) {
    state.outputCount = std::max(state.outputCount - writer.failedOutputs(), 0);
  } else if (state.outputCount == 0 && state.rangeCount > 0 && state.part.isAll() &&
             !state.mustEnd()) {
    state.outputCount = 1;
  }
}

void tellFileList(OutputFileList& list, const JobContext& job, RunOutcome& outcome) {
  if (job.state.mustEnd()) {
    return; // a list of a part would pass for all of it
  }
  if (const QString problem = list.close(); !problem.isEmpty()) {
    job.fail(RunError::OutputFailed, problem);
  } else if (list.count() > 0) {
    outcome.fileList = list.path();
    job.person.note(QStringLiteral("%1: lists %2 output(s); no PDF was written")
                        .arg(list.path())
                        .arg(list.count()));
  }
}

void withdraw(const SplitRunParts& parts, OutputWriter& writer) {
  writer.withdraw();
  parts.job.fail(RunError::SourceChanged, sourceChangedText(parts.setup.fileName));
}

/// Nothing is mailed that was not written, nor of a source that was not what it seemed.
void settleRecords(const SplitRunParts& parts, const OutputWriter& writer) {
  EmailRecords& emails = parts.outcome.emails;
  if (parts.setup.createList || parts.job.state.error == RunError::SourceChanged) {
    emails.clear();
  }
  emails.drop(writer.unmailablePaths());
  emails.complete([&](EmailRecord& record) {
    const OutputWriter::Written written = writer.written().value(record.outputPath);
    record.identity = written.identity;
    record.holdsEarlierPages = parts.setup.alwaysAppend && !written.isNew;
    if (record.addressesDiffer) {
      parts.job.person.found(RunFinding::Addresses,
                             QStringLiteral("%1: holds pages with different e-mail addresses (%2)")
                                 .arg(record.outputPath, (QStringList(record.addresses.address) +
                                                          record.addresses.further)
                                                             .join(QStringLiteral(", "))));
    }
  });
}

/// A power failure must not take what counts as done, and may be mailed next.
void bringToDisk(const OutputWriter& writer, const JobContext& job) {
  const QString problem =
      platform::bringToDisk(writer.written().keys(), [&job] { job.person.handlePendingEvents(); });
  if (!problem.isEmpty()) {
    job.fail(RunError::OutputFailed,
             QStringLiteral("the outputs may not be on the disk: %1").arg(problem));
  }
}

/// The outputs are there: what is true of them now goes into the counts and the reports.
void settle(const SplitRunParts& parts, const OutputWriter& writer, Reports& reports) {
  RunOutcome& outcome = parts.outcome;
  settleCounts(writer, outcome, parts.job.state);
  reports.dropRanges(
      [&writer](const QString& path, int firstPage) { return writer.isMissing(path, firstPage); });
  reports.writeTotals(parts.job.state.outputCount);
  if (parts.job.state.error == RunError::SourceChanged) {
    reports.writeFinding(sourceChangedText(parts.setup.fileName));
  }
  if (outcome.account.failedPages() > 0 || outcome.account.stoppedPages() > 0) {
    reports.writeFinding(outcome.account.summary(outcome.writtenFiles));
  }
}

} // namespace

void splitSource(const SplitRunParts& parts, SourceFile& file, int pageCount, Reports& reports) {
  const auto& [setup, job, batch, addressReader, outcome, expected, planned] = parts;
  const QString& source = setup.fileName;
  if (pageCount == 0) {
    job.fail(RunError::Unreadable, file.problem());
    reports.writeTotals(0);
    return;
  }
  if (const QString protection = file.protection(); !protection.isEmpty()) {
    job.person.found(RunFinding::Protected, QStringLiteral("%1: %2").arg(source, protection));
  }
  if (const QString repair = file.repair(); !repair.isEmpty()) {
    job.person.found(RunFinding::Repaired, QStringLiteral("%1: %2").arg(source, repair));
  }
  outcome.account.start(pageCount);
  OutputWriter writer(setup, job.state,
                      {job.libraries.text, job.libraries.split, job.libraries.append},
                      batch.folders(), job.person, outcome.account);
  writer.startSource({source, pageCount, [&file] { return file.isChanged(); }});
  const QStringList reads{source, file.scanned()};
  DiskOutputPlaces seenPlaces(reads);
  ClaimedPlaces claimedPlaces(reads, job.libraries.split, batch.folders());
  OutputPlaces& places = setup.createList ? seenPlaces : claimedPlaces;
  OutputFileList list(setup, source);
  OutputList& outputs = setup.createList ? static_cast<OutputList&>(list) : writer;
  TextLibraryWords words = file.words(setup);
  RangePipeline::Ends ends{places,  outputs,        batch.names(setup.reportUseFileList),
                           reports, outcome.emails, addressReader};
  OutputRecords records(setup.alwaysAppend);
  if (job.person.wantsRecords()) {
    ends.onSaved = [&records](const ReportLine& line, const QString& namedPath,
                              const QString& address) { records.saved(line, namedPath, address); };
  }
  std::optional<PlanCheck> check;
  if (expected != nullptr) {
    check.emplace(*expected, places, job.person);
    ends.confirm = [&check](const ReservedOutput& output) { return check->allows(output); };
    ends.clock = [madeAt = expected->madeAt] { return madeAt; };
  }
  RangePipeline pipeline(setup, job, {source, pageCount, words}, ends);
  if (planned != nullptr) {
    pipeline.run(*planned);
  } else {
    pipeline.run();
  }
  if (check && check->missing() > 0 && !job.state.mustEnd()) {
    job.person.note(
        QStringLiteral("%1: the plan showed %2 more output(s)").arg(source).arg(check->missing()));
  }
  for (const QString& finding : batch.names(setup.reportUseFileList).takeFindings()) {
    job.person.found(RunFinding::Names, finding);
  }
  batch.namesTaken();
  writer.finish();
  if (file.isChanged()) {
    withdraw(parts, writer);
  }
  bringToDisk(writer, job);
  settleRecords(parts, writer);
  if (setup.createList) {
    tellFileList(list, job, outcome);
  }
  if (const int page = pipeline.firstUnfinishedPage(); page > 0) {
    outcome.account.stopped(page, pageCount);
  }
  settle(parts, writer, reports);
  records.tell(writer.written(), job.person);
  for (const Finding& finding : pipeline.findings().all()) {
    job.person.found(
        {finding.kind, QStringLiteral("%1: %2").arg(source, finding.text), finding.pages});
  }
}

} // namespace folivex
