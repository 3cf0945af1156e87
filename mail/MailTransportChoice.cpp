#include "mail/MailTransportChoice.h"

#include "engine/setup/SplitSetup.h"
#include "mail/OutlookMail.h"

namespace folivex {

MailTransportChoice transportFor(const SplitSetup& setup, const SmtpOptions& options) {
  if (setup.useOutlook) {
    const QString problem = outlookProblem();
    return {problem.isEmpty()
                ? makeOutlookMail(setup.useOutlookAuto ? OutlookMode::Send : OutlookMode::Show)
                : nullptr,
            problem};
  }
  const MailServer server = mailServerOf(setup);
  if (!server.problem.isEmpty()) {
    return {nullptr, server.problem};
  }
  return {std::make_unique<SmtpTransport>(server, options), {}};
}

} // namespace folivex
