#include "platform/RawText.h"

#include <QDir>

#include <algorithm>
#include <string>

#if defined(Q_OS_WIN)
#include <windows.h>
#endif

namespace folivex::platform {

namespace {

constexpr char16_t rawBase = 0xDC00;

bool isRaw(QChar c) {
  return c.unicode() >= rawBase + 0x80 && c.unicode() <= rawBase + 0xFF;
}

/// Bytes of the character that begins with this one.
qsizetype lengthOf(unsigned char lead) {
  return lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

QString asRawText(const QByteArray& bytes) {
  QString text = QString::fromUtf8(bytes);
  if (text.toUtf8() == bytes) {
    return text;
  }
  text.clear();
  for (qsizetype i = 0; i < bytes.size();) {
    const auto lead = static_cast<unsigned char>(bytes[i]);
    const QByteArray one = bytes.mid(i, lengthOf(lead));
    if (const QString character = QString::fromUtf8(one); character.toUtf8() == one) {
      text += character;
      i += one.size();
    } else {
      text += QChar(static_cast<char16_t>(rawBase + lead));
      ++i;
    }
  }
  return text;
}

[[maybe_unused]] QString asRawText(const std::string& name) {
  return asRawText(QByteArray::fromStdString(name));
}
[[maybe_unused]] QString asRawText(const std::wstring& name) {
  return QString::fromStdWString(name);
}

/// Position of the first such half at `from` or behind it; the text's length when there is none.
qsizetype nextRaw(const QString& text, qsizetype from) {
  for (qsizetype i = from; i < text.size(); ++i) {
    if (text[i].isHighSurrogate()) {
      ++i; // the other half is no byte
    } else if (isRaw(text[i])) {
      return i;
    }
  }
  return text.size();
}

} // namespace

QString rawText(const std::filesystem::path::string_type& name) {
  return asRawText(name);
}

QString rawArgument(const char* argument) {
#if defined(Q_OS_WIN)
  return QString::fromLocal8Bit(argument);
#else
  return asRawText(QByteArray(argument));
#endif
}

QString wholeCommandLine() {
#if defined(Q_OS_WIN)
  return QString::fromWCharArray(GetCommandLineW());
#else
  return {};
#endif
}

bool hasRawBytes(const QString& text) {
  return nextRaw(text, 0) < text.size();
}

QByteArray rawBytes(const QString& text) {
  QByteArray bytes;
  for (qsizetype i = 0; i < text.size();) {
    const qsizetype next = nextRaw(text, i);
    bytes += text.mid(i, next - i).toUtf8();
    if (next < text.size()) {
      bytes += static_cast<char>(text[next].unicode() - rawBase);
    }
    i = next + 1;
  }
  return bytes;
}

QString absoluteRawPath(const QString& path) {
  if (QDir::isAbsolutePath(path)) {
    return QDir::cleanPath(path);
  }
  std::error_code ignored; // then it stays relative
  const QString folder = rawText(std::filesystem::current_path(ignored).native());
  return QDir::cleanPath(folder + u'/' + path);
}

} // namespace folivex::platform
