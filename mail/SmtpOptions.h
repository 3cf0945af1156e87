// SmtpOptions: how long a mail server is waited for, and whom to trust.
#pragma once

#include <QString>

namespace folivex {

struct SmtpOptions {
  int connectTimeoutMs = 30'000; ///< until the server is greeted, TLS and login included
  int answerTimeoutMs = 120'000; ///< without a byte either way
  /// After the whole mail went out: giving up early would leave its fate unknown.
  int finalAnswerTimeoutMs = 600'000;
  int goodbyeTimeoutMs = 2'000;
  /// PEM file with the certificates to trust in place of the system's; empty: the system's.
  QString caFile;
};

} // namespace folivex
