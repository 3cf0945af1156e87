// EmailSession: from the outputs of a run, or a list, to sent mails, with the windows that it
// takes.
#pragma once

#include "mail/delivery/EmailDelivery.h"

#include <functional>
#include <memory>

class QWidget;

namespace folivex {

class CEmailListDlg;
class Dialogs;
struct SplitSetup;

/// Each function comes back when the person is done with the mails. While one is at work the others
/// do nothing.
class EmailSession {
public:
  struct Parts {
    Dialogs& dialogs;
    QWidget* over = nullptr; ///< the window that others appear over
    /// For what needs no answer; may be empty.
    std::function<void(const QString& text)> note = {};
    /// Whether the program's own stop was asked for; may be empty. One that came before the sending
    /// ended something else.
    std::function<bool()> stopRequested = {};
    /// How far sending is, beside its own window; may be empty.
    std::function<void(const EmailProgress& progress)> progress = {};
  };
  explicit EmailSession(Parts parts);
  ~EmailSession();
  EmailSession(const EmailSession&) = delete;
  EmailSession& operator=(const EmailSession&) = delete;

  /// Not known before the libraries are loaded.
  void setMeans(DeliveryMeans means) { m_means = std::move(means); }

  /// A run has ended. Does nothing without `EMAILENABLE`. With `EMAILCONFIRM` the list is shown
  /// first, else the mails go out at once.
  void afterRun(const SplitSetup& setup, const FinishedRun& run);

  /// The same in a batch run. With `EMAILCONFIRM` the outputs wait for afterBatch(), so that the
  /// batch waits for nobody; else the mails go out, and what there is to say is noted.
  void afterSourceOfBatch(const SplitSetup& setup, const FinishedRun& run);
  /// A batch run has ended: one list shows what waits to be confirmed, or could not be sent, of all
  /// its sources.
  void afterBatch();

  /// Before a source is split once more whose mails a run with the same settings did not send to
  /// their end, since the program died: the person is asked, and may go on with that list. True
  /// when there is nothing to be split.
  bool goOn(const SplitSetup& setup);

  /// Mails of the last run, or batch, whose list was cancelled: nobody has decided against them.
  std::size_t waiting() const;
  /// Another run begins: they are its business no more.
  void forgetWaiting();
  /// Shows the list of those again.
  void showWaiting();
  /// Sends them, if the person agrees.
  void sendWaiting();

  /// "Load Email List": a list file is chosen, shown and sent.
  void loadEmailList(const SplitSetup& setup);

private:
  struct Batch;
  struct Waiting;
  class AtWork;
  enum class Outcome { Done, RowsLeft };
  enum class First { Show, Send };

  Outcome review(CEmailListDlg& dialog, EmailDelivery& delivery);
  void deliver(Waiting mails, First first);
  Outcome sendAndTell(CEmailListDlg& dialog, EmailDelivery& delivery);
  bool wantsToSendAgain(CEmailListDlg& dialog, const SendSummary& summary);
  DeliveryResult send(const EmailList& list, const QString& listFile, EmailDelivery& delivery);
  EmailDelivery::Again askAgain(const EmailDelivery::BeforeCount& before, QWidget* over);
  void closeReports(EmailDelivery& delivery);
  void note(const QString& text) const;

  Parts m_parts;
  DeliveryMeans m_means;
  std::unique_ptr<Batch> m_batch; ///< the batch run that is on
  std::unique_ptr<Waiting> m_waiting;
  bool m_isAtWork = false;
};

} // namespace folivex
