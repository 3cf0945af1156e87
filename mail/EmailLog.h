// EmailLog: the log file of sent mails, one line a mail.
#pragma once

#include <QDateTime>
#include <QFile>
#include <QHash>
#include <QString>

#include <cstdint>

namespace folivex {

/// The text of the last column for a mail that was taken over.
inline constexpr QLatin1String emailLogOk("OK");

/// Begins the error text of a mail whose fate is unknown.
inline constexpr QLatin1String emailLogUnknown("unknown: ");

/// The line "%-20s%-100s %-80s %s\r\n" in memory; on the disk its end is CR CR LF. Control
/// characters become blanks: one mail is one line.
QString emailLogLine(const QDateTime& time, const QString& recipient, const QString& file,
                     const QString& result);

/// Appends; UTF-8. A file that cannot be opened takes nothing and nobody is told. A new file is
/// made 0600. A last line that was torn by a crash is ended first, so that it spoils no other.
class EmailLog {
public:
  /// `path` may be empty: no log.
  explicit EmailLog(const QString& path);

  void writeSent(const QDateTime& time, const QString& recipient, const QString& file);
  /// The "error: " line, and the line of the mail with "Error - ".
  void writeFailed(const QDateTime& time, const QString& recipient, const QString& file,
                   const QString& errorText);
  bool isOpen() const { return m_file.isOpen(); }

private:
  void append(const QString& text);

  QFile m_file;
};

/// What a log says of the mails of a run that never came to its end, for going on after it. A line
/// counts only when it is whole, to its line end; of several about one mail the last one does.
///
/// The mail that was on its way when the machine died stands in no log: it may arrive twice.
class SentBefore {
public:
  enum class Told : std::uint8_t { Nothing, Sent, MayHaveArrived };

  /// A log that is missing or cannot be read says nothing.
  static SentBefore fromLog(const QString& path);

  /// What became of sending `file` to `recipient` since it was made: a line older than `fileTime`
  /// (the time of the file's last change) tells of another file of that name.
  Told told(const QString& recipient, const QString& file, const QDateTime& fileTime) const;
  bool isEmpty() const { return m_mails.isEmpty(); }

private:
  struct Mail {
    QDateTime time;
    Told told = Told::Nothing;
  };
  void readLine(const QByteArray& bytes);

  QHash<QString, Mail> m_mails; ///< by recipient and file as a line shows them
};

} // namespace folivex
