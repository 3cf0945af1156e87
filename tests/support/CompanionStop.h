// CompanionStop: a companion program that is told to stop while other programs work for it.
#pragma once

#include "tests/support/Programs.h"

namespace folivex::test {

/// Programs that run in a folder, which may be gone meanwhile, or name it in their command line.
inline QStringList programsAt(const QString& folder) {
  QStringList found;
  for (const QString& entry : QDir("/proc").entryList(QDir::Dirs)) {
    QFile commandLine(QStringLiteral("/proc/%1/cmdline").arg(entry));
    const bool isNamed = commandLine.open(QFile::ReadOnly) &&
                         commandLine.readAll().contains(QFile::encodeName(folder));
    if (isNamed ||
        QFile::symLinkTarget(QStringLiteral("/proc/%1/cwd").arg(entry)).startsWith(folder)) {
      found += entry;
    }
  }
  return found;
}

/// Starts a companion program and tells it to stop once `busy` programs work for it in the folder
/// that it makes in `folder`. It ends as told, with none of them and nothing in `folder` left.
inline void expectStopLeavesNothing(const QString& program, const QStringList& arguments,
                                    const QString& folder, int busy) {
  const auto left = [&folder] {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                  QDir::NoDotAndDotDot);
  };
  QProcess process;
  process.start(program, arguments);
  ASSERT_TRUE(process.waitForStarted(-1));
  QString workFolder;
  while (workFolder.isEmpty() || programsAt(workFolder).size() < busy) {
    ASSERT_FALSE(process.waitForFinished(20)) << "it ended before it could be stopped";
    workFolder = left().isEmpty() ? QString() : folder + u'/' + left().value(0);
  }
  process.terminate();
  ASSERT_TRUE(process.waitForFinished(hangLimit));
  EXPECT_EQ(process.exitCode(), 143);
  EXPECT_EQ(left(), QStringList());
  EXPECT_EQ(programsAt(workFolder), QStringList());
}

} // namespace folivex::test
