#include "platform/Paths.h"
#include "platform/TextFile.h"

#include <QFileInfo>

#include <algorithm>

namespace folivex::platform {

namespace {

constexpr qsizetype bufferSize = 64LL * 1024;
constexpr const char byteOrderMark[] = "\xEF\xBB\xBF";

/// The file that is to be replaced: what a link leads to, so that the link stays.
QString linkTarget(const QString& path) {
  const QFileInfo info(path);
  if (!info.isSymLink()) {
    return path;
  }
  return info.exists() ? info.canonicalFilePath() : info.symLinkTarget();
}

bool mayBeReplaced(const QString& path, FileAccess access, FileFailure& failure) {
  const QFileInfo info(path);
  if (info.exists() && !info.isFile()) {
    failure = {FileError::Refused, QStringLiteral("it is no ordinary file")};
    return false;
  }
  if (access == FileAccess::Private && !isTrustedPrivateFile(path)) {
    failure = {FileError::Refused, QStringLiteral("it is a link or belongs to another user")};
    return false;
  }
  if (info.exists() && !info.isWritable()) {
    failure = {FileError::Failed, QStringLiteral("Permission denied")};
    return false;
  }
  return true;
}

} // namespace

struct TextWriter::State {
  QFile inPlace;
  Replacement replacement;
  bool replaces = false; ///< which of the two is written
  QByteArray buffer;
  qint64 flushed = 0; ///< bytes of the file before the buffer
  QByteArray ending;  ///< stands behind them
  bool open = false;
  bool null = false;
  bool plain = false;
  FileFailure failure;

  QFile& file() { return replaces ? replacement.file() : inPlace; }

  bool sound() const { return failure.kind == FileError::None; }

  bool fail(const QString& text) {
    failure = {FileError::Failed, text};
    return false;
  }

  void begin() {
    open = true;
    buffer = plain ? QByteArray() : QByteArray(byteOrderMark);
  }

  QByteArray onDisk(QStringView text) const {
    QString written = text.toString();
    if (!plain) {
      written.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
    }
    return written.toUtf8();
  }

  bool flushBuffer() {
    const QByteArray bytes = buffer.isEmpty() ? QByteArray() : buffer + ending;
    if (!ending.isEmpty() && sound() && !file().seek(flushed)) {
      fail(file().errorString());
    }
    qsizetype done = 0;
    while (sound() && done < bytes.size()) {
      const qint64 count = file().write(bytes.constData() + done, bytes.size() - done);
      if (count <= 0) {
        fail(file().errorString());
        break;
      }
      done += count;
    }
    flushed += std::min(done, buffer.size());
    buffer.clear();
    return sound();
  }

  /// Whole, in its place, and without the ending.
  void settle() {
    flushBuffer();
    if (!ending.isEmpty() && sound() && !file().resize(flushed)) {
      fail(file().errorString());
    }
    if (!replaces) {
      inPlace.close();
    } else if (!sound() || !replacement.keep(failure)) {
      replacement.drop();
    }
  }
};

TextWriter::TextWriter() : m_state(std::make_unique<State>()) {}

TextWriter::~TextWriter() {
  abandon();
}

bool TextWriter::open(const QString& path, FileAccess access) {
  abandon();
  m_state = std::make_unique<State>();
  m_state->null = isNullDevice(path);
  if (m_state->null) {
    m_state->open = true;
    return true;
  }
  if (!openForWriting(m_state->inPlace, path, access, m_state->failure)) {
    return false;
  }
  m_state->begin();
  return true;
}

bool TextWriter::openReplacement(const QString& path, FileAccess access, Form form) {
  if (isNullDevice(path)) {
    return open(path, access);
  }
  abandon();
  m_state = std::make_unique<State>();
  m_state->plain = form == Form::Plain;
  const QString name = withoutTrailingBlanks(path);
  const QString target = access == FileAccess::Private ? name : linkTarget(name);
  if (!mayBeReplaced(target, access, m_state->failure) ||
      !m_state->replacement.open(target, access, m_state->failure)) {
    return false;
  }
  m_state->replaces = true;
  m_state->begin();
  return true;
}

bool TextWriter::isOpen() const {
  return m_state->open;
}

qint64 TextWriter::write(QStringView text) {
  if (!m_state->open || !m_state->sound()) {
    return -1;
  }
  if (m_state->null) {
    return text.size();
  }
  m_state->buffer += m_state->onDisk(text);
  if (m_state->buffer.size() >= bufferSize && !m_state->flushBuffer()) {
    return -1;
  }
  return text.size();
}

qint64 TextWriter::position() const {
  return m_state->flushed + m_state->buffer.size();
}

bool TextWriter::truncateTo(qint64 position) {
  State& state = *m_state;
  if (!state.open || !state.sound() || position < 0 || position > this->position()) {
    return false;
  }
  if (position >= state.flushed) {
    state.buffer.truncate(position - state.flushed);
    return true;
  }
  state.buffer.clear();
  if (!state.file().resize(position) || !state.file().seek(position)) {
    return state.fail(state.file().errorString());
  }
  state.flushed = position;
  return true;
}

void TextWriter::setEnding(QStringView text) {
  m_state->ending = m_state->onDisk(text);
}

bool TextWriter::flush() {
  return m_state->open && m_state->sound() && (m_state->null || m_state->flushBuffer());
}

bool TextWriter::close() {
  State& state = *m_state;
  if (state.open && !state.null) {
    state.settle();
  }
  state.open = false;
  return state.sound();
}

void TextWriter::abandon() {
  if (!m_state->open || !m_state->replaces) {
    // Where nothing can be taken back, all that was written stays.
    static_cast<void>(close());
    return;
  }
  m_state->replacement.drop();
  m_state->open = false;
}

QString TextWriter::errorText() const {
  return m_state->failure.text;
}

} // namespace folivex::platform
