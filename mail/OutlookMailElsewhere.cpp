#include "mail/OutlookMail.h"

namespace folivex {

QString outlookProblem() {
  return QStringLiteral("Outlook can be used on Windows only: give an SMTP server instead.");
}

std::unique_ptr<MailTransport> makeOutlookMail(OutlookMode /*mode*/) {
  return nullptr;
}

} // namespace folivex
