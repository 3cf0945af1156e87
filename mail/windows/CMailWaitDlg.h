// CMailWaitDlg: something takes its time, and can be stopped.
#pragma once

#include "mail/MailTransport.h"

#include <QDialog>

class QPushButton;

namespace folivex {

/// Shown while its maker works and calls handlePendingEvents(); has no event loop of its own. The
/// pointer tells that the program is busy. Closing it in any way means Stop.
class CMailWaitDlg : public QDialog, public MailWait {
public:
  CMailWaitDlg(const QString& title, const QString& text, QWidget* parent);
  ~CMailWaitDlg() override;

  void handlePendingEvents() override;
  bool stopRequested() override { return m_stopRequested; }

  void reject() override; ///< Stop

private:
  QPushButton* m_stop;
  bool m_stopRequested = false;
};

} // namespace folivex
