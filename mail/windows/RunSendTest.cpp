#include "mail/windows/RunSendTest.h"

#include "engine/setup/SplitSetup.h"
#include "mail/EmailSettingsCheck.h"
#include "mail/MailTransportChoice.h"
#include "mail/SendTest.h"
#include "mail/windows/CMailWaitDlg.h"
#include "widgets/Dialogs.h"

namespace folivex {

namespace {

/// Settings that no transport can be made of fail as a mail does: with the same words and the same
/// file.
class NoTransport : public MailTransport {
public:
  explicit NoTransport(QString problem) : m_problem(std::move(problem)) {}

  MailResult send(const MailMessage& /*message*/, MailWait& /*wait*/) override {
    MailResult refused;
    refused.errorText = m_problem;
    return refused;
  }

private:
  QString m_problem;
};

} // namespace

void runSendTest(const SplitSetup& setup, Dialogs& dialogs, QWidget* over,
                 const SmtpOptions& options) {
  MailTransportChoice choice = transportFor(setup, options);
  if (!choice.transport) {
    choice.transport = std::make_unique<NoTransport>(choice.problem);
  }
  SendTestResult result;
  bool isStopped = false;
  {
    CMailWaitDlg waiting(QStringLiteral("Send Test"),
                         QStringLiteral("Sending a test message to %1").arg(senderOf(setup)), over);
    result = sendTest(setup, *choice.transport, waiting);
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
