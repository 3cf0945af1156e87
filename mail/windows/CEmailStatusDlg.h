// CEmailStatusDlg: how far the sending of mails is, and the button that ends it.
#pragma once

#include "mail/EmailSendRun.h"
#include "widgets/Pace.h"

#include <QDialog>

#include <functional>

class QLabel;
class QProgressBar;
class QPushButton;

namespace folivex {

/// Has no event loop of its own: the send run keeps it alive. Closing it in any way means Stop.
class CEmailStatusDlg : public QDialog, public SendWatcher {
public:
  explicit CEmailStatusDlg(QWidget* parent);
  ~CEmailStatusDlg() override;

  /// Mails that are to be sent; a list may have rows that are not.
  void setMailCount(std::size_t count) { m_mailCount = static_cast<int>(count); }

  /// What else may ask for a stop (the program's own one). May be empty.
  std::function<bool()> alsoStop;
  std::function<void(const EmailProgress& progress)> alsoTell; ///< may be empty

  /// Cheap: what is shown changes at most twenty times a second.
  void onProgress(const EmailProgress& progress) override;
  void handlePendingEvents() override;
  bool stopRequested() override;

  void reject() override; ///< Stop

protected:
  void resizeEvent(QResizeEvent* event) override;

private:
  void display();
  void displayWhenDue();

  EmailProgress m_progress;
  int m_mailCount = 0;
  Pace m_pace{50};
  bool m_isShown = false; ///< what m_progress says is what the window says
  bool m_stopRequested = false;

  QLabel* m_recipient = nullptr;
  QLabel* m_count = nullptr;
  QLabel* m_sentOk = nullptr;
  QLabel* m_sentError = nullptr;
  QProgressBar* m_bar = nullptr;
  QPushButton* m_stop = nullptr;
};

} // namespace folivex
