#include "mail/OutlookMail.h"

namespace folivex {

OutlookAvailability outlookAvailable() {
  return {false,
          QStringLiteral("Outlook can be used on Windows only: give an SMTP server instead.")};
}

std::unique_ptr<MailTransport> makeOutlookMail(OutlookMode /*mode*/) {
  return nullptr;
}

} // namespace folivex
