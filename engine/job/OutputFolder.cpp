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
  const QStringList names =
      QDir(folder).entryList(QDir::Files | QDir::System | QDir::Hidden, QDir::Unsorted);
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

QString makeOutputFolder(const QString& folder) {
  if (folder.isEmpty() || QDir().mkpath(folder)) {
    return {};
  }
  return QStringLiteral("%1: the output folder cannot be made").arg(folder);
}

} // namespace folivex
