#include "mail/MimeMail.h"

#include "mail/MailAddress.h"
#include "mail/MailHeader.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QUuid>

#include <algorithm>

namespace folivex {

namespace {

QByteArray freshMessageId(const QString& sender) {
  const QString domain = addressForServer(sender).section(u'@', -1);
  return QUuid::createUuid().toByteArray(QUuid::WithoutBraces) + '@' +
         (domain.startsWith(u'[') ? "localhost" : domain.toLatin1());
}

QByteArray bodyBytes(QString body) {
  static const QRegularExpression lineEnd(QStringLiteral("\r\n|\r|\n"));
  body.replace(lineEnd, QStringLiteral("\r\n"));
  return (body.endsWith(u'\n') ? body : body + QStringLiteral("\r\n")).toUtf8();
}

/// ASCII that every server hands on as it is: no long line, no blank at a line's end (servers cut
/// them) and no dot at its start (some mistake it for the end of the mail).
bool passesUnencoded(const QByteArray& body) {
  static const QRegularExpression safe(
      QStringLiteral(R"(\A(?:(?!\.)[\t -~]{0,990}(?<![\t ])\r\n)*+\z)"));
  return safe.match(QString::fromUtf8(body)).hasMatch();
}

} // namespace

CurlList curlList(const QByteArrayList& lines) {
  CurlList list;
  for (const QByteArray& line : lines) {
    if (curl_slist* const longer = curl_slist_append(list.get(), line.constData())) {
      static_cast<void>(list.release());
      list.reset(longer);
    }
  }
  return list;
}

QByteArrayList mailHead(const MailMessage& message) {
  QByteArrayList head = {"Date: " +
                             QDateTime::currentDateTime().toString(Qt::RFC2822Date).toLatin1(),
                         addressHeader("From", message.senderName, message.sender),
                         addressHeader("To", {}, message.recipient)};
  const QStringList copies = copyAddresses(message.cc);
  if (!copies.isEmpty()) {
    head += addressListHeader("Cc", copies);
  }
  return head << textHeader("Subject", message.subject)
              << "Message-ID: <" + freshMessageId(message.sender) + '>' << "MIME-Version: 1.0";
}

bool MimeMail::open(CURL* handle, const MailMessage& message, const QByteArrayList& head) {
  platform::FileFailure failure;
  if (!message.attachmentPath.isEmpty() &&
      !platform::openForReading(m_file, message.attachmentPath, platform::FileAccess::Ordinary,
                                failure)) {
    return fail(QStringLiteral("the file %1 cannot be attached: %2")
                    .arg(message.attachmentPath, failure.text));
  }
  m_head = curlList(head);
  m_mime.reset(curl_mime_init(handle));
  m_bodyBytes.setData(bodyBytes(message.body));
  m_bodyBytes.open(QIODevice::ReadOnly);
  // Never quoted-printable: the library could not tell the size of the mail, which servers limit.
  addPart(m_body, m_bodyBytes,
          message.bodyKind == BodyKind::Html ? "text/html; charset=utf-8"
                                             : "text/plain; charset=utf-8",
          passesUnencoded(m_bodyBytes.data()) ? "7bit" : "base64");
  if (m_file.isOpen()) {
    const QString title =
        platform::fileTitle(platform::withoutTrailingBlanks(message.attachmentPath));
    const bool isPdf = title.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive);
    curl_mimepart* const part = addPart(
        m_attachment, m_file, isPdf ? "application/pdf" : "application/octet-stream", "base64");
    curl_mime_headers(part, curlList({attachmentHeader(title)}).release(), 1);
  }
  curl_easy_setopt(handle, CURLOPT_HTTPHEADER, m_head.get());
  curl_easy_setopt(handle, CURLOPT_MIMEPOST, m_mime.get());
  return true;
}

curl_mimepart* MimeMail::addPart(Source& source, QIODevice& device, const char* type,
                                 const char* encoding) {
  source.device = &device;
  source.left = device.size();
  curl_mimepart* const part = curl_mime_addpart(m_mime.get());
  curl_mime_data_cb(part, source.left, &MimeMail::onRead, nullptr, nullptr, &source);
  curl_mime_type(part, type);
  curl_mime_encoder(part, encoding);
  return part;
}

bool MimeMail::fail(const QString& text) {
  m_errorText = text;
  return false;
}

std::size_t MimeMail::onRead(char* to, std::size_t size, std::size_t count, void* source) {
  auto& [mail, device, left] = *static_cast<Source*>(source);
  const qint64 read = device->read(to, std::min(static_cast<qint64>(size * count), left));
  left -= std::max<qint64>(read, 0);
  if (read < 0) {
    mail->fail(QStringLiteral("the file %1 cannot be read: %2")
                   .arg(mail->m_file.fileName(), device->errorString()));
  } else if ((read == 0 && left > 0) || (left == 0 && !device->atEnd())) {
    mail->fail(QStringLiteral("the attached file changed while it was sent"));
  }
  return mail->m_errorText.isEmpty() ? static_cast<std::size_t>(read) : CURL_READFUNC_ABORT;
}

} // namespace folivex
