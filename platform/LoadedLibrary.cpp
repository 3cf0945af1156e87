#include "platform/LoadedLibrary.h"

#include <cerrno>

namespace folivex::platform {

namespace {

/// Empty when the library's operation `operation` returns `expected`.
QString interfaceVersionProblem(DynamicLibrary& library, const char* operation, int expected) {
  const Operation<int()> version(library, operation);
  if (!version.isThere()) {
    return QStringLiteral("the library does not tell its interface version");
  }
  if (const int found = version(); found != expected) {
    return QStringLiteral("the library has interface version %1, version %2 is needed")
        .arg(found)
        .arg(expected);
  }
  return {};
}

} // namespace

LoadedLibrary::LoadedLibrary(const QString& baseName, const char* versionOperation,
                             int expectedVersion) {
  int code = 0;
  if (!m_library.load(baseName)) {
    code = m_library.errorCode();
    errorDetail = m_library.errorText();
  } else {
    errorDetail = interfaceVersionProblem(m_library, versionOperation, expectedVersion);
    code = errorDetail.isEmpty() ? 0 : ENOEXEC;
  }
  loaded = errorDetail.isEmpty() && code == 0;
  if (!loaded) {
    m_library.unload();
    error = QStringLiteral("Unable to open %1.dll - error: %2").arg(baseName).arg(code);
  }
}

} // namespace folivex::platform
