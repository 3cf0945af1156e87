// MailMessage: one mail as the program means it.
#pragma once

#include "platform/FileDigest.h"

#include <QString>
#include <QStringList>

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
  /// What is attached must be these bytes, or nothing is sent; not known: whatever lies there.
  platform::FileDigest attachmentIdentity = {};
};

/// The copy addresses of MailMessage::cc, apart.
QStringList copyAddresses(const QString& cc);

/// Why the message cannot be sent whoever carries it: a sender, recipient or copy address that is
/// none. Empty when there is nothing.
QString messageProblem(const MailMessage& message);

} // namespace folivex
