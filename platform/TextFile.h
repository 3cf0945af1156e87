// TextFile: the one format of the program's text files, written and read.
#pragma once

#include "platform/FileSystem.h"

#include <QIODevice>
#include <QString>
#include <QStringDecoder>
#include <QStringView>

#include <memory>

namespace folivex::platform {

/// Writes a text file: UTF-8 with a byte-order mark in front, every LF as CR LF. The program's line
/// end is "\r\n" and so reaches the disk as CR CR LF; other programs count on that.
///
/// Writes are buffered. A write that fails is remembered: every later operation fails too, and
/// errorText() keeps the first reason. Only close() or flush() returning true says that all is on
/// its way to the disk. The null device ("nul", see isNullDevice()) takes everything and keeps
/// nothing.
class TextWriter {
public:
  /// Plain: no mark, and an LF stays one.
  enum class Form { Own, Plain };

  TextWriter();
  /// Closes; drops what openReplacement() began. Who wants to know how it went calls close() first.
  ~TextWriter();
  TextWriter(const TextWriter&) = delete;
  TextWriter& operator=(const TextWriter&) = delete;

  /// Makes `path`, or empties it, and writes the mark. A file open before is closed.
  [[nodiscard]] bool open(const QString& path, FileAccess access = FileAccess::Ordinary);

  /// Like open(), but writes beside `path`; close() puts the new file into place. Until then, and
  /// when anything fails, the old file stays as it is and nothing else is left behind. A link is
  /// followed and stays a link, unless the access is private. A file that could not be written in
  /// place (no permission, no ordinary file) is not replaced either.
  [[nodiscard]] bool openReplacement(const QString& path, FileAccess access = FileAccess::Ordinary,
                                     Form form = Form::Own);

  bool isOpen() const;

  /// Returns the number of UTF-16 units of `text` (CRs that are added do not count), or -1.
  qint64 write(QStringView text);

  /// Bytes in the file so far, buffered ones and the mark included. 0 for the null device.
  qint64 position() const;

  /// Cuts the file back to a position() of before, where writing goes on.
  bool truncateTo(qint64 position);

  bool flush();

  /// Stands at the end of the open file whenever something was written, and goes when the file is
  /// closed: where it is found, the writer was killed.
  void setEnding(QStringView text);

  /// Flushes and closes; false when anything went wrong since open. True when nothing is open.
  [[nodiscard]] bool close();

  /// Drops what openReplacement() began; the old file stays. After open() the same as close().
  void abandon();

  /// Why the last open failed, or the first write after it; empty when nothing did.
  QString errorText() const;

private:
  struct State;
  std::unique_ptr<State> m_state; ///< never null
};

/// For the 8-bit text of older programs: Windows-1252, of which no byte is refused.
QStringDecoder olderTextDecoder();

/// Reads a text file line by line, in bounded memory whatever the file holds.
///
/// Encoding: a byte-order mark is honoured (UTF-8, UTF-16 of either order) and not handed on.
/// Without one, a file whose first line begins with "UNICODE" is UTF-8; any other is 8-bit text in
/// the system code page: UTF-8 if the whole file is valid as such, else Windows-1252. What cannot
/// be decoded becomes U+FFFD.
///
/// A line ends at LF or CR; up to two CRs in front of an LF belong to it, so CR LF and the CR CR LF
/// of TextWriter are one line end. A U+0000 ends the text of its line.
class TextReader {
public:
  /// More bytes than this are no list or setup of anybody's: the file is refused.
  static constexpr qint64 maxFileSize = 256LL * 1024 * 1024;
  /// Piece length of the setup file and of the lists.
  static constexpr int maxLine = 4096;

  [[nodiscard]] bool open(const QString& path, FileAccess access = FileAccess::Ordinary);
  /// Reads from a device that is open for reading and can be positioned.
  [[nodiscard]] bool open(std::unique_ptr<QIODevice> device);

  /// The next line without its line end, empty lines too. A line of more than `limit` UTF-16 units
  /// comes in pieces of that length, one a call (one unit less rather than half a character).
  /// False at the end of the file or when reading fails: see errorText().
  bool readLine(QString& line, int limit = maxLine);

  /// Whether the line that was read last has a line end behind it, and is no piece of a longer one.
  bool isLineEnded() const { return m_isLineEnded; }

  /// Why the last open or a read failed; empty when nothing did.
  QString errorText() const { return m_failure.text; }
  FileError error() const { return m_failure.kind; }

private:
  /// Settles the encoding; returns where the text begins, behind a byte-order mark.
  qint64 detectStart();
  bool wholeFileIsUtf8();
  void fill();
  void skipLineEnd();
  bool fail(FileError kind, const QString& text);

  std::unique_ptr<QIODevice> m_device;
  QStringDecoder m_decoder;
  QString m_text; ///< decoded; from m_next on not yet handed out
  qsizetype m_next = 0;
  bool m_isLineEnded = false;
  bool m_atEnd = true; ///< nothing more to read from the device
  FileFailure m_failure;
};

} // namespace folivex::platform
