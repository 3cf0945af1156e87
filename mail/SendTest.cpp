#include "mail/SendTest.h"

#include "engine/setup/SplitSetup.h"
#include "mail/EmailSettingsCheck.h"
#include "mail/MailTransportChoice.h"
#include "platform/Paths.h"
#include "platform/TextFile.h"

namespace folivex {

namespace {

/// Path of the file with the error, empty when it could not be made.
QString writeErrorFile(const QString& errorText) {
  const QString folder = platform::temporaryFolder();
  if (folder.isEmpty()) {
    return {};
  }
  const QString path = folder + QStringLiteral("folivex_mail_error.txt");
  platform::TextWriter file;
  if (!file.open(path, platform::FileAccess::Private)) {
    return {};
  }
  file.write(errorText + QStringLiteral("\r\n"));
  return file.close() ? path : QString();
}

} // namespace

SendTestResult sendTest(const SplitSetup& setup, const MailTransportChoice& choice,
                        MailWait& wait) {
  MailMessage message;
  message.sender = senderOf(setup);
  message.senderName = setup.emailFromName;
  message.recipient = senderOf(setup);
  message.cc = senderOf(setup);
  message.subject = setup.emailSubject;
  message.body = setup.emailMsg;
  message.bodyKind = setup.emailHtml ? BodyKind::Html : BodyKind::Plain;
  MailResult sent;
  sent.errorText = choice.problem;
  if (choice.transport) {
    sent = choice.transport->send(message, wait);
    choice.transport->disconnect();
  }
  if (sent.sent()) {
    return {true,
            QStringLiteral("Message(s) Sent Successfully.\n\nNOTE: mailto and cc message sent to "
                           "from address."),
            {}};
  }
  if (sent.outcome == MailOutcome::Shown) {
    return {true,
            QStringLiteral("The message is open in Outlook: it goes out when you send it there.\n\n"
                           "NOTE: mailto and cc of the message are the from address."),
            {}};
  }
  SendTestResult result;
  result.message = sent.errorText.isEmpty()
                       ? QStringLiteral("Error in configuration, message not sent to:")
                       : QStringLiteral("Error in configuration:") + sent.errorText +
                             QStringLiteral(", message not sent to:");
  result.message += senderOf(setup);
  result.reportPath = writeErrorFile(sent.errorText);
  if (!result.reportPath.isEmpty()) {
    result.message += QStringLiteral("\nError report output to file:") + result.reportPath;
  }
  return result;
}

} // namespace folivex
