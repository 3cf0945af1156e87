#include "platform/Paths.h"
#include "platform/TextFile.h"

#include <QFileInfo>

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
  QFile file;
  QByteArray buffer;
  qint64 flushed = 0; ///< bytes of the file before the buffer
  QString target;     ///< where the file goes at the end; empty when it is written in place
  QString aside;      ///< where it is written until then
  bool open = false;
  bool null = false;
  bool plain = false;
  FileFailure failure;

  bool sound() const { return failure.kind == FileError::None; }

  bool fail(const QString& text) {
    failure = {FileError::Failed, text};
    return false;
  }

  void begin() {
    open = true;
    buffer = plain ? QByteArray() : QByteArray(byteOrderMark);
  }

  bool flushBuffer() {
    qsizetype done = 0;
    while (sound() && done < buffer.size()) {
      const qint64 count = file.write(buffer.constData() + done, buffer.size() - done);
      if (count <= 0) {
        fail(file.errorString());
        break;
      }
      done += count;
    }
    flushed += done;
    buffer.clear();
    return sound();
  }

  /// Puts the finished file into its place, or takes away what was written beside it.
  void settle() {
    if (sound() && syncToDisk(file, failure)) {
      file.close();
      if (replaceFile(aside, target, failure)) {
        return;
      }
    }
    discard();
  }

  void discard() {
    file.close();
    QFile::remove(aside);
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
  if (!openForWriting(m_state->file, path, access, m_state->failure)) {
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
  m_state->target = access == FileAccess::Private ? name : linkTarget(name);
  if (!mayBeReplaced(m_state->target, access, m_state->failure)) {
    return false;
  }
  m_state->aside = openAside(m_state->file, m_state->target, access, m_state->failure);
  if (m_state->aside.isEmpty()) {
    return false;
  }
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
  QString onDisk = text.toString();
  if (!m_state->plain) {
    onDisk.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
  }
  m_state->buffer += onDisk.toUtf8();
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
  if (!state.file.resize(position) || !state.file.seek(position)) {
    return state.fail(state.file.errorString());
  }
  state.flushed = position;
  return true;
}

bool TextWriter::flush() {
  return m_state->open && m_state->sound() && (m_state->null || m_state->flushBuffer());
}

bool TextWriter::close() {
  State& state = *m_state;
  if (state.open && !state.null) {
    state.flushBuffer();
    if (!state.target.isEmpty()) {
      state.settle();
    } else {
      state.file.close();
    }
  }
  state.open = false;
  return state.sound();
}

void TextWriter::abandon() {
  if (!m_state->open || m_state->target.isEmpty()) {
    // Where nothing can be taken back, all that was written stays.
    static_cast<void>(close());
    return;
  }
  m_state->discard();
  m_state->open = false;
}

QString TextWriter::errorText() const {
  return m_state->failure.text;
}

} // namespace folivex::platform
