#include "mail/delivery/EmailDelivery.h"

#include "mail/EmailSettingsCheck.h"
#include "mail/MailTransportChoice.h"

#include <algorithm>

namespace folivex {

namespace {

/// Only a sheet brings texts of its own, whatever its format is called. Where it has none, the
/// settings' hold as for any list.
EmailSendRun::ListSource listSourceOf(const EmailList& list) {
  const bool hasOwnTexts = std::ranges::any_of(list.rows(), [](const EmailRow& row) {
    return !row.entry.body.isEmpty() || !row.entry.cc.isEmpty();
  });
  if (list.isFromSpreadsheet() || hasOwnTexts) {
    return EmailSendRun::ListSource::Spreadsheet;
  }
  return list.sourcePath().isEmpty() ? EmailSendRun::ListSource::SplitRun
                                     : EmailSendRun::ListSource::ListFile;
}

} // namespace

QString deliveryProblem(const SplitSetup& setup) {
  QStringList lines;
  for (const EmailSettingsFinding& finding : checkEmailSettings(setup)) {
    if (finding.weight == FindingWeight::Problem) {
      lines += finding.text;
    }
  }
  return lines.join(u'\n');
}

void EmailDelivery::openReports() {
  for (const FinishedRun& run : m_newRuns) {
    m_reports.open(m_setup, run);
  }
  m_newRuns.clear();
}

DeliveryResult EmailDelivery::send(const EmailList& list, SendWatcher& watcher,
                                   const SendTwice& sendTwice) {
  DeliveryResult result;
  result.problem = deliveryProblem(m_setup);
  if (!result.problem.isEmpty()) {
    return result;
  }
  const MailTransportChoice choice = transportFor(m_setup, m_means.smtp);
  if (!choice.transport) {
    result.problem = choice.problem;
    return result;
  }
  openReports();
  EmailSendRun run(m_setup, listSourceOf(list),
                   {*choice.transport, watcher, m_means.splitLibrary, &m_reports});
  const EmailEntries entries = list.entries();
  if (sendTwice) {
    const SentBefore before = SentBefore::fromLog(m_setup.emailLogFile);
    const BeforeCount count = run.countSentBefore(entries, before);
    if (count.sent + count.mayHaveArrived > 0 && !sendTwice(count)) {
      run.skipSentBefore(before);
    }
  }
  const bool kept = keep(list);
  result.summary = run.run(entries);
  if (kept && result.summary.rowsToSendAgain().empty()) {
    m_kept.dropLast();
  }
  return result;
}

/// A list from a file is on the disk already.
bool EmailDelivery::keep(const EmailList& list) {
  if (m_lastSource.isEmpty() || !list.sourcePath().isEmpty()) {
    return false;
  }
  const QString problem = m_kept.keep(list, m_setup, m_lastSource);
  if (!problem.isEmpty()) {
    m_problems += problem;
  }
  return problem.isEmpty();
}

bool EmailDelivery::mayHaveBeenSent(const EmailList& list) const {
  return isListOfBrokenRun(list.sourcePath()) &&
         SentBefore::fromLog(m_setup.emailLogFile).isEmpty();
}

QString EmailDelivery::close() {
  QStringList lines = m_problems;
  m_problems.clear();
  const QString ofReports = m_reports.close();
  if (!ofReports.isEmpty()) {
    lines += ofReports;
  }
  return lines.join(u'\n');
}

} // namespace folivex
