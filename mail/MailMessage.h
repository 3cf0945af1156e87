// MailMessage: one mail as the program means it.
#pragma once

#include <QString>

namespace folivex {

enum class BodyKind { Plain, Html };

struct MailMessage {
  QString sender;
  QString senderName; ///< empty: the address alone
  QString recipient;  ///< exactly one
  QString cc;         ///< one or several between ";" or ","; empty: none
  QString subject;
  QString body;
  BodyKind bodyKind = BodyKind::Plain;
  QString attachmentPath; ///< empty: none
};

} // namespace folivex
