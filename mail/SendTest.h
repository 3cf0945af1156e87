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

/// Sends one mail with the settings, sender, recipient and copy address all being `EMAILFROM`.
SendTestResult sendTest(const SplitSetup& setup, MailTransport& transport, MailWait& wait);

} // namespace folivex
