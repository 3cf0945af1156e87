// Programs: running a program to its end, and reading a PDF with one that is not ours.
#pragma once

#include "tests/support/Printing.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <sys/stat.h>

namespace folivex::test {

/// How a program ended. The limit is there against a hang alone.
struct ProgramRun {
  int exitCode = -999;
  bool ended = false; ///< by itself, neither killed nor crashed
  QByteArray out;
  QByteArray err;
};

inline constexpr int hangLimit = 600'000; // milliseconds: far more than a busy machine needs

/// Starts a program. On Windows those that are not of this build are the ones beneath Wine.
inline void startProgram(QProcess& process, const QString& program, const QStringList& arguments) {
#ifdef Q_OS_WIN
  if (!QFile::exists(program + QStringLiteral(".exe"))) {
    process.start(QStringLiteral(FOLIVEX_BIN_DIR "/../tests/beneath.exe"),
                  QStringList{program} + arguments);
    return;
  }
#endif
  process.start(program, arguments);
}

inline ProgramRun
runProgram(const QString& program, const QStringList& arguments,
           const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment(),
           const QString& folder = {}) {
  QProcess process;
  process.setProcessEnvironment(environment);
  if (!folder.isEmpty()) {
    process.setWorkingDirectory(folder);
  }
  process.setStandardInputFile(QProcess::nullDevice());
  startProgram(process, program, arguments);
  ProgramRun run;
  run.ended = process.waitForFinished(hangLimit) && process.exitStatus() == QProcess::NormalExit;
  if (process.state() != QProcess::NotRunning) {
    process.kill();
    process.waitForFinished();
  }
  run.exitCode = process.exitCode();
  run.out = process.readAllStandardOutput();
  run.err = process.readAllStandardError();
  return run;
}

/// The text of each page as poppler reads it, words joined by single blanks.
inline QStringList pageTexts(const QString& pdf, const QString& password = {}) {
  QStringList arguments{QStringLiteral("-q"), QStringLiteral("-enc"), QStringLiteral("UTF-8")};
  if (!password.isEmpty()) {
    arguments << QStringLiteral("-upw") << password;
  }
  const ProgramRun run =
      runProgram(QStringLiteral("pdftotext"), arguments << pdf << QStringLiteral("-"));
  EXPECT_TRUE(run.ended && run.exitCode == 0) << pdf.toStdString() << ": " << run.err.toStdString();
  QStringList pages = QString::fromUtf8(run.out).split(QLatin1Char('\f'));
  pages.removeLast(); // nothing stands behind the last form feed
  for (QString& page : pages) {
    page = page.simplified();
  }
  return pages;
}

inline QByteArray contentOf(const QString& path) {
  QFile file(path);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
  return file.readAll();
}

inline void writeFile(const QString& path, const QByteArray& content) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
  ASSERT_EQ(file.write(content), content.size());
}

/// Permissions of the file at `path`, a link's own not followed; 0 when there is none.
inline unsigned modeOf(const QString& path) {
#ifdef Q_OS_WIN
  return static_cast<unsigned>(QFile::permissions(path).toInt()) & 0777U;
#else
  struct stat status {};
  return lstat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 0777U : 0U;
#endif
}

/// Names of all files below a folder, in alphabetical order, with the folders they stand in.
inline QStringList filesBelow(const QString& folder) {
  QStringList names;
  const QDir dir(folder);
  for (const QFileInfo& entry :
       dir.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)) {
    if (entry.isDir() && !entry.isSymLink()) {
      for (const QString& name : filesBelow(entry.filePath())) {
        names += entry.fileName() + QLatin1Char('/') + name;
      }
    } else {
      names += entry.fileName();
    }
  }
  names.sort();
  return names;
}

} // namespace folivex::test
