#include "mail/MailServer.h"

#include "engine/setup/SplitSetup.h"

#include <QRegularExpression>

#include <algorithm>

namespace folivex {

namespace {

constexpr int maxPort = 65535;

/// What may stand in the address of a server and nothing that could lead out of it.
bool isHostCharacter(QChar c) {
  return c.isLetterOrNumber() || c.isMark() || c == u'.' || c == u'-' || c == u'_' || c == u':';
}

} // namespace

MailServer parseMailServer(const QString& serverText) {
  static const QRegularExpression parts(
      QStringLiteral(R"(\A(?:(ssl|tls):)?\s*(?:\[(.*?)\]|([^:]*?))\s*(?::\s*(.*))?\z)"),
      QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
  const QRegularExpressionMatch match = parts.match(serverText.trimmed());
  MailServer server;
  const QString security = match.captured(1).toLower();
  server.security = security == QLatin1String("ssl")   ? MailSecurity::Ssl
                    : security == QLatin1String("tls") ? MailSecurity::StartTls
                                                       : MailSecurity::None;
  server.host = match.captured(match.hasCaptured(2) ? 2 : 3);
  if (server.host.isEmpty() && match.hasMatch()) {
    server.problem = QStringLiteral("No SMTP server is given.");
  } else if (!match.hasMatch() ||
             !std::all_of(server.host.begin(), server.host.end(), isHostCharacter)) {
    server.problem = QStringLiteral("\"%1\" is no name of a server.")
                         .arg((match.hasMatch() ? server.host : serverText).simplified());
  } else if (match.hasCaptured(4)) {
    server.port = match.captured(4).toInt();
    if (server.port < 1 || server.port > maxPort) {
      server.port = 0;
      server.problem = QStringLiteral("The port \"%1\" is none: it is a number from 1 to 65535.")
                           .arg(match.captured(4).simplified());
    }
  }
  return server;
}

MailServer mailServerOf(const SplitSetup& setup) {
  MailServer server = parseMailServer(setup.emailSmtp);
  server.login = setup.emailLogin;
  server.password = setup.emailPassword;
  return server;
}

QString patienceText() {
  const SmtpOptions limits;
  return QStringLiteral(
             "A silent server is given up after %1 seconds while connecting, %2 minutes\n"
             "for a reply, %3 minutes after a whole mail; after three mails sending ends.")
      .arg(limits.connectTimeoutMs / 1000)
      .arg(limits.answerTimeoutMs / 60'000)
      .arg(limits.finalAnswerTimeoutMs / 60'000);
}

} // namespace folivex
