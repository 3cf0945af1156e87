#include "mail/windows/EmailSession.h"

#include "engine/output/PageAddresses.h"
#include "engine/setup/SplitSetup.h"
#include "mail/delivery/SendOutcome.h"
#include "mail/windows/CEmailListDlg.h"
#include "mail/windows/CEmailStatusDlg.h"
#include "mail/windows/CFindingsDlg.h"
#include "platform/Paths.h"
#include "widgets/Dialogs.h"

#include <QApplication>
#include <QHash>
#include <QPointer>
#include <QScopedValueRollback>
#include <QSet>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace folivex {

namespace {

QString questionCaption() {
  return QStringLiteral("Email List to Send");
}

QString nothingToSend() {
  return QStringLiteral("None of the outputs has an e-mail address on its pages: there is nothing "
                        "to send.");
}

/// To a file that an earlier run made, a later one has added its pages: mail goes to the address
/// that was there first.
void addPages(AddressedOutput& output, const AddressedOutput& added) {
  AddressReader::Found addresses{output.address, output.furtherAddresses};
  addFurther(addresses, {added.address, added.furtherAddresses});
  output.address = addresses.address;
  output.furtherAddresses = addresses.further;
  output.addressesDiffer =
      output.addressesDiffer || added.addressesDiffer ||
      (!output.address.isEmpty() && !added.address.isEmpty() && output.address != added.address);
  output.identity = added.identity;
  output.lastPage = added.lastPage;
}

/// The outputs of several runs as one list. A file that several of them wrote to is in it once.
struct JoinedRuns {
  EmailList list;
  std::vector<AddressedOutput> withoutAddress;
};

JoinedRuns joined(const std::vector<FinishedRun>& runs) {
  std::vector<AddressedOutput> outputs;
  QHash<QString, std::size_t> placeOf;
  for (const FinishedRun& run : runs) {
    for (const AddressedOutput& output : run.outputs) {
      const auto place = placeOf.constFind(output.file);
      if (place == placeOf.constEnd()) {
        placeOf.insert(output.file, outputs.size());
        outputs.push_back(output);
      } else {
        addPages(outputs[*place], output);
      }
    }
  }
  JoinedRuns all;
  all.withoutAddress = all.list.fill(outputs);
  return all;
}

using Rows = std::vector<std::size_t>;

/// Where rows of what was sent stand in the dialog's list.
Rows inList(const CEmailListDlg& dialog, const Rows& sentRows) {
  Rows rows;
  rows.reserve(sentRows.size());
  for (const std::size_t row : sentRows) {
    rows.push_back(dialog.rowsToSend().at(row));
  }
  return rows;
}

/// Rows of the dialog's list with an address that no mail has gone out for: what failed, and what
/// was not selected.
Rows rowsLeft(const CEmailListDlg& dialog, const SendSummary& summary) {
  const std::vector<EmailRow>& rows = dialog.list().rows();
  const Rows gone = inList(dialog, summary.rowsIn({EntryState::Sent, EntryState::SentBefore,
                                                   EntryState::Unknown, EntryState::Shown}));
  Rows left;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    if (!rows[row].entry.address.isEmpty() && !std::ranges::binary_search(gone, row)) {
      left.push_back(row);
    }
  }
  return left;
}

/// The run with those outputs only that are to be sent again.
FinishedRun whatFailed(const FinishedRun& run, const EmailList& list, const SendSummary& summary) {
  QSet<QString> files;
  for (const std::size_t row : summary.rowsToSendAgain()) {
    files += list.rows()[row].entry.file;
  }
  FinishedRun failed{run.source, {}};
  std::ranges::copy_if(
      run.outputs, std::back_inserter(failed.outputs),
      [&files](const AddressedOutput& output) { return files.contains(output.file); });
  return failed;
}

/// A list that a run of the same work left, which sends it still or died; empty when there is none.
QString listOfSameWork(const SplitSetup& setup, const QString& source, const KeptLists& own = {}) {
  MailWork work = MailWork::withoutBytes(setup, source);
  for (const FoundList& found : listsLeftOf(setup, source)) {
    if (found.isReadable && own.journalOf(found.path) == nullptr &&
        found.work.source == work.source && found.work.settings == work.settings) {
      work.bytes = work.bytes.isKnown() ? work.bytes : platform::FileDigest::of(work.source);
      if (found.work == work) {
        return found.path;
      }
    }
  }
  return {};
}

QString messageOf(const SendSummary& summary) {
  return (summary.message() + QStringLiteral("\n\n") + summary.details()).trimmed();
}

} // namespace

struct EmailSession::Waiting {
  std::unique_ptr<EmailDelivery> delivery;
  EmailList list;
  std::vector<AddressedOutput> withoutAddress;
};

struct EmailSession::Batch {
  Batch(const SplitSetup& setup, const DeliveryMeans& means)
      : delivery(std::make_unique<EmailDelivery>(setup, means)) {}

  /// What is to be confirmed, or could not be sent, of this run is for the end of the batch.
  void keep(FinishedRun run) {
    for (const AddressedOutput& output : run.outputs) {
      m_runOf.insert(output.file, waiting.size());
    }
    waiting.push_back(std::move(run));
  }

  /// Files that wait and that this run has written anew hold its pages alone.
  void forgetReplaced(const FinishedRun& run) {
    QHash<std::size_t, QSet<QString>> replaced; // by the run that waits
    for (const AddressedOutput& output : run.outputs) {
      if (const auto earlier = m_runOf.constFind(output.file); earlier != m_runOf.constEnd()) {
        replaced[*earlier] += output.file;
      }
    }
    for (auto files = replaced.constBegin(); files != replaced.constEnd(); ++files) {
      std::erase_if(waiting[files.key()].outputs, [&files](const AddressedOutput& output) {
        return files->contains(output.file);
      });
    }
  }

  std::unique_ptr<EmailDelivery> delivery;
  std::vector<FinishedRun> waiting;
  bool wasSent = false; ///< some of its mails went out, or were tried, while it was on

private:
  QHash<QString, std::size_t> m_runOf; ///< which of those that wait made a file last
};

/// While one lives the person is at the mails; then the keyboard goes back to where it was.
class EmailSession::AtWork {
public:
  explicit AtWork(EmailSession& session)
      : m_rollback(session.m_isAtWork, true),
        m_active(QApplication::activeWindow() != nullptr ? QApplication::activeWindow()
                                                         : session.m_parts.over) {}
  ~AtWork() {
    if (m_active != nullptr && m_active->isVisible()) {
      m_active->activateWindow(); // not every desktop does so when a dialog goes
    }
  }
  AtWork(const AtWork&) = delete;
  AtWork& operator=(const AtWork&) = delete;

private:
  QScopedValueRollback<bool> m_rollback;
  QPointer<QWidget> m_active;
};

EmailSession::EmailSession(Parts parts) : m_parts(std::move(parts)) {}

EmailSession::~EmailSession() = default;

void EmailSession::note(const QString& text) const {
  if (m_parts.note && !text.isEmpty()) {
    m_parts.note(text);
  }
}

void EmailSession::closeReports(EmailDelivery& delivery) {
  delivery.kept().dropAll(); // the person has seen what became of them
  note(delivery.close());
}

void EmailSession::afterRun(const SplitSetup& setup, const FinishedRun& run) {
  if (!setup.emailEnable || m_isAtWork || run.outputs.empty()) {
    return;
  }
  const AtWork atWork(*this);
  JoinedRuns all = joined({run});
  if (all.list.isEmpty()) {
    m_parts.dialogs.message(m_parts.over, nothingToSend());
    return;
  }
  if (!setup.emailConfirm) { // else the list says it
    note(withoutAddressSentence(all.withoutAddress.size(), run.outputs.size()));
  }
  auto delivery = std::make_unique<EmailDelivery>(setup, m_means);
  delivery->addRun(run);
  deliver({std::move(delivery), std::move(all.list), std::move(all.withoutAddress)},
          setup.emailConfirm ? First::Show : First::Send);
}

/// A list that is cancelled waits for the person.
void EmailSession::deliver(Waiting mails, First first) {
  CEmailListDlg dialog(m_parts.dialogs, m_parts.over);
  dialog.showRun(std::move(mails.list), mails.withoutAddress);
  dialog.takeAll();
  const bool isSent = first == First::Send && sendAndTell(dialog, *mails.delivery) == Outcome::Done;
  const bool isDone = isSent || review(dialog, *mails.delivery) == Outcome::Done;
  mails.delivery->kept().dropAll(); // the person has seen what became of them
  if (isDone || dialog.list().addressedCount() == 0) {
    note(mails.delivery->close());
    return;
  }
  mails.list = dialog.list();
  m_waiting = std::make_unique<Waiting>(std::move(mails));
}

std::size_t EmailSession::waiting() const {
  return m_waiting ? m_waiting->list.addressedCount() : 0;
}

void EmailSession::showWaiting() {
  if (m_waiting && !m_isAtWork) {
    const AtWork atWork(*this);
    deliver(std::move(*std::exchange(m_waiting, nullptr)), First::Show);
  }
}

void EmailSession::sendWaiting() {
  if (m_waiting && !m_isAtWork &&
      m_parts.dialogs.question(
          m_parts.over,
          QStringLiteral("Send %1 now, each to the address found on its pages?")
              .arg(mailCount(waiting())),
          questionCaption())) {
    const AtWork atWork(*this);
    deliver(std::move(*std::exchange(m_waiting, nullptr)), First::Send);
  }
}

void EmailSession::forgetWaiting() {
  if (m_waiting) {
    note(m_waiting->delivery->close());
    m_waiting.reset();
  }
}

void EmailSession::afterSourceOfBatch(const SplitSetup& setup, const FinishedRun& run) {
  if (!setup.emailEnable || m_isAtWork || run.outputs.empty()) {
    return;
  }
  const QScopedValueRollback atWork(m_isAtWork, true);
  if (!m_batch) {
    m_batch = std::make_unique<Batch>(setup, m_means);
  }
  m_batch->delivery->addRun(run);
  if (setup.alwaysOverwrite && !setup.alwaysAppend) {
    m_batch->forgetReplaced(run);
  }
  if (setup.emailConfirm) {
    m_batch->keep(run);
    return;
  }
  const JoinedRuns all = joined({run});
  note(withoutAddressSentence(all.withoutAddress.size(), run.outputs.size()));
  if (all.list.isEmpty()) {
    return;
  }
  const QString earlier = listOfSameWork(setup, run.source, m_batch->delivery->kept());
  if (!earlier.isEmpty()) {
    note(QStringLiteral(
             "No e-mail was sent for %1: an earlier run did not send all of its own. They "
             "are in %2; what was made now waits for the end.")
             .arg(run.source, earlier));
    m_batch->keep(run);
    return;
  }
  m_batch->wasSent = true;
  const DeliveryResult result = send(all.list, {}, *m_batch->delivery);
  note(result.note);
  if (!result.problem.isEmpty()) {
    note(QStringLiteral("No e-mail was sent: ") + result.problem);
    m_batch->keep(run);
    return;
  }
  note(result.summary.message());
  if (const std::size_t shown = result.summary.rowsIn({EntryState::Shown}).size(); shown > 0) {
    note(QStringLiteral("%1 opened for you to send, which do not count as sent.")
             .arg(mailCount(shown)));
  }
  for (const QString& line : outcomeLines(all.list, result.summary)) {
    note(line);
  }
  m_batch->keep(whatFailed(run, all.list, result.summary));
}

void EmailSession::afterBatch() {
  const std::unique_ptr<Batch> batch = std::exchange(m_batch, nullptr);
  if (!batch || m_isAtWork) {
    return;
  }
  const AtWork atWork(*this);
  JoinedRuns all = joined(batch->waiting);
  if (!all.list.isEmpty()) {
    deliver({std::move(batch->delivery), std::move(all.list), std::move(all.withoutAddress)},
            First::Show);
    return;
  }
  if (!batch->wasSent) {
    m_parts.dialogs.message(m_parts.over, nothingToSend());
  }
  closeReports(*batch->delivery);
}

bool EmailSession::goOn(const SplitSetup& setup) {
  const QString list = setup.emailEnable && !m_isAtWork
                           ? listOfSameWork(setup, platform::withoutTrailingBlanks(setup.fileName))
                           : QString();
  if (list.isEmpty()) {
    return false;
  }
  const AtWork atWork(*this);
  const int chosen = m_parts.dialogs.choice(
      m_parts.over,
      QStringLiteral("A run of this file with these settings has not sent all of its e-mails: it "
                     "broke off, or is at work still. Its list tells which went out:\n%1\n\n"
                     "Splitting anew makes further outputs, and e-mails for all of them.")
          .arg(list),
      questionCaption(),
      {QStringLiteral("&Go on with that list..."), QStringLiteral("&Split anew")});
  if (chosen == 0) {
    EmailDelivery delivery(setup, m_means);
    CEmailListDlg dialog(m_parts.dialogs, m_parts.over);
    dialog.loadWhenShown(list);
    review(dialog, delivery);
    closeReports(delivery);
  }
  return chosen != 1;
}

void EmailSession::loadEmailList(const SplitSetup& setup) {
  if (m_isAtWork) {
    return;
  }
  const AtWork atWork(*this);
  EmailDelivery delivery(setup, m_means);
  CEmailListDlg dialog(m_parts.dialogs, m_parts.over);
  dialog.loadWhenShown();
  review(dialog, delivery);
  closeReports(delivery);
}

/// RowsLeft when the list was cancelled.
EmailSession::Outcome EmailSession::review(CEmailListDlg& dialog, EmailDelivery& delivery) {
  dialog.setSubject(delivery.setup().emailSubject);
  while (dialog.exec() == QDialog::Accepted) {
    if (sendAndTell(dialog, delivery) == Outcome::Done) {
      return Outcome::Done;
    }
  }
  return Outcome::RowsLeft;
}

DeliveryResult EmailSession::send(const EmailList& list, const QString& listFile,
                                  EmailDelivery& delivery) {
  CEmailStatusDlg status(m_parts.over);
  status.alsoTell = m_parts.progress;
  if (m_parts.stopRequested && !m_parts.stopRequested()) {
    status.alsoStop = m_parts.stopRequested;
  }
  status.setMailCount(list.addressedCount());
  status.show();
  return delivery.send(list, listFile, status,
                       [this, &status](const auto& before) { return askAgain(before, &status); });
}

EmailDelivery::Again EmailSession::askAgain(const EmailDelivery::BeforeCount& before,
                                            QWidget* over) {
  QString text = QStringLiteral("%1 of this list went out before").arg(mailCount(before.sent));
  if (before.mayHaveArrived > 0) {
    text += QStringLiteral(", and %1 may have arrived").arg(mailCount(before.mayHaveArrived));
  }
  using enum EmailDelivery::Again;
  switch (m_parts.dialogs.choice(
      over, text + QStringLiteral(".\n\nSend these once more, too?"), questionCaption(),
      {QStringLiteral("&Leave them out"), QStringLiteral("&Send all once more")})) {
  case 0:
    return LeaveOut;
  case 1:
    return SendTwice;
  default:
    return Cancel;
  }
}

EmailSession::Outcome EmailSession::sendAndTell(CEmailListDlg& dialog, EmailDelivery& delivery) {
  if (dialog.toSend().sourcePath().isEmpty()) {
    delivery.kept().keepOnlyWhatWentOut(); // the rest is in the list that is saved now
  }
  const DeliveryResult result = send(dialog.toSend(), dialog.listFile(), delivery);
  note(result.note);
  if (result.isCancelled) {
    return Outcome::RowsLeft;
  }
  if (!result.problem.isEmpty()) {
    m_parts.dialogs.message(m_parts.over, QStringLiteral("No e-mail was sent: ") + result.problem);
    return Outcome::RowsLeft;
  }
  m_parts.dialogs.message(m_parts.over, messageOf(result.summary));
  if (wantsToSendAgain(dialog, result.summary)) {
    dialog.keepOnly(inList(dialog, result.summary.rowsToSendAgain()),
                    QStringLiteral("These were not sent. Put right what you can and send them "
                                   "again."));
    return Outcome::RowsLeft;
  }
  const std::size_t notSelected = dialog.list().addressedCount() - dialog.toSend().addressedCount();
  if (notSelected > 0 &&
      m_parts.dialogs.question(m_parts.over,
                               QStringLiteral("%1 not selected and not sent. Go back to the list?")
                                   .arg(mailCount(notSelected)),
                               questionCaption())) {
    dialog.keepOnly(rowsLeft(dialog, result.summary), QStringLiteral("These were not sent."));
    return Outcome::RowsLeft;
  }
  return Outcome::Done;
}

bool EmailSession::wantsToSendAgain(CEmailListDlg& dialog, const SendSummary& summary) {
  const QStringList lines = outcomeLines(dialog.toSend(), summary);
  if (lines.isEmpty()) {
    return false;
  }
  const std::size_t again = summary.rowsToSendAgain().size();
  const QString heading =
      again > 0 ? QStringLiteral("\"Send again\" keeps the %1 that were not sent in the list, and "
                                 "nothing else.")
                      .arg(mailCount(again))
                : QStringLiteral("Nobody knows whether these have arrived; ask those who should "
                                 "have them.");
  CFindingsDlg reading({QStringLiteral("E-mails not sent"), heading,
                        QStringLiteral("&Send again..."), "Show the list with what was not sent",
                        QStringLiteral("&Close"), again > 0},
                       lines, m_parts.over);
  return reading.exec() == QDialog::Accepted;
}

} // namespace folivex
