// The transport that a setup asks for.
#pragma once

#include "mail/MailTransport.h"
#include "mail/SmtpTransport.h"

#include <memory>

namespace folivex {

struct SplitSetup;

struct MailTransportChoice {
  std::unique_ptr<MailTransport> transport; ///< null when there is none
  QString problem;                          ///< why
};

/// Outlook when `USEOUTLOOK` is set, else the SMTP server of the setup.
MailTransportChoice transportFor(const SplitSetup& setup, const SmtpOptions& options = {});

} // namespace folivex
