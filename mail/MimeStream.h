// MimeStream: a mail as it goes over the line.
#pragma once

#include "mail/MailMessage.h"

#include <QByteArray>
#include <QDateTime>
#include <QFile>
#include <QStringList>

namespace folivex {

/// Why the message cannot be sent whoever carries it: a sender, recipient or copy address that is
/// none. Empty when there is nothing.
QString messageProblem(const MailMessage& message);

/// The copy addresses of MailMessage::cc, apart.
QStringList copyAddresses(const QString& cc);

/// What makes one mail itself, the same however often it is tried.
struct MailIdentity {
  QDateTime time;
  QByteArray messageId; ///< without its brackets
  QByteArray boundary;

  static MailIdentity fresh(const MailMessage& message);
};

/// Gives the bytes of a mail bit by bit; of the attachment only a block is in memory.
class MimeStream {
public:
  /// The message must have passed messageProblem(). False when the attachment cannot be read.
  [[nodiscard]] bool open(const MailMessage& message, const MailIdentity& identity);

  /// Bytes of the whole mail.
  qint64 size() const { return m_size; }
  /// Up to `most` bytes to `to`. 0: the mail is whole. -1: it never will be, see errorText().
  qint64 read(char* to, qint64 most);
  /// Every byte was given away.
  bool isAtEnd() const { return m_part == Part::Done && m_next >= m_block.size(); }
  QString errorText() const { return m_errorText; }

private:
  enum class Part { Head, Attachment, End, Done };
  bool fill();
  bool fillFromFile();
  bool fail(const QString& text);

  QFile m_file;
  QString m_path;
  qint64 m_fileSize = 0;
  qint64 m_fileRead = 0;
  QByteArray m_head; ///< up to the attachment
  QByteArray m_end;
  QByteArray m_block;
  qsizetype m_next = 0; ///< in m_block
  Part m_part = Part::Head;
  qint64 m_size = 0;
  QString m_errorText;
};

} // namespace folivex
