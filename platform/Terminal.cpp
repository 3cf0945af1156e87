#include "platform/Terminal.h"

#include "platform/RawText.h"

#include <QFile>

#include <QtGlobal>

#if defined(Q_OS_WIN)
#include <io.h>
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace folivex::platform {

bool isTerminal(std::FILE* stream) {
#if defined(Q_OS_WIN)
  DWORD mode = 0; // the null device is no console, though it is one of characters
  const int descriptor = _fileno(stream);
  return descriptor >= 0 &&
         GetConsoleMode(reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)), &mode) != 0;
#else
  return isatty(fileno(stream)) != 0;
#endif
}

#if defined(Q_OS_WIN)

Utf8Console::Utf8Console() : m_before(GetConsoleOutputCP()) {
  SetConsoleOutputCP(CP_UTF8);
}

Utf8Console::~Utf8Console() {
  if (m_before != 0) {
    SetConsoleOutputCP(m_before);
  }
}

#else

Utf8Console::Utf8Console() = default;
Utf8Console::~Utf8Console() = default;

#endif

QByteArray terminalText(const QString& text) {
  QString shown;
  shown.reserve(text.size());
  for (const QChar c : hasRawBytes(text) ? QString::fromUtf8(QFile::encodeName(text)) : text) {
    if (c == QLatin1Char('\n') || c == QLatin1Char('\t')) {
      shown += c;
    } else if (c != QLatin1Char('\r')) {
      shown += c.category() == QChar::Other_Control ? QChar(QChar::ReplacementCharacter) : c;
    }
  }
  return shown.toUtf8();
}

bool hasDisplay() {
#if defined(Q_OS_WIN) || defined(Q_OS_MACOS)
  return true;
#else
  const QByteArray chosen = qgetenv("QT_QPA_PLATFORM");
  if (!chosen.isEmpty()) {
    return !chosen.startsWith("offscreen") && !chosen.startsWith("minimal");
  }
  return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
#endif
}

} // namespace folivex::platform
