// MimeMail: a mail as it goes over the line.
#pragma once

#include "mail/MailMessage.h"

#include <QBuffer>
#include <QByteArrayList>
#include <QFile>

#include <curl/curl.h>

#include <memory>

namespace folivex {

struct CurlListDeleter {
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
using CurlList = std::unique_ptr<curl_slist, CurlListDeleter>;
CurlList curlList(const QByteArrayList& lines);

/// The lines of the mail's head: the same however often it is tried. The message must have passed
/// messageProblem().
QByteArrayList mailHead(const MailMessage& message);

/// One way of a mail through the library, which takes the bytes bit by bit: of the attachment only
/// a block is in memory. Outlives the transfer and not the handle.
class MimeMail {
public:
  /// False when the attachment cannot be read, see errorText().
  [[nodiscard]] bool open(CURL* handle, const MailMessage& message, const QByteArrayList& head);

  /// The library has every byte of the body and the attachment.
  bool isAtEnd() const { return m_body.left == 0 && m_attachment.left == 0; }
  /// Why the mail never will be whole; empty as long as it may.
  QString errorText() const { return m_errorText; }

private:
  struct Source {
    MimeMail* mail;
    QIODevice* device = nullptr;
    qint64 left = 0;
  };
  static std::size_t onRead(char* to, std::size_t size, std::size_t count, void* source);
  curl_mimepart* addPart(Source& source, QIODevice& device, const char* type, const char* encoding);
  bool fail(const QString& text);

  struct MimeDeleter {
    void operator()(curl_mime* mime) const { curl_mime_free(mime); }
  };
  QBuffer m_bodyBytes;
  QFile m_file;
  Source m_body{this};
  Source m_attachment{this};
  CurlList m_head;
  std::unique_ptr<curl_mime, MimeDeleter> m_mime;
  QString m_errorText;
};

} // namespace folivex
