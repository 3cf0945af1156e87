// SendTest: one mail to oneself, to see whether the settings are right.
#pragma once

#include "mail/MailTransport.h"

namespace folivex {

struct SplitSetup;

struct [[nodiscard]] SendTestResult {
  bool ok = false;
  QString message;    ///< to show
  QString reportPath; ///< file with the error, to open for the person; empty when there is none
};

struct MailTransportChoice;

/// Sends one mail with the settings, sender, recipient and copy address all being `EMAILFROM`.
/// Settings that no transport can be made of fail as a mail does.
SendTestResult sendTest(const SplitSetup& setup, const MailTransportChoice& choice, MailWait& wait);

} // namespace folivex
