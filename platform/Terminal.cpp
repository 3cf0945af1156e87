#include "platform/Terminal.h"

#include "platform/RawText.h"

#include <QFile>

#include <QtGlobal>

#if defined(Q_OS_WIN)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace folivex::platform {

bool isTerminal(std::FILE* stream) {
#if defined(Q_OS_WIN)
  return _isatty(_fileno(stream)) != 0;
#else
  return isatty(fileno(stream)) != 0;
#endif
}

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
