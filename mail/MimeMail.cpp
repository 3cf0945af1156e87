#include "mail/MimeMail.h"

#include "mail/MailAddress.h"
#include "mail/MailHeader.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"

#include <QDateTime>
#include <QFile>
#include <QRegularExpression>
#include <QUuid>

namespace folivex {

namespace {

/// Servers draw the line at a tenth of it and less.
constexpr qint64 longestAttachment = 1024LL * 1024 * 1024;

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

bool MimeMail::readAttachment(const MailMessage& message) {
  QFile file;
  platform::FileFailure failure;
  if (!platform::openForReading(file, message.attachmentPath, platform::FileAccess::Ordinary,
                                failure)) {
    m_errorText = QStringLiteral("the file %1 cannot be attached: %2")
                      .arg(message.attachmentPath, failure.text);
    return false;
  }
  if (file.size() > longestAttachment) {
    m_errorText =
        QStringLiteral("the file %1 is larger than any server takes").arg(message.attachmentPath);
    return false;
  }
  m_attachment.bytes.setData(file.readAll());
  if (file.error() != QFileDevice::NoError) {
    m_errorText = QStringLiteral("the file %1 cannot be read: %2")
                      .arg(message.attachmentPath, file.errorString());
    return false;
  }
  const platform::FileDigest& meant = message.attachmentIdentity;
  m_isOtherFile =
      meant.isKnown() && meant != platform::FileDigest::ofBytes(m_attachment.bytes.data());
  if (m_isOtherFile) {
    m_errorText = QStringLiteral("the file %1 has changed since it was written: it is not sent "
                                 "unless a person accepts it in the list")
                      .arg(message.attachmentPath);
  }
  return !m_isOtherFile;
}

bool MimeMail::open(CURL* handle, const MailMessage& message, const QByteArrayList& head) {
  const bool attaches = !message.attachmentPath.isEmpty();
  if (attaches && !readAttachment(message)) {
    return false;
  }
  m_head = curlList(head);
  m_mime.reset(curl_mime_init(handle));
  m_body.bytes.setData(bodyBytes(message.body));
  // Never quoted-printable: the library could not tell the size of the mail, which servers limit.
  addPart(m_body,
          message.bodyKind == BodyKind::Html ? "text/html; charset=utf-8"
                                             : "text/plain; charset=utf-8",
          passesUnencoded(m_body.bytes.data()) ? "7bit" : "base64");
  if (attaches) {
    const QString title =
        platform::fileTitle(platform::withoutTrailingBlanks(message.attachmentPath));
    const bool isPdf = title.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive);
    curl_mimepart* const part =
        addPart(m_attachment, isPdf ? "application/pdf" : "application/octet-stream", "base64");
    curl_mime_headers(part, curlList({attachmentHeader(title)}).release(), 1);
  }
  curl_easy_setopt(handle, CURLOPT_HTTPHEADER, m_head.get());
  curl_easy_setopt(handle, CURLOPT_MIMEPOST, m_mime.get());
  return true;
}

curl_mimepart* MimeMail::addPart(Source& source, const char* type, const char* encoding) {
  source.bytes.open(QIODevice::ReadOnly);
  source.left = source.bytes.size();
  curl_mimepart* const part = curl_mime_addpart(m_mime.get());
  curl_mime_data_cb(part, source.left, &MimeMail::onRead, nullptr, nullptr, &source);
  curl_mime_type(part, type);
  curl_mime_encoder(part, encoding);
  return part;
}

std::size_t MimeMail::onRead(char* to, std::size_t size, std::size_t count, void* source) {
  auto& [bytes, left] = *static_cast<Source*>(source);
  const qint64 read = bytes.read(to, static_cast<qint64>(size * count));
  left -= read;
  return static_cast<std::size_t>(read);
}

} // namespace folivex
