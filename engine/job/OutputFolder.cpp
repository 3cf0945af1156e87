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

} // namespace

bool isClearedWithFolder(const QString& folder, const QStringList& keep, const QString& path) {
  const QFileInfo file(path);
  return folder.size() >= shortestClearedPath && !file.fileName().startsWith(QLatin1Char('.')) &&
         (file.isSymLink() || !file.isDir()) &&
         QFileInfo(folder).absoluteFilePath() == file.absolutePath() &&
         std::none_of(keep.begin(), keep.end(),
                      [&path](const QString& kept) { return platform::isSameFile(kept, path); });
}

QString clearOutputFolder(const QString& folder, const QStringList& keep) {
  if (folder.size() < shortestClearedPath) {
    return QStringLiteral("%1: the path is too short to be cleared").arg(folder);
  }
  QSet<QString> kept;
  for (const QString& path : keep) {
    kept.insert(QFileInfo(path).canonicalFilePath());
  }
  kept.remove(QString()); // of a link that leads nowhere
  // The names are taken first: deleting while a folder is listed may skip entries.
  const QStringList names =
      QDir(folder).entryList(QDir::Files | QDir::System | QDir::Hidden, QDir::Unsorted);
  for (const QString& name : names) {
    if (name.startsWith(QLatin1Char('.'))) {
      continue;
    }
    const QFileInfo file(QDir(folder), name);
    if (kept.contains(file.canonicalFilePath())) {
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
