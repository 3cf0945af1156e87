#include "platform/ProgramHelp.h"

#include <cstdio>

namespace folivex::platform {

bool tellsOfItself(const QStringList& arguments, const char* help, const char* version) {
  const QString asked = arguments.size() == 2 ? arguments[1] : QString();
  if (asked == QLatin1String("--help")) {
    std::fputs(help, stdout);
    return true;
  }
  if (asked == QLatin1String("--version")) {
    const QString name = QString::fromLatin1(help).section(QLatin1Char(' '), 0, 0);
    std::printf("%s %s\n", qPrintable(name), version);
    return true;
  }
  return false;
}

} // namespace folivex::platform
