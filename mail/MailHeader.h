// MailHeader: lines of a mail's head (RFC 5322, 2047, 2231).
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace folivex {

/// The text on one line: every run of control characters and line ends becomes one blank.
QString withoutControlCharacters(const QString& text);

/// "NAME: TEXT\r\n", folded; encoded when the text is more than plain ASCII or cannot be folded.
QByteArray textHeader(QByteArrayView name, const QString& text);

/// "NAME: DISPLAY <ADDRESS>\r\n"; without a display name the address alone. The address has been
/// checked (see addressProblem()).
QByteArray addressHeader(QByteArrayView name, const QString& display, const QString& address);

/// "NAME: A,\r\n B\r\n".
QByteArray addressListHeader(QByteArrayView name, const QStringList& addresses);

/// "Content-Disposition: attachment; filename=...\r\n"; a long or non-ASCII name in the pieces of
/// RFC 2231.
QByteArray attachmentHeader(const QString& fileName);

} // namespace folivex
