#include "mail/EmailSettingsCheck.h"

#include "engine/setup/SplitSetup.h"
#include "mail/MailAddress.h"
#include "mail/MailHeader.h"
#include "mail/MailMessage.h"
#include "mail/MailServer.h"
#include "mail/OutlookMail.h"

namespace folivex {

namespace {

void add(SettingFindings& findings, const char* key, const QString& text,
         FindingKind kind = FindingKind::Problem) {
  findings.push_back({QString::fromLatin1(key), text, kind});
}

void checkSender(const SplitSetup& setup, SettingFindings& findings) {
  const QString sender = senderOf(setup);
  const QString problem = addressProblem(sender);
  if (sender.isEmpty()) {
    add(findings, "EMAILFROM", QStringLiteral("No From address is given."));
  } else if (!problem.isEmpty()) {
    add(findings, "EMAILFROM", QStringLiteral("The From address %1.").arg(problem));
  }
}

void checkServer(const SplitSetup& setup, SettingFindings& findings) {
  const MailServer server = mailServerOf(setup);
  if (!server.problem.isEmpty()) {
    add(findings, "EMAILSMTP", server.problem);
    return;
  }
  if (server.login.isEmpty() && !server.password.isEmpty()) {
    add(findings, "EMAILLOGIN", QStringLiteral("A password is given but no login: it is not used."),
        FindingKind::Hint);
  }
  if (!server.login.isEmpty() && server.password.isEmpty()) {
    add(findings, "EMAILPASSWORD", QStringLiteral("A login is given but no password."),
        FindingKind::Hint);
  }
  if (!server.login.isEmpty() && server.security == MailSecurity::None) {
    add(findings, "EMAILSMTP",
        QStringLiteral("The login and its password go to the server unencrypted: put \"ssl:\" or "
                       "\"tls:\" in front of the server if it can do that."),
        FindingKind::Hint);
  }
}

void checkCopy(const SplitSetup& setup, SettingFindings& findings) {
  for (const QString& address : copyAddresses(setup.emailInvoiceCc)) {
    const QString problem = addressProblem(address);
    if (!problem.isEmpty()) {
      add(findings, "EMAILINVOICECC",
          QStringLiteral("The CC address \"%1\" %2.")
              .arg(withoutControlCharacters(address), problem));
    }
  }
}

} // namespace

QString senderOf(const SplitSetup& setup) {
  return setup.emailFrom.trimmed();
}

SettingFindings checkEmailSettings(const SplitSetup& setup) {
  SettingFindings findings;
  if (setup.useOutlook) {
    if (const QString problem = outlookProblem(); !problem.isEmpty()) {
      add(findings, "USEOUTLOOK", problem);
    }
  } else {
    checkServer(setup, findings);
  }
  if (!setup.useOutlook || setup.emailTest) { // test mails go there
    checkSender(setup, findings);
  }
  checkCopy(setup, findings);
  if (setup.emailSubject.trimmed().isEmpty()) {
    add(findings, "EMAILSUBJECT", QStringLiteral("The subject is empty."), FindingKind::Hint);
  }
  if (setup.emailPause > longestPause) {
    add(findings, "EMAILPAUSE", QStringLiteral("A pause of more than an hour is cut to one hour."),
        FindingKind::Hint);
  }
  return findings;
}

} // namespace folivex
