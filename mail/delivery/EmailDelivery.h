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
  SendSummary summary; ///< one result for each row of the list; empty when nothing was tried
};

/// Lists may be sent in several goes (what failed once more): the reports tell all of them. A list
/// that comes straight from a run is saved before its first mail goes out, see KeptLists.
class EmailDelivery {
public:
  EmailDelivery(SplitSetup setup, DeliveryMeans means)
      : m_setup(std::move(setup)), m_means(std::move(means)) {}

  /// A list to come holds outputs of this run: their mails go into its report. A list that was
  /// loaded has none.
  void addRun(const FinishedRun& run) {
    m_newRuns.push_back(run);
    m_lastSource = run.source;
  }

  using BeforeCount = EmailSendRun::BeforeCount;
  /// Asked when the log says that mails of this list went out before. True: they are sent once
  /// more; false: they are left out.
  using SendTwice = std::function<bool(const BeforeCount& before)>;

  /// Without `sendTwice` the log is not asked: all entries are sent. That is right for outputs that
  /// were only just made.
  DeliveryResult send(const EmailList& list, SendWatcher& watcher, const SendTwice& sendTwice = {});

  /// The list was being sent when the program died, and there is no log that tells how far it came.
  bool mayHaveBeenSent(const EmailList& list) const;

  /// Removes the lists that were saved for sending. Not before what is left of them has been told,
  /// or is in another file; without this call they stay.
  void dropKeptLists() { m_kept.dropAll(); }

  /// Ends the reports. What could not be written of them and of the lists, in lines; empty when all
  /// was.
  QString close();

private:
  void openReports();
  bool keep(const EmailList& list);

  SplitSetup m_setup;
  DeliveryMeans m_means;
  std::vector<FinishedRun> m_newRuns; ///< without a report as yet
  QString m_lastSource;
  RunReports m_reports;
  KeptLists m_kept;
  QStringList m_problems;
};

/// Why no mail would go out with these settings, a line each; empty when mails can be sent.
QString deliveryProblem(const SplitSetup& setup);

} // namespace folivex
