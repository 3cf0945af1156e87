// MailHeader: lines of a mail's head (RFC 5322, 2047, 2231), folded, without their last line end.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace folivex {

/// The text on one line: every run of control characters and line ends becomes one blank.
QString withoutControlCharacters(QString text);

/// "NAME: TEXT", encoded when the text is more than plain ASCII or cannot be folded.
QByteArray textHeader(const QByteArray& name, const QString& text);

/// "NAME: DISPLAY <ADDRESS>"; without a display name the address alone. The address has been
/// checked (see addressProblem()).
QByteArray addressHeader(const QByteArray& name, const QString& display, const QString& address);

/// "NAME: A,\r\n B".
QByteArray addressListHeader(const QByteArray& name, const QStringList& addresses);

/// "Content-Disposition: attachment; filename=..."; a long or non-ASCII name in the pieces of
/// RFC 2231.
QByteArray attachmentHeader(const QString& fileName);

} // namespace folivex
