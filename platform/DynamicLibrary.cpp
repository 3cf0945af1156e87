#include "platform/DynamicLibrary.h"

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

} // namespace

DynamicLibrary::~DynamicLibrary() {
  unload();
}

bool DynamicLibrary::load(const QString& baseName) {
  const QString beside =
      QString::fromLatin1(filePattern).arg(QCoreApplication::applicationDirPath(), baseName);
  const bool isBeside = QFileInfo::exists(beside);
  m_library.setFileName(isBeside ? beside : baseName);
  // Everything is bound at once: a library that lacks a part of its own fails here and not in a
  // run.
  m_library.setLoadHints(QLibrary::ResolveAllSymbolsHint);
  errno = 0;
  if (m_library.load()) {
    return true;
  }
  m_errorText = m_library.errorString();
  m_errorCode = errno != 0 ? errno : (isBeside ? ENOEXEC : ENOENT);
  return false;
}

void DynamicLibrary::unload() {
  if (m_library.isLoaded()) {
    m_library.unload();
  }
}

QFunctionPointer DynamicLibrary::resolve(const char* operation) {
  return m_library.isLoaded() ? m_library.resolve(operation) : nullptr;
}

} // namespace folivex::platform
