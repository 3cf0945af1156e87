#include "engine/job/SplitRun.h"

#include "engine/job/BatchScope.h"
#include "engine/job/JobContext.h"
#include "engine/job/RangePipeline.h"
#include "engine/job/SourceFile.h"
#include "engine/output/ExternalCommand.h"
#include "engine/output/OutputFileList.h"
#include "engine/output/OutputWriter.h"
#include "engine/report/Reports.h"

#include <algorithm>

namespace folivex {

namespace {

void settleCounts(const OutputWriter& writer, RunOutcome& outcome, RunState& state) {
  outcome.writtenFiles = writer.writtenFiles();
  outcome.outputsFailed = writer.failedOutputs() > 0;
  if (outcome.outputsFailed) {
    state.outputCount = std::max(state.outputCount - writer.failedOutputs(), 0);
  } else if (state.outputCount == 0 && state.rangeCount > 0 && !state.mustEnd()) {
    state.outputCount = 1;
  }
}

void tellFileList(OutputFileList& list, const JobContext& job) {
  if (job.state.mustEnd()) {
    return; // a list of a part would pass for all of it
  }
  if (const QString problem = list.close(); !problem.isEmpty()) {
    job.fail(RunError::OutputFailed, problem);
  } else if (list.count() > 0) {
    job.person.note(QStringLiteral("%1: lists %2 output(s); no PDF was written")
                        .arg(list.path())
                        .arg(list.count()));
  }
}

/// The outputs are on the disk: what is true of them now goes into the counts and the reports.
void settle(const SplitRunParts& parts, const OutputWriter& writer, Reports& reports) {
  RunOutcome& outcome = parts.outcome;
  settleCounts(writer, outcome, parts.job.state);
  reports.dropRanges(
      [&writer](const QString& path, int firstPage) { return writer.isMissing(path, firstPage); });
  reports.writeTotals(parts.job.state.outputCount);
  if (outcome.account.failedPages() > 0 || outcome.account.stoppedPages() > 0) {
    reports.writeFinding(outcome.account.summary(outcome.writtenFiles));
  }
}

} // namespace

void splitSource(const SplitRunParts& parts, SourceFile& file, int pageCount, Reports& reports) {
  const auto& [setup, job, batch, addressReader, outcome] = parts;
  const QString& source = setup.fileName;
  if (pageCount == 0) {
    job.fail(RunError::Unreadable, file.problem());
    reports.writeTotals(0);
    return;
  }
  if (const QString protection = file.protection(); !protection.isEmpty()) {
    job.person.note(QStringLiteral("%1: %2").arg(source, protection));
  }
  outcome.account.start(pageCount);
  OutputWriter writer(setup, job.state, {job.libraries.split, job.libraries.append}, job.person,
                      outcome.account);
  writer.setFolderLocks(batch.folders());
  writer.startSource(source, pageCount);
  const bool deletesOldFiles = usesExternalCommand(setup) && !setup.createList;
  DiskOutputPlaces places({source, file.scanned()},
                          deletesOldFiles ? DiskOutputPlaces::OldFile::Deleted
                                          : DiskOutputPlaces::OldFile::KeptUntilWritten);
  OutputFileList list(setup, source);
  OutputList& outputs = setup.createList ? static_cast<OutputList&>(list) : writer;
  RangePipeline pipeline(setup, job, {source, file.scanned(), pageCount},
                         {places,
                          outputs,
                          batch.names(setup.reportUseFileList),
                          reports,
                          outcome.emails,
                          addressReader,
                          {}});
  pipeline.run();
  for (const QString& finding : batch.names(setup.reportUseFileList).takeFindings()) {
    job.person.note(finding);
  }
  batch.namesTaken();
  writer.finish();
  outcome.emails.drop(writer.unwrittenPaths());
  if (setup.createList) {
    outcome.emails.clear(); // no file was written
    tellFileList(list, job);
  }
  outcome.emails.identify([&job] { job.person.handlePendingEvents(); });
  if (const int page = pipeline.firstUnfinishedPage(); page > 0) {
    outcome.account.stopped(page, pageCount);
  }
  settle(parts, writer, reports);
  for (const QString& line : pipeline.findings().lines()) {
    job.person.note(QStringLiteral("%1: %2").arg(source, line));
  }
}

} // namespace folivex
