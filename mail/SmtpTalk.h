// SmtpTalk: the one place that knows the SMTP library.
#pragma once

#include "mail/MailServer.h"
#include "mail/MailTransport.h"
#include "mail/MimeStream.h"
#include "mail/SmtpReplies.h"
#include "mail/SmtpTransport.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>

namespace folivex {

/// Addresses in the form for servers.
struct SmtpEnvelope {
  QString sender;
  QStringList recipients; ///< those of copies included
  bool needsUtf8 = false; ///< some address is more than ASCII before its "@"
};

enum class TalkFault : std::uint8_t {
  None,
  NoSuchServer,
  NotReached,
  TimedOut, ///< while connecting
  ConnectionLost,
  Encryption,
  Certificate,
  NoStartTls,
  LoginRefused,
  ServerRefused, ///< see the last code of the answers
  Other,
  // This side broke off:
  StoppedByPerson,
  NoAnswer,
  LoginNotOffered,
  Utf8NotOffered,
  AttachmentFailed
};

/// What one attempt came to.
struct TalkResult {
  TalkFault fault = TalkFault::None;
  QString libraryText;           ///< the library's own words, may be empty
  bool onKeptConnection = false; ///< it had served another mail before
  QString refusedRecipient;      ///< the one that the server said no to
  SmtpReplies replies;
};

/// A server and the connection to it. attempt() and disconnect() belong to one thread, which waits
/// while the talk runs on another.
class SmtpTalk {
public:
  SmtpTalk(MailServer server, SmtpOptions options);
  ~SmtpTalk();
  SmtpTalk(const SmtpTalk&) = delete;
  SmtpTalk& operator=(const SmtpTalk&) = delete;

  /// Hands over one mail, on the kept connection when that lives and `fresh` is not asked for.
  enum class Use : std::uint8_t { Kept, Fresh };
  TalkResult attempt(const SmtpEnvelope& envelope, MimeStream& mail, Use use, MailWait& wait);
  void disconnect();
  int connectionCount() const;

private:
  class Session;
  std::unique_ptr<Session> m_session;
};

} // namespace folivex
