// Workplace: the real program as a process, alone in a folder of its own.
#pragma once

#include "tests/support/Programs.h"

#include <QTemporaryDir>

namespace folivex::test {

/// A folder to work in, with a home and a temporary folder beside it, so that no setting of the
/// person who runs the tests comes in or goes out. There is no display.
class Workplace {
public:
  Workplace() {
    for (const char* name : {"work", "home", "tmp"}) {
      QDir(m_folder.path()).mkdir(QLatin1String(name));
    }
    m_environment.insert(QStringLiteral("PATH"), qEnvironmentVariable("PATH"));
    m_environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    m_environment.insert(QStringLiteral("HOME"), m_folder.filePath(QStringLiteral("home")));
    m_environment.insert(QStringLiteral("TMPDIR"), temporary());
    for (const char* name : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS"}) {
      if (qEnvironmentVariableIsSet(name)) {
        m_environment.insert(QLatin1String(name), qEnvironmentVariable(name));
      }
    }
  }

  /// Of the folder "work", where the program is started.
  QString at(const QString& name) const {
    return m_folder.filePath(QStringLiteral("work/") + name);
  }
  QString work() const { return m_folder.filePath(QStringLiteral("work")); }
  QString temporary() const { return m_folder.filePath(QStringLiteral("tmp")); }
  QString all() const { return m_folder.path(); }
  QProcessEnvironment& environment() { return m_environment; }

  ProgramRun run(const QStringList& arguments,
                 const QString& program = QStringLiteral(FOLIVEX_BIN_DIR "/folivex")) const {
    return runProgram(program, arguments, m_environment, work());
  }

private:
  QTemporaryDir m_folder;
  QProcessEnvironment m_environment;
};

} // namespace folivex::test
