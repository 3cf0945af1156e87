#include "mail/windows/RunSendTest.h"

#include "engine/setup/SplitSetup.h"
#include "mail/EmailSettingsCheck.h"
#include "mail/MailTransportChoice.h"
#include "mail/SendTest.h"
#include "mail/windows/CMailWaitDlg.h"
#include "widgets/Dialogs.h"

namespace folivex {

void runSendTest(const SplitSetup& setup, Dialogs& dialogs, QWidget* over,
                 const SmtpOptions& options) {
  const MailTransportChoice choice = transportFor(setup, options);
  SendTestResult result;
  bool isStopped = false;
  {
    CMailWaitDlg waiting(QStringLiteral("Send Test"),
                         QStringLiteral("Sending a test message to %1").arg(senderOf(setup)), over);
    result = sendTest(setup, choice, waiting);
    isStopped = waiting.stopRequested();
  }
  if (isStopped && !result.ok) {
    dialogs.message(over, QStringLiteral("The test was stopped."));
    return;
  }
  dialogs.message(over, result.message);
  if (!result.reportPath.isEmpty() && !dialogs.openOutside(result.reportPath)) {
    dialogs.message(over,
                    QStringLiteral("No program was found to open the file ") + result.reportPath);
  }
}

} // namespace folivex
