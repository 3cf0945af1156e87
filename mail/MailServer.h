// MailServer: where mails are handed in, as the setup words it.
#pragma once

#include <QString>

#include <cstdint>

namespace folivex {

struct SplitSetup;

enum class MailSecurity : std::uint8_t {
  None,
  Ssl,     ///< "ssl:", from the first byte
  StartTls ///< "tls:", required
};

struct MailServer {
  MailSecurity security = MailSecurity::None;
  QString host;  ///< an IPv6 address without its brackets
  int port = 0;  ///< 0: the default one of the security
  QString login; ///< empty: no login
  QString password;
  QString problem; ///< why the server text cannot be used; empty when it can
};

/// How long a mail server is waited for, and whom to trust.
struct SmtpOptions {
  int connectTimeoutMs = 30'000; ///< until the server is greeted, TLS and login included
  int answerTimeoutMs = 120'000; ///< until an answer is whole, without a byte going out
  /// After the whole mail went out: giving up early would leave its fate unknown.
  int finalAnswerTimeoutMs = 600'000;
  int goodbyeTimeoutMs = 2'000;
  /// PEM file with the certificates to trust in place of the system's; empty: the system's.
  QString caFile;
};

/// What a person should know of the limits, in two lines.
QString patienceText();

/// Takes "ssl:host:port", "tls:host", "host:port" or "host" apart. Blanks around are no part of it.
MailServer parseMailServer(const QString& serverText);
/// With the login of the setup.
MailServer mailServerOf(const SplitSetup& setup);

} // namespace folivex
