// EmailDelivery: sends the entries of a list as the settings say, and keeps the reports of it.
#pragma once

#include "engine/setup/SplitSetup.h"
#include "mail/EmailSendRun.h"
#include "mail/MailServer.h"
#include "mail/delivery/FinishedRun.h"
#include "mail/delivery/KeptLists.h"
#include "mail/delivery/RunReports.h"

#include <functional>
#include <vector>

namespace folivex {

class CSplitPdfInit;

/// What sending needs beside the settings.
struct DeliveryMeans {
  CSplitPdfInit* splitLibrary = nullptr; ///< for entries with a page range
  SmtpOptions smtp;
};

struct [[nodiscard]] DeliveryResult {
  QString
      problem; ///< why no mail was tried, in plain words; empty when the list was worked through
  bool isInWork = false;    ///< the problem: another process sends the same mails just now
  bool isCancelled = false; ///< the person was asked and wants nothing sent
  QString note;             ///< what else a person should know
  SendSummary summary;      ///< one result for each row of the list; empty when nothing was tried
  EmailEntries entries;     ///< the rows as they were sent, with what their journals know of them
};

/// Lists may be sent in several goes (what failed once more): the reports tell all of them. What
/// goes out is told beforehand to the journal beside the list's file; a list that comes straight
/// from a run is saved for that, see KeptLists.
class EmailDelivery {
public:
  EmailDelivery(SplitSetup setup, DeliveryMeans means)
      : m_setup(std::move(setup)), m_means(std::move(means)) {}

  const SplitSetup& setup() const { return m_setup; }

  /// A list to come holds outputs of this run: their mails go into its report. A list that was
  /// loaded has none.
  void addRun(const FinishedRun& run) {
    m_newRuns.push_back(run);
    m_lastSource = run.source;
  }

  using BeforeCount = EmailSendRun::BeforeCount;
  /// What becomes of mails of a list that went out before, or may have arrived.
  enum class Again { LeaveOut, SendTwice, Cancel };
  using AskAgain = std::function<Again(const BeforeCount& before)>;

  /// `listFile` is the file that the list is in, a list file or a sheet; empty when it is in none.
  /// Without `askAgain` no mail goes out twice.
  DeliveryResult send(const EmailList& list, const QString& listFile, SendWatcher& watcher,
                      const AskAgain& askAgain = {});

  /// The lists that were saved for sending. They stay unless they are dropped: not before what is
  /// left of them has been told, or is in another file.
  KeptLists& kept() { return m_kept; }

  /// Ends the reports. What could not be written of them and of the lists, in lines; empty when all
  /// was.
  QString close();

private:
  void openReports();
  bool takeJournals(const EmailList& list, const QString& listFile, DeliveryResult& result);

  SplitSetup m_setup;
  DeliveryMeans m_means;
  std::vector<FinishedRun> m_newRuns; ///< without a report as yet
  QString m_lastSource;
  RunReports m_reports;
  KeptLists m_kept;
  SendJournal m_ofFile;
  std::vector<SendJournal*> m_journals; ///< of the list that is being sent
  QStringList m_problems;
};

/// Why no mail would go out with these settings, a line each; empty when mails can be sent.
QString deliveryProblem(const SplitSetup& setup);

} // namespace folivex
