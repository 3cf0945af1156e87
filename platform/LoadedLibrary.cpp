#include "platform/LoadedLibrary.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <cerrno>

namespace folivex::platform {

namespace {

#if defined(Q_OS_WIN)
constexpr auto filePattern = "%1/%2.dll";
#else
constexpr auto filePattern = "%1/lib%2.so";
#endif

/// Empty when the library's operation `operation` returns `expected`.
QString interfaceVersionProblem(QLibrary& library, const char* operation, int expected) {
  const Operation<int()> version(library, operation);
  if (!version.isThere()) {
    return QStringLiteral("the library does not tell its interface version");
  }
  const int found = version();
  return found == expected
             ? QString()
             : QStringLiteral("the library has interface version %1, version %2 is needed")
                   .arg(found)
                   .arg(expected);
}

} // namespace

int loadLibrary(QLibrary& library, const QString& baseName) {
  const QString beside =
      QString::fromLatin1(filePattern).arg(QCoreApplication::applicationDirPath(), baseName);
  const bool isBeside = QFileInfo::exists(beside);
  library.setFileName(isBeside ? beside : baseName);
  // Everything is bound at once: a library that lacks a part of its own fails here and not in a
  // run.
  library.setLoadHints(QLibrary::ResolveAllSymbolsHint);
  errno = 0;
  if (library.load()) {
    return 0;
  }
  return errno != 0 ? errno : (isBeside ? ENOEXEC : ENOENT);
}

LoadedLibrary::LoadedLibrary(const QString& baseName, const char* versionOperation,
                             int expectedVersion) {
  int code = loadLibrary(m_library, baseName);
  if (code != 0) {
    errorDetail = m_library.errorString();
  } else {
    errorDetail = interfaceVersionProblem(m_library, versionOperation, expectedVersion);
    code = ENOEXEC;
  }
  loaded = errorDetail.isEmpty();
  if (!loaded) {
    m_library.unload();
    error = QStringLiteral("Unable to open %1.dll - error: %2").arg(baseName).arg(code);
  }
}

} // namespace folivex::platform
