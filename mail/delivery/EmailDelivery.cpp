#include "mail/delivery/EmailDelivery.h"

#include "mail/EmailSettingsCheck.h"
#include "mail/MailTransportChoice.h"

#include <QScopeGuard>

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

/// Files that nobody has named by their bytes are meant as they are now.
void identify(EmailEntries& entries, SendWatcher& watcher) {
  for (EmailEntry& entry : entries) {
    if (!entry.address.isEmpty() && !entry.isUnchecked && !entry.identity.isKnown()) {
      entry.identity =
          platform::FileDigest::of(entry.file, [&watcher] { watcher.handlePendingEvents(); });
    }
  }
}

/// What a setup asks for and does not get.
QString pauseNote(const SplitSetup& setup) {
  for (const SettingFinding& finding : checkEmailSettings(setup)) {
    if (finding.key == QLatin1String("EMAILPAUSE")) {
      return finding.text;
    }
  }
  return {};
}

} // namespace

QString deliveryProblem(const SplitSetup& setup) {
  QStringList lines;
  for (const SettingFinding& finding : checkEmailSettings(setup)) {
    if (finding.kind == FindingKind::Problem) {
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

DeliveryResult EmailDelivery::send(const EmailList& list, const QString& listFile,
                                   SendWatcher& watcher, const AskAgain& askAgain) {
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
  result.note = pauseNote(m_setup);
  result.entries = list.entries();
  identify(result.entries, watcher);
  const auto end = qScopeGuard([this] {
    m_journals.clear();
    m_ofFile.close();
  });
  if (!takeJournals(list, listFile, result)) {
    return result;
  }
  EmailSendRun run(m_setup, listSourceOf(list),
                   {*choice.transport, watcher, m_journals, m_means.splitLibrary, &m_reports});
  const BeforeCount before = run.countSentBefore(result.entries);
  if (askAgain && before.sent + before.mayHaveArrived > 0) {
    const Again again = askAgain(before);
    if (again == Again::Cancel) {
      result.isCancelled = true;
      return result;
    }
    if (again == Again::SendTwice) {
      run.sendTwice();
    }
  }
  openReports();
  result.summary = run.run(result.entries);
  return result;
}

bool EmailDelivery::takeJournals(const EmailList& list, const QString& listFile,
                                 DeliveryResult& result) {
  const auto failed = [&](const QString& problem) {
    result.problem = problem;
    return false;
  };
  m_journals.clear();
  if (!listFile.isEmpty()) {
    SendJournal* journal = m_kept.journalOf(listFile);
    if (journal == nullptr) {
      journal = &m_ofFile;
      if (!journal->open(listFile, {})) {
        result.isInWork = journal->isInWork();
        return failed(journal->problem());
      }
    }
    if (!journal->enter(result.entries)) {
      return failed(journal->problem());
    }
    m_journals.push_back(journal);
  }
  if (!m_lastSource.isEmpty() && list.sourcePath().isEmpty()) {
    SendJournal* const journal =
        m_kept.keep(result.entries, m_setup, m_lastSource, result.problem, result.isInWork);
    if (journal == nullptr) {
      return false;
    }
    m_journals.push_back(journal);
  }
  return !m_journals.empty() || failed(QStringLiteral("the list is in no file: save it first"));
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
