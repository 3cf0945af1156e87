// MailTransport: what carries a mail to the world.
#pragma once

#include "mail/MailMessage.h"

#include <QString>

#include <cstdint>

namespace folivex {

/// What became of one mail. Only Sent means that somebody took it over to carry it.
enum class MailOutcome : std::uint8_t {
  Sent,
  Refused,   ///< sending it again as it is will not help
  Temporary, ///< the server, the network or a limit is in the way: send it again later
  Unknown, ///< it went out whole and no answer came: it may have arrived. Never sent again unasked
  Stopped, ///< the person stopped before it went out
  FileChanged, ///< the file to attach is not the one that was meant: nothing of it went out
  Shown ///< a person has it before them and may send it, or may not: whether it goes out is not
        ///< told
};

struct [[nodiscard]] MailResult {
  MailOutcome outcome = MailOutcome::Refused;
  QString errorText;  ///< one line for a person, without a password; empty when sent
  int serverCode = 0; ///< the server's last answer, 0 without one
  /// Every further mail would fare alike (login refused, no such server, a silent one).
  bool concernsEveryMail = false;

  bool sent() const { return outcome == MailOutcome::Sent; }
};

/// Who waits while a mail is on its way.
class MailWait {
public:
  virtual ~MailWait() = default;
  /// Lets a window handle what has come in; called at least ten times a second.
  virtual void handlePendingEvents() = 0;
  virtual bool stopRequested() = 0;
};

class MailTransport {
public:
  virtual ~MailTransport() = default;
  /// Sends one mail and comes back when it is known, as far as it ever will be, what became of it.
  /// Not to be called again from within handlePendingEvents(): that is refused.
  virtual MailResult send(const MailMessage& message, MailWait& wait) = 0;
  /// Says good-bye to the server, if there is a connection. The next send() makes a new one.
  virtual void disconnect() {}
};

} // namespace folivex
