// OwnFolder: a folder of the test's own.
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace folivex::test {

/// What the test writes, what it remembers, and in "tmp" its temporary files.
class OwnFolder : public ::testing::Test {
protected:
  OwnFolder() {
    QDir(m_folder.path()).mkdir(QStringLiteral("tmp"));
    qputenv(temporaryVariable, QFile::encodeName(at("tmp")));
  }
  ~OwnFolder() override { qputenv(temporaryVariable, m_temporaryBefore); }
  QString at(const QString& name) const { return m_folder.filePath(name); }

#ifdef Q_OS_WIN
  static constexpr const char* temporaryVariable = "TMP";
#else
  static constexpr const char* temporaryVariable = "TMPDIR";
#endif
  QTemporaryDir m_folder;
  QByteArray m_temporaryBefore = qgetenv(temporaryVariable);
};

} // namespace folivex::test
