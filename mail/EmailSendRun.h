// EmailSendRun: sends the entries of a list one by one.
#pragma once

#include "mail/EmailEntry.h"
#include "mail/EmailLog.h"
#include "mail/EmailReport.h"
#include "mail/MailTransport.h"
#include "mail/SendJournal.h"

#include <cstddef>
#include <functional>
#include <vector>

namespace folivex {

class CSplitPdfInit;
struct SplitSetup;

/// What the dialog "Email Status" shows.
struct EmailProgress {
  QString recipient; ///< being sent to, or sent to last
  int total = 0;     ///< entries of the list
  int handled = 0;   ///< mails tried: sentOk, errors and those that were shown
  int sentOk = 0;
  int errors = 0; ///< failed ones and those of unknown fate
};

/// Who watches a run: the status dialog, a terminal, nobody.
class SendWatcher : public MailWait {
public:
  virtual void onProgress(const EmailProgress& progress) = 0;
};

enum class EntryState {
  NotReached, ///< the run ended before it
  NoAddress,
  SentBefore, ///< skipped: its journal says that it was sent
  Sent,
  Failed,    ///< the error text says why
  Temporary, ///< failed, and worth sending again
  Unknown,   ///< may have arrived
  Held,      ///< waits for a person who looks at its file; the error text says why
  Shown      ///< a person got it to send; it counts neither as sent nor as failed
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
  QString endedBecause;             ///< why the run ended before its list did, if nobody stopped it
  std::vector<EntryResult> entries; ///< one for each entry of the list

  /// "(%d) Emails sent ok: %d, errors: %d"
  QString message() const;
  /// What else there is to tell, in lines: mails shown, mails of unknown fate, entries not reached,
  /// entries skipped. Empty when there is nothing.
  QString details() const;
  /// Why rows were not reached: "the run was stopped", or endedBecause.
  QString whyNotReached() const;
  /// Rows to send again: failed ones, held ones and those not reached. Mails of unknown fate are
  /// left out, for they may have arrived; rowsIn() tells them.
  std::vector<std::size_t> rowsToSendAgain() const;
  std::vector<std::size_t> rowsIn(std::initializer_list<EntryState> states) const;
};

/// Choices where two readings were possible:
/// - Body and copy address are the entry's own when the list came from a spreadsheet, else the
///   setup's; an own one that is empty gives way to the setup's. The subject: see subjectOf().
/// - In test mode the copy goes to the sender too, when there is one: nobody else gets a mail.
/// - "Handled" are the mails that were tried; entries without an address are not.
/// - A mail that failed never ends the run. But after three in a row that every other would follow
///   (login refused, a server that is silent or not there) the run ends; what is left was not
///   tried.
/// - Nothing goes out that the journals could not be told of first: when one cannot be written, the
///   run ends.
/// - A mail that was only shown may have gone out since: to the journals it is one of unknown fate.
/// - A mail whose file somebody should look at is held, and logged as an error.
/// - The two texts of a log line are the recipient and the file attached.
class EmailSendRun {
public:
  struct Parts {
    MailTransport& transport;
    SendWatcher& watcher;
    /// Each is open and knows the entries (SendJournal::enter()).
    std::vector<SendJournal*> journals;
    CSplitPdfInit* splitLibrary = nullptr; ///< for page ranges; null: entries with one fail
    EmailReport* report = nullptr;         ///< may be null
    std::function<QDateTime()> now = [] { return QDateTime::currentDateTime(); };
  };
  enum class ListSource { SplitRun, ListFile, Spreadsheet };

  /// Both must outlive the run.
  EmailSendRun(const SplitSetup& setup, ListSource source, Parts parts);

  /// Entries that went out before, or may have arrived (EmailEntry::sentTo, mayHaveReached), are
  /// left out by run() unless a person wants them sent once more.
  void sendTwice() { m_sendsTwice = true; }
  struct BeforeCount {
    std::size_t sent = 0;
    std::size_t mayHaveArrived = 0;
  };
  /// For asking the person.
  BeforeCount countSentBefore(const EmailEntries& entries) const;

  SendSummary run(const EmailEntries& entries);

private:
  bool pause();
  void handleEntry(std::size_t index, const EmailEntry& entry, EntryResult& result);
  MailMessage messageFor(const EmailEntry& entry) const;
  QString recipientOf(const EmailEntry& entry) const;
  bool wasSentBefore(const EmailEntry& entry, EntryResult& result) const;
  MailResult prepare(const EmailEntry& entry, MailMessage& message);
  bool isJournalled(const std::function<bool(SendJournal&)>& write);
  void record(const EntryResult& result);

  const SplitSetup& m_setup;
  ListSource m_source;
  Parts m_parts;
  bool m_sendsTwice = false;
  EmailLog m_log;
  EmailProgress m_progress;
  int m_uselessTries = 0; ///< in a row, that failed for a reason that concerns every mail
  QString m_endedBecause;
};

/// The body of a spreadsheet's cell: line ends go, and every "\n" of two characters becomes one.
QString bodyFromSpreadsheet(const QString& cell);

} // namespace folivex
