// COutlookMail: mails through the Outlook program of a Windows desktop.
#pragma once

#include "mail/MailTransport.h"

#include <memory>

namespace folivex {

/// Why Outlook cannot be driven from here, for a person; empty when it can.
QString outlookProblem();

/// How far a mail goes by itself.
enum class OutlookMode {
  Show, ///< each mail is opened for the person to send: MailOutcome::Shown
  Send  ///< `USEOUTLOOKAUTO`: sent at once
};

/// A transport that hands every mail to Outlook; only where outlookProblem() is empty. Outlook
/// sends with the account that it is set up for: sender and sender name are not used.
std::unique_ptr<MailTransport> makeOutlookMail(OutlookMode mode);

} // namespace folivex
