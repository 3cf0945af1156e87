// EmailLog: the log file of sent mails, one line a mail.
#pragma once

#include <QDateTime>
#include <QFile>
#include <QString>

namespace folivex {

/// The text of the last column for a mail that was taken over.
inline constexpr QLatin1String emailLogOk("OK");

/// The same for a mail that a person got to send.
inline constexpr QLatin1String emailLogShown("shown, not sent");

/// Begins the error text of a mail whose fate is unknown.
inline constexpr QLatin1String emailLogUnknown("unknown: ");

/// The line "%-20s%-100s %-80s %s\r\n" in memory; on the disk its end is CR CR LF. Control
/// characters become blanks: one mail is one line.
QString emailLogLine(const QDateTime& time, const QString& recipient, const QString& file,
                     const QString& result);

/// For people: nothing reads it back. Appends; UTF-8. A file that cannot be opened or written takes
/// nothing and nobody is told. A new file is
/// made 0600. A last line that was torn by a crash is ended first, so that it spoils no other.
class EmailLog {
public:
  /// `path` may be empty: no log.
  explicit EmailLog(const QString& path);

  void write(const QDateTime& time, const QString& recipient, const QString& file,
             const QString& result);
  /// The "error: " line, and the line of the mail with "Error - ".
  void writeFailed(const QDateTime& time, const QString& recipient, const QString& file,
                   const QString& errorText);
  bool isOpen() const { return m_file.isOpen(); }

private:
  void append(const QString& text);

  QFile m_file;
};

} // namespace folivex
