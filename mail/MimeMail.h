// MimeMail: a mail as it goes over the line.
#pragma once

#include "mail/MailMessage.h"

#include <QBuffer>
#include <QByteArrayList>

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

/// One way of a mail through the library, which takes the bytes bit by bit. The attachment is read
/// once, whole, so that the bytes that were compared are those that go out. Outlives the transfer
/// and not the handle.
class MimeMail {
public:
  /// False when the attachment cannot be read or is not the one that was meant: see errorText() and
  /// isOtherFile().
  [[nodiscard]] bool open(CURL* handle, const MailMessage& message, const QByteArrayList& head);

  /// The library has every byte of the body and the attachment.
  bool isAtEnd() const { return m_body.left == 0 && m_attachment.left == 0; }
  QString errorText() const { return m_errorText; }
  /// The file holds other bytes than those that the message names.
  bool isOtherFile() const { return m_isOtherFile; }

private:
  struct Source {
    QBuffer bytes;
    qint64 left = 0;
  };
  static std::size_t onRead(char* to, std::size_t size, std::size_t count, void* source);
  curl_mimepart* addPart(Source& source, const char* type, const char* encoding);
  bool readAttachment(const MailMessage& message);

  struct MimeDeleter {
    void operator()(curl_mime* mime) const { curl_mime_free(mime); }
  };
  Source m_body;
  Source m_attachment;
  CurlList m_head;
  std::unique_ptr<curl_mime, MimeDeleter> m_mime;
  QString m_errorText;
  bool m_isOtherFile = false;
};

} // namespace folivex
