#include "mail/MailServer.h"

#include "engine/setup/SplitSetup.h"

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
  MailServer server;
  QStringView text = QStringView(serverText).trimmed();
  if (text.startsWith(u"ssl:", Qt::CaseInsensitive)) {
    server.security = MailSecurity::Ssl;
    text = text.mid(4).trimmed();
  } else if (text.startsWith(u"tls:", Qt::CaseInsensitive)) {
    server.security = MailSecurity::StartTls;
    text = text.mid(4).trimmed();
  }
  QStringView port;
  bool hasPort = false;
  const qsizetype bracket = text.startsWith(u'[') ? text.indexOf(u']') : -1;
  const qsizetype colon = text.indexOf(u':', std::max<qsizetype>(bracket, 0));
  if (colon >= 0) {
    hasPort = true;
    port = text.mid(colon + 1).trimmed();
    text = text.left(colon).trimmed();
  }
  server.host = (bracket > 0 ? text.mid(1, bracket - 1) : text).toString();
  if (server.host.isEmpty()) {
    server.problem = QStringLiteral("No SMTP server is given.");
  } else if (!std::all_of(server.host.begin(), server.host.end(), isHostCharacter) ||
             (bracket < 0 && server.host.contains(u':'))) {
    server.problem = QStringLiteral("\"%1\" is no name of a server.").arg(server.host.simplified());
  } else if (hasPort) {
    bool isNumber = false;
    server.port = port.toInt(&isNumber);
    if (!isNumber || server.port < 1 || server.port > maxPort) {
      server.port = 0;
      server.problem = QStringLiteral("The port \"%1\" is none: it is a number from 1 to 65535.")
                           .arg(port.toString().simplified());
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

} // namespace folivex
