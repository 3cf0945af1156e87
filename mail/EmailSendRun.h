// EmailSendRun: sends the entries of a list one by one.
#pragma once

#include "mail/EmailEntry.h"
#include "mail/EmailLog.h"
#include "mail/EmailReport.h"
#include "mail/MailTransport.h"

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

namespace folivex {

class CSplitPdfInit;
struct SplitSetup;

/// What the dialog "Email Status" shows.
struct EmailProgress {
  QString recipient; ///< being sent to, or sent to last
  int total = 0;     ///< entries of the list
  int handled = 0;   ///< mails tried: sentOk + errors
  int sentOk = 0;
  int errors = 0; ///< failed ones and those of unknown fate
};

/// Who watches a run: the status dialog, a terminal, nobody.
class SendWatcher : public MailWait {
public:
  virtual void onProgress(const EmailProgress& progress) = 0;
};

enum class EntryState {
  NotReached, ///< the run was stopped before it
  NoAddress,
  SentBefore, ///< skipped: the log says that it was sent
  Sent,
  Failed,    ///< the error text says why
  Temporary, ///< failed, and worth sending again
  Unknown    ///< may have arrived
};

struct EntryResult {
  EntryState state = EntryState::NotReached;
  QString recipient;
  QString attachment; ///< path of what was attached
  QString errorText;
};

struct SendSummary {
  EmailProgress counts;
  bool stopped = false;
  std::vector<EntryResult> entries; ///< one for each entry of the list

  /// "(%d) Emails sent ok: %d, errors: %d"
  QString message() const;
  /// What else there is to tell, in lines: mails of unknown fate, entries not reached, entries
  /// skipped. Empty when there is nothing.
  QString details() const;
  /// Rows to send again: failed ones and those not reached. Mails of unknown fate are left out, for
  /// they may have arrived; rowsIn() tells them.
  std::vector<std::size_t> rowsToSendAgain() const;
  std::vector<std::size_t> rowsIn(std::initializer_list<EntryState> states) const;
};

/// Choices where two readings were possible:
/// - Body and copy address are the entry's own when the list came from a spreadsheet, else the
///   setup's; an own one that is empty gives way to the setup's. An own subject always wins over
///   the setup's; the invoice number, if any, follows the subject after a blank.
/// - In test mode the copy goes to the sender too, when there is one: nobody else gets a mail.
/// - "Handled" are the mails that were tried; entries without an address are not.
/// - A mail that failed never ends the run. But after three in a row that the settings are to blame
///   for (login refused, certificate not trusted), the server is left alone: the remaining entries
///   fail at once as the last of the three did, with its reason.
/// - The two texts of a log line are the recipient and the file attached.
class EmailSendRun {
public:
  struct Parts {
    MailTransport& transport;
    SendWatcher& watcher;
    CSplitPdfInit* splitLibrary = nullptr; ///< for page ranges; null: entries with one fail
    EmailReport* report = nullptr;         ///< may be null
    std::function<QDateTime()> now = [] { return QDateTime::currentDateTime(); };
  };
  enum class ListSource { SplitRun, ListFile, Spreadsheet };

  /// Both must outlive the run.
  EmailSendRun(const SplitSetup& setup, ListSource source, Parts parts);

  /// Entries of which the log says that they were sent, or may have arrived, are skipped by run().
  void skipSentBefore(SentBefore before) { m_before = std::move(before); }
  struct BeforeCount {
    std::size_t sent = 0;
    std::size_t mayHaveArrived = 0;
  };
  /// For asking the person whether to go on where a run broke off.
  BeforeCount countSentBefore(const EmailEntries& entries, const SentBefore& before) const;

  SendSummary run(const EmailEntries& entries);

private:
  bool isServerGivenUp() const;
  bool pause();
  void handleEntry(const EmailEntry& entry, EntryResult& result);
  MailMessage messageFor(const EmailEntry& entry) const;
  QString recipientOf(const EmailEntry& entry) const;
  SentBefore::Told toldOf(const EmailEntry& entry, const SentBefore& before) const;
  bool leftOutForLog(const EmailEntry& entry, EntryResult& result) const;
  MailResult deliver(const EmailEntry& entry, EntryResult& result);
  void record(const EntryResult& result);

  const SplitSetup& m_setup;
  ListSource m_source;
  Parts m_parts;
  SentBefore m_before;
  EmailLog m_log;
  EmailProgress m_progress;
  int m_uselessTries = 0; ///< in a row, that failed for a reason that concerns every mail
  MailResult m_uselessResult;
};

/// The body of a spreadsheet's cell: line ends go, and every "\n" of two characters becomes one.
QString bodyFromSpreadsheet(const QString& cell);

} // namespace folivex
