#include "engine/job/RunOutcome.h"

#include "engine/job/JobContext.h"

#include <algorithm>

namespace folivex {

namespace {

/// A run that was stopped is not mailed; whoever waits for the mails must know. Empty when none of
/// its outputs has an address.
QString unmailedSentence(const EmailRecords& records) {
  const auto count = std::ranges::count_if(
      records.all(), [](const EmailRecord& record) { return !record.addresses.address.isEmpty(); });
  return count == 0
             ? QString()
             : QStringLiteral("%1 output(s) with an e-mail address were written before the stop; "
                              "none of them was mailed.")
                   .arg(count);
}

void tellStop(const EmailRecords& emails, const JobContext& job) {
  job.tell(RunFinding::Stopped, QStringLiteral("Process Stopped!"));
  if (const QString unmailed = unmailedSentence(emails); !unmailed.isEmpty()) {
    job.person.found(RunFinding::Mails, unmailed);
  }
}

void tellDone(bool hasReport, const QString& report, const JobContext& job) {
  const QString done = QStringLiteral("Done! - %1 PDF file(s) output").arg(job.state.outputCount);
  if (job.state.automation || !hasReport) {
    job.tell(done);
  } else if (job.person.question(done + QStringLiteral("\r\n\r\nReport files have been generated, "
                                                       "do you want to view text report ?"),
                                 QStringLiteral("Folivex")) == Answer::Yes) {
    job.person.openDocument(report);
  }
}

} // namespace

QString searchHint() {
  return QStringLiteral(
      "please note: word searching is case sensitive & must contain the full word");
}

void tellRunEnd(const RunOutcome& outcome, const SplitSetup& setup, const QString& report,
                const JobContext& job) {
  const RunState& state = job.state;
  if (state.error == RunError::Unreadable) {
    return; // told already, and "no matches" would be the wrong reason
  }
  if (state.error == RunError::SourceChanged) {
    // Told already; nothing was done.
  } else if (state.userStop) {
    tellStop(outcome.emails, job);
  } else if (state.outputCount == 0 && !outcome.outputsFailed && state.emptiedRanges == 0 &&
             state.rangesElsewhere == 0) {
    job.tell(RunFinding::NoMatch,
             QStringLiteral("Done! and no matches we're found!,\r\n") + searchHint());
  } else {
    tellDone(setup.reportOptionsTxt, report, job);
  }
  if (!setup.createList) {
    job.person.note(outcome.account.summary(outcome.writtenFiles));
  }
}

} // namespace folivex
