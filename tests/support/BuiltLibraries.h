// loadBuiltLibraries: the libraries of this build for a program that does not stand beside them.
#pragma once

#include <QLibrary>
#include <QString>

namespace folivex::test {

/// The libraries are looked for beside the running program, which a test is not; but one that is
/// loaded already is found by its name alone. Returns what stood in the way, or nothing.
inline QString loadBuiltLibraries() {
  QString problem;
  for (const char* name : {"GlyphrunU", "CleftorU", "MelderU"}) {
#ifdef Q_OS_WIN
    QLibrary file(QStringLiteral(FOLIVEX_BIN_DIR "/%1.dll").arg(QLatin1String(name)));
#else
    QLibrary file(QStringLiteral(FOLIVEX_BIN_DIR "/lib%1.so").arg(QLatin1String(name)));
#endif
    if (!file.load()) {
      problem += file.errorString();
    }
  }
  return problem;
}

} // namespace folivex::test
