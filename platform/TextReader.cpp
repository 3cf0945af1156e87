#include "platform/TextFile.h"

#include <algorithm>
#include <array>

namespace folivex::platform {

namespace {

constexpr qint64 blockSize = 16LL * 1024;
/// CR CR LF, the longest line end.
constexpr qsizetype longestLineEnd = 3;

bool isLineEnd(QChar c) {
  return c == QLatin1Char('\r') || c == QLatin1Char('\n');
}

} // namespace

QStringDecoder olderTextDecoder() {
  QStringDecoder decoder("windows-1252");
  // Qt knows that name from ICU only; without it, its builds for Windows have the system's own.
  return decoder.isValid() ? std::move(decoder) : QStringDecoder(QStringConverter::System);
}

bool TextReader::fail(FileError kind, const QString& text) {
  m_failure = {kind, text};
  m_atEnd = true;
  return false;
}

bool TextReader::open(const QString& path, FileAccess access) {
  auto file = std::make_unique<QFile>();
  FileFailure failure;
  if (!openForReading(*file, path, access, failure)) {
    m_device.reset();
    m_text.clear();
    m_next = 0;
    return fail(failure.kind, failure.text);
  }
  return open(std::move(file));
}

bool TextReader::open(std::unique_ptr<QIODevice> device) {
  m_device = std::move(device);
  m_text.clear();
  m_next = 0;
  m_failure = {};
  if (m_device->size() > maxFileSize) {
    return fail(FileError::Refused, QStringLiteral("it is too large to be such a file"));
  }
  const qint64 start = detectStart();
  if (m_failure.kind != FileError::None) {
    return false;
  }
  if (!m_device->seek(start)) {
    return fail(FileError::Failed, m_device->errorString());
  }
  m_atEnd = false;
  return true;
}

qint64 TextReader::detectStart() {
  struct Mark {
    QByteArrayView bytes;
    QStringConverter::Encoding encoding;
    qint64 start;
  };
  static const std::array<Mark, 4> marks = {{{"\xEF\xBB\xBF", QStringConverter::Utf8, 3},
                                             {"\xFF\xFE", QStringConverter::Utf16LE, 2},
                                             {"\xFE\xFF", QStringConverter::Utf16BE, 2},
                                             {"UNICODE", QStringConverter::Utf8, 0}}};
  const QByteArray head = m_device->read(blockSize);
  for (const Mark& mark : marks) {
    if (head.startsWith(mark.bytes)) {
      m_decoder = QStringDecoder(mark.encoding);
      return mark.start;
    }
  }
  m_decoder = wholeFileIsUtf8() ? QStringDecoder(QStringConverter::Utf8) : olderTextDecoder();
  return 0;
}

bool TextReader::wholeFileIsUtf8() {
  m_device->seek(0);
  QStringDecoder decoder(QStringConverter::Utf8);
  QByteArray block(blockSize, Qt::Uninitialized);
  for (;;) {
    const qint64 count = m_device->read(block.data(), block.size());
    if (count < 0) {
      return fail(FileError::Failed, m_device->errorString());
    }
    // A character that the file's end cuts short shows only when something follows it.
    const QByteArrayView bytes = count > 0 ? QByteArrayView(block).first(count) : "\n";
    const QString decoded = decoder(bytes);
    if (decoder.hasError()) {
      return false;
    }
    if (count == 0) {
      return true;
    }
  }
}

void TextReader::fill() {
  m_text.remove(0, m_next);
  m_next = 0;
  QByteArray block(blockSize, Qt::Uninitialized);
  const qint64 count = m_device->read(block.data(), block.size());
  if (count < 0) {
    fail(FileError::Failed, m_device->errorString());
    return;
  }
  m_atEnd = count == 0;
  m_text += m_decoder(QByteArrayView(block).first(count));
}

void TextReader::skipLineEnd() {
  const QStringView rest = QStringView(m_text).mid(m_next, longestLineEnd);
  for (const QLatin1StringView end : {QLatin1StringView("\r\r\n"), QLatin1StringView("\r\n")}) {
    if (rest.startsWith(end)) {
      m_next += end.size();
      return;
    }
  }
  ++m_next;
}

bool TextReader::readLine(QString& line, int limit) {
  const qsizetype most = std::max(limit, 1);
  while (!m_atEnd && m_text.size() - m_next < most + longestLineEnd) {
    fill();
  }
  const QStringView ahead = QStringView(m_text).mid(m_next, most + 1);
  if (ahead.isEmpty()) {
    line.clear();
    return false;
  }
  const auto* const end = std::find_if(ahead.begin(), ahead.end(), isLineEnd);
  qsizetype length = end - ahead.begin();
  const bool whole = length <= most;
  if (!whole) {
    const bool splitsPair = ahead[most - 1].isHighSurrogate() && ahead[most].isLowSurrogate();
    length = splitsPair && most > 1 ? most - 1 : most;
  }
  line = ahead.first(length).toString();
  m_next += length;
  m_isLineEnded = whole && end != ahead.end();
  if (m_isLineEnded) {
    skipLineEnd();
  }
  const qsizetype nul = line.indexOf(QChar(0));
  if (nul >= 0) {
    line.truncate(nul);
  }
  if (!line.isValidUtf16()) {
    // The decoder lets halves of characters through, which no other encoding can hold.
    const QList<uint> characters = line.toUcs4();
    line = QString::fromUcs4(reinterpret_cast<const char32_t*>(characters.constData()),
                             characters.size());
  }
  return true;
}

} // namespace folivex::platform
