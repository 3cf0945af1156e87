// SmtpTransport: mails through an SMTP server.
#pragma once

#include "mail/MailServer.h"
#include "mail/MailTransport.h"

#include <memory>

namespace folivex {

class SmtpTalk;

/// One connection serves all mails; when the server has closed it (or answers 421 because it has
/// had enough), a mail that cannot have been accepted is sent once more on a new connection. A mail
/// whose end went out and whose answer never came is Unknown and not sent again.
///
/// Certificates are verified, STARTTLS that is asked for is required, and a login that the server
/// does not offer is an error: nothing is sent without it.
///
/// The talk runs on a thread of its own while send() waits on the caller's and lets the window
/// live; a stop takes effect within a tenth of a second.
class SmtpTransport : public MailTransport {
public:
  explicit SmtpTransport(const MailServer& server, const SmtpOptions& options = {});
  ~SmtpTransport() override;
  SmtpTransport(const SmtpTransport&) = delete;
  SmtpTransport& operator=(const SmtpTransport&) = delete;

  MailResult send(const MailMessage& message, MailWait& wait) override;
  void disconnect() override;

  /// Connections made so far.
  int connectionCount() const;

private:
  MailServer m_server;
  std::unique_ptr<SmtpTalk> m_talk;
  bool m_isSending = false;
};

} // namespace folivex
