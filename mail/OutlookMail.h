// COutlookMail: mails through the Outlook program of a Windows desktop.
#pragma once

#include "mail/MailTransport.h"

#include <memory>

namespace folivex {

struct OutlookAvailability {
  bool available = false;
  QString reason; ///< for a person, empty when available
};

/// Whether Outlook can be driven from here.
OutlookAvailability outlookAvailable();

/// How far a mail goes by itself.
enum class OutlookMode {
  Show, ///< each mail is opened for the person to send
  Send  ///< `USEOUTLOOKAUTO`: sent at once
};

/// A transport that hands every mail to Outlook; null where outlookAvailable() says no. Outlook
/// sends with the account that it is set up for: sender and sender name are not used.
std::unique_ptr<MailTransport> makeOutlookMail(OutlookMode mode);

} // namespace folivex
