#include "mail/MimeStream.h"

#include "mail/MailAddress.h"
#include "mail/MailHeader.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"

#include <QLocale>
#include <QRandomGenerator>

#include <algorithm>
#include <cstring>

namespace folivex {

namespace {

/// Bytes of the file on one base64 line of 76 characters.
constexpr qint64 bytesInLine = 57;
constexpr qint64 linesInBlock = 512;
constexpr qsizetype lineLength = 76;

QByteArray randomText() {
  QByteArray text;
  for (int i = 0; i < 2; ++i) {
    text +=
        QByteArray::number(QRandomGenerator::system()->generate64(), 16).rightJustified(16, '0');
  }
  return text;
}

QByteArray mailDate(const QDateTime& time) {
  // Names of days and months are English here, whatever the desktop speaks.
  return (QLocale::c().toString(time.toOffsetFromUtc(time.offsetFromUtc()),
                                QStringLiteral("ddd, d MMM yyyy HH:mm:ss ")) +
          time.toString(Qt::RFC2822Date).right(5))
      .toLatin1();
}

bool staysInQuotedPrintable(unsigned char c) {
  return c >= 0x20 && c < 0x7F && c != '=';
}

/// Lines end in CR LF and have 76 characters at most. Blanks at a line's end are encoded: servers
/// cut them. So is a dot at a line's start, for servers that mistake it for the end.
QByteArray quotedPrintable(const QString& text) {
  QString lines = text;
  lines.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(u'\r', u'\n');
  QByteArray result;
  if (lines.endsWith(u'\n')) {
    lines.chop(1);
  }
  for (const QStringView line : QStringView(lines).split(u'\n')) {
    const QByteArray utf8 = line.toUtf8();
    qsizetype column = 0;
    for (qsizetype i = 0; i < utf8.size(); ++i) {
      const char c = utf8[i];
      const bool lastBlank = c == ' ' && i + 1 == utf8.size();
      const bool dot = c == '.' && column == 0;
      const bool stays =
          staysInQuotedPrintable(static_cast<unsigned char>(c)) && !lastBlank && !dot;
      const qsizetype width = stays ? 1 : 3;
      if (column + width >= lineLength) {
        result += "=\r\n";
        column = 0;
      }
      result += stays ? QByteArray(1, c) : '=' + QByteArray(1, c).toHex().toUpper();
      column += width;
    }
    result += "\r\n";
  }
  return result;
}

QByteArray bodyPart(const MailMessage& message) {
  const char* const type = message.bodyKind == BodyKind::Html ? "html" : "plain";
  return QByteArray("Content-Type: text/") + type +
         "; charset=utf-8\r\nContent-Transfer-Encoding: quoted-printable\r\n\r\n" +
         quotedPrintable(message.body);
}

QByteArray head(const MailMessage& message, const MailIdentity& identity) {
  QByteArray lines = "Date: " + mailDate(identity.time) + "\r\n";
  lines += addressHeader("From", message.senderName, message.sender);
  lines += addressHeader("To", {}, message.recipient);
  const QStringList copies = copyAddresses(message.cc);
  if (!copies.isEmpty()) {
    lines += addressListHeader("Cc", copies);
  }
  lines += textHeader("Subject", message.subject);
  lines += "Message-ID: <" + identity.messageId + ">\r\nMIME-Version: 1.0\r\n";
  return lines;
}

QByteArray attachmentHead(const QString& path) {
  const QString title = platform::fileTitle(platform::withoutTrailingBlanks(path));
  const bool isPdf = title.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive);
  return QByteArray("Content-Type: ") + (isPdf ? "application/pdf" : "application/octet-stream") +
         "\r\nContent-Transfer-Encoding: base64\r\n" + attachmentHeader(title) + "\r\n";
}

qint64 base64Size(qint64 bytes) {
  const qint64 lines = (bytes + bytesInLine - 1) / bytesInLine;
  return (bytes + 2) / 3 * 4 + 2 * lines;
}

QString named(const QString& role, const QString& address) {
  const QString problem = addressProblem(address);
  return problem.isEmpty()
             ? QString()
             : QStringLiteral("%1 address \"%2\" %3")
                   .arg(role, withoutControlCharacters(address).left(maxAddressLength), problem);
}

} // namespace

QStringList copyAddresses(const QString& cc) {
  QStringList addresses;
  qsizetype from = 0;
  bool inQuotes = false;
  const QString text = cc + u';';
  for (qsizetype i = 0; i < text.size(); ++i) {
    inQuotes = inQuotes != (text[i] == u'"');
    if ((text[i] == u';' || text[i] == u',') && (!inQuotes || i + 1 == text.size())) {
      const QString address = text.mid(from, i - from).trimmed();
      if (!address.isEmpty()) {
        addresses += address;
      }
      from = i + 1;
    }
  }
  return addresses;
}

QString messageProblem(const MailMessage& message) {
  QString problem = named(QStringLiteral("the sender's"), message.sender);
  if (problem.isEmpty()) {
    problem = named(QStringLiteral("the recipient's"), message.recipient);
  }
  for (const QString& copy : copyAddresses(message.cc)) {
    if (problem.isEmpty()) {
      problem = named(QStringLiteral("the copy"), copy);
    }
  }
  return problem;
}

MailIdentity MailIdentity::fresh(const MailMessage& message) {
  const QString sender = addressForServer(message.sender);
  const QByteArray host = sender.mid(sender.lastIndexOf(u'@') + 1).toLatin1();
  return {QDateTime::currentDateTime(),
          randomText() + '@' + (host.startsWith('[') ? "localhost" : host), "=_" + randomText()};
}

bool MimeStream::open(const MailMessage& message, const MailIdentity& identity) {
  m_block.clear();
  m_next = 0;
  m_fileRead = 0;
  m_part = Part::Head;
  m_head = head(message, identity);
  if (message.attachmentPath.isEmpty()) {
    m_head += bodyPart(message);
    m_end.clear();
    m_size = m_head.size();
    return true;
  }
  platform::FileFailure failure;
  if (!platform::openForReading(m_file, message.attachmentPath, platform::FileAccess::Ordinary,
                                failure)) {
    return fail(QStringLiteral("the file %1 cannot be attached: %2")
                    .arg(message.attachmentPath, failure.text));
  }
  m_path = message.attachmentPath;
  m_fileSize = m_file.size();
  const QByteArray line = "--" + identity.boundary;
  m_head += "Content-Type: multipart/mixed;\r\n boundary=\"" + identity.boundary + "\"\r\n\r\n" +
            line + "\r\n" + bodyPart(message) + "\r\n" + line + "\r\n" +
            attachmentHead(message.attachmentPath);
  m_end = "\r\n" + line + "--\r\n";
  m_size = m_head.size() + base64Size(m_fileSize) + m_end.size();
  return true;
}

bool MimeStream::fail(const QString& text) {
  m_errorText = text;
  return false;
}

bool MimeStream::fillFromFile() {
  QByteArray bytes(bytesInLine * linesInBlock, Qt::Uninitialized);
  qint64 count = 0;
  while (count < bytes.size()) {
    const qint64 more = m_file.read(bytes.data() + count, bytes.size() - count);
    if (more < 0) {
      return fail(
          QStringLiteral("the file %1 cannot be read: %2").arg(m_path, m_file.errorString()));
    }
    if (more == 0) {
      break;
    }
    count += more;
  }
  m_fileRead += count;
  if (m_fileRead > m_fileSize || (count < bytes.size() && m_fileRead != m_fileSize)) {
    return fail(QStringLiteral("the attached file changed while it was sent"));
  }
  for (qint64 at = 0; at < count; at += bytesInLine) {
    const qint64 length = std::min(bytesInLine, count - at);
    m_block += QByteArray::fromRawData(bytes.constData() + at, length).toBase64() + "\r\n";
  }
  if (count < bytes.size()) {
    m_part = Part::End;
  }
  return true;
}

bool MimeStream::fill() {
  m_block.clear();
  m_next = 0;
  switch (m_part) {
  case Part::Head:
    m_block = m_head;
    m_part = m_file.isOpen() ? Part::Attachment : Part::Done;
    return true;
  case Part::Attachment:
    return fillFromFile();
  case Part::End:
    m_block = m_end;
    m_part = Part::Done;
    return true;
  case Part::Done:
    break;
  }
  return true;
}

qint64 MimeStream::read(char* to, qint64 most) {
  while (m_next >= m_block.size() && m_part != Part::Done) {
    if (!fill()) {
      return -1;
    }
  }
  const qint64 count = std::min<qint64>(most, m_block.size() - m_next);
  std::memcpy(to, m_block.constData() + m_next, static_cast<std::size_t>(count));
  m_next += count;
  return count;
}

} // namespace folivex
