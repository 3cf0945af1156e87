#include "engine/job/OutputFolder.h"

#include "platform/Paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>

namespace folivex {

namespace {

constexpr qsizetype shortestClearedPath = 5;

bool isWindowsReadOnly(const QFileInfo& file) {
#if defined(Q_OS_WIN)
  return !file.isWritable();
#else
  // Elsewhere the folder decides whether a file may be deleted.
  Q_UNUSED(file);
  return false;
#endif
}

/// What `keep` names, links followed.
QSet<QString> filesToKeep(const QStringList& keep) {
  QSet<QString> kept;
  for (const QString& path : keep) {
    kept.insert(QFileInfo(path).canonicalFilePath());
  }
  kept.remove(QString()); // of a link that leads nowhere
  return kept;
}

/// Links go like files, but one to a folder stays like a folder.
bool isCleared(const QFileInfo& entry, const QSet<QString>& kept) {
  return !entry.fileName().startsWith(QLatin1Char('.')) && !entry.isDir() &&
         !kept.contains(entry.canonicalFilePath());
}

QStringList namesIn(const QString& folder) {
  return QDir(folder).entryList(QDir::Files | QDir::System | QDir::Hidden, QDir::Unsorted);
}

} // namespace

bool isClearedWithFolder(const QString& folder, const QStringList& keep, const QString& path) {
  const QFileInfo file(path);
  return folder.size() >= shortestClearedPath && platform::isSameFile(folder, file.path()) &&
         isCleared(file, filesToKeep(keep));
}

QString clearOutputFolder(const QString& folder, const QStringList& keep) {
  if (folder.size() < shortestClearedPath) {
    return QStringLiteral("%1: the path is too short to be cleared").arg(folder);
  }
  const QSet<QString> kept = filesToKeep(keep);
  // The names are taken first: deleting while a folder is listed may skip entries.
  const QStringList names = namesIn(folder);
  for (const QString& name : names) {
    const QFileInfo file(QDir(folder), name);
    if (!isCleared(file, kept)) {
      continue;
    }
    QFile entry(file.filePath());
    if (isWindowsReadOnly(file)) {
      entry.setPermissions(entry.permissions() | QFile::WriteOwner | QFile::WriteUser);
    }
    if (!entry.remove()) {
      return QStringLiteral("%1: %2").arg(file.filePath(), entry.errorString());
    }
  }
  return {};
}

int filesClearedWithFolder(const QString& folder, const QStringList& keep) {
  if (folder.size() < shortestClearedPath) {
    return 0;
  }
  const QSet<QString> kept = filesToKeep(keep);
  const QStringList names = namesIn(folder);
  return static_cast<int>(std::ranges::count_if(
      names, [&](const QString& name) { return isCleared(QFileInfo(QDir(folder), name), kept); }));
}

QString folderToClear(const SplitSetup& setup) {
  const bool isNamed = !platform::withoutTrailingBlanks(setup.outputDir).isEmpty();
  return setup.otherSettingsRemoveFiles && !setup.splitToSource && isNamed
             ? outputFolderOf(setup, setup.fileName)
             : QString();
}

QString outputFolderFinding(const QString& folder) {
  QFileInfo above(folder);
  while (!above.exists() && above.path() != above.filePath()) {
    above.setFile(above.path());
  }
  if (!above.isDir()) {
    return QStringLiteral("%1: nothing can be written there, since \"%2\" is no folder; choose "
                          "another output folder")
        .arg(folder, above.filePath());
  }
  if (!above.isWritable()) {
    return QStringLiteral("%1: nothing can be written there, since \"%2\" may not be changed; "
                          "choose another output folder")
        .arg(folder, above.filePath());
  }
  return QFileInfo::exists(folder)
             ? QString()
             : QStringLiteral("%1: this folder is not there; it is made").arg(folder);
}

QString makeOutputFolder(const QString& folder) {
  if (folder.isEmpty() || QDir().mkpath(folder)) {
    return {};
  }
  return QStringLiteral("%1: the output folder cannot be made").arg(folder);
}

} // namespace folivex
