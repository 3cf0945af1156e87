#include "batch/BatchCommands.h"

#include "batch/ListFile.h"
#include "platform/Paths.h"

#include <QFileInfo>
#include <QLocale>

#include <utility>

namespace folivex {

namespace {

QString defaultListName() {
  return QStringLiteral("default.lst");
}

QString defaultListPath() {
  return platform::temporaryFolder() + defaultListName();
}

/// "1 file", "2 files", with the separators of the person's own language.
QString counted(int count, const char* one, const char* several) {
  return QLocale().toString(count) + u' ' + QLatin1String(count == 1 ? one : several);
}

} // namespace

BatchCommands::BatchCommands(BatchEntries& rows) : m_rows(rows), m_listPath(defaultListPath()) {}

void BatchCommands::addFiles(const QStringList& paths) {
  std::vector<BatchEntry> entries;
  entries.reserve(static_cast<std::size_t>(paths.size()));
  for (const QString& path : paths) {
    entries.push_back(newEntry(path));
  }
  m_rows.append(std::move(entries));
  if (!paths.isEmpty()) {
    m_lastFile = paths.back();
  }
}

void BatchCommands::addDropped(const QStringList& paths,
                               const std::function<void(const QString&)>& scan) {
  std::vector<BatchEntry> files;
  for (const QString& path : paths) {
    const QFileInfo info(path);
    if (info.isDir()) {
      m_rows.append(std::exchange(files, {}));
      scan(path);
    } else if (info.exists()) {
      files.push_back(newEntry(path));
    }
  }
  m_rows.append(std::move(files));
}

QString BatchCommands::scanStart() const {
  return m_scanFolder.isEmpty() ? platform::folderOf(m_lastFile) : m_scanFolder;
}

QString BatchCommands::chosenForScan(const QString& folder) {
  m_scanFolder = folder;
  // A bare drive means the folder that is current on it, not its root.
  return folder.endsWith(u':') ? folder + platform::separator() : folder;
}

CommandWords BatchCommands::append(const QString& path) {
  m_listPath = path;
  ListFileContent content = readListFile(path);
  if (!content.failure.isEmpty()) {
    return {QStringLiteral("Can't read list file."),
            QStringLiteral("%1 was not read: %2").arg(path, content.failure)};
  }
  m_rows.append(std::move(content.entries));
  if (content.cutLine > 0) {
    return {{},
            QStringLiteral("Line %1 of %2 is longer than %3 characters: it was cut there, and the "
                           "lines after it were not loaded.")
                .arg(QString::number(content.cutLine), path, QString::number(maxListLine))};
  }
  return {};
}

CommandWords BatchCommands::saveAs(const QString& path) {
  m_listPath = path;
  return save();
}

CommandWords BatchCommands::save() const {
  const ListFileSaved saved = writeListFile(m_listPath, m_rows.all());
  if (!saved.failure.isEmpty()) {
    return {QStringLiteral("Can't save to :") + m_listPath,
            QStringLiteral("%1 was not saved: %2").arg(m_listPath, saved.failure)};
  }
  CommandWords words;
  if (!m_listPath.contains(defaultListName())) {
    words.message = QStringLiteral("List saved to file: ") + m_listPath;
  }
  if (saved.notKept > 0) {
    words.notice = QStringLiteral("%1 will not load again as they are: a list file takes %2 "
                                  "characters a line, and no \"|\" or line break in a name.")
                       .arg(counted(saved.notKept, "path", "paths"), QString::number(maxListLine));
  }
  return words;
}

CommandWords BatchCommands::putAway() {
  return m_rows.count() > 0 ? saveAs(defaultListPath()) : CommandWords();
}

QString BatchCommands::scanNotice(const QStringList& folders, const ScanResult& result) {
  const QString where = folders.size() == 1
                            ? folders.front()
                            : counted(static_cast<int>(folders.size()), "folder", "folders");
  QString text =
      QStringLiteral("%1 added from %2.").arg(counted(result.added, "file", "files"), where);
  if (result.stopped) {
    text += QStringLiteral(" Stopped before the end.");
  }
  const auto tell = [&text](int count, const QString& what, const QStringList& first) {
    if (count > 0) {
      text += QStringLiteral(" %1: %2%3")
                  .arg(what, first.join(QStringLiteral(", ")),
                       count > first.size() ? QStringLiteral(", ...") : QString());
    }
  };
  tell(result.noFiles, counted(result.noFiles, "file", "files") + " of them cannot be opened",
       result.noFilesTold);
  tell(result.unreadableFolders,
       counted(result.unreadableFolders, "folder", "folders") + " could not be read",
       result.unreadable);
  return text;
}

QString BatchCommands::countText(const BatchEntries& rows) {
  if (rows.count() == 0) {
    return QStringLiteral("The list is empty.");
  }
  QString text = QStringLiteral("%1, %2 in use")
                     .arg(counted(rows.count(), "file", "files"), QLocale().toString(rows.inUse()));
  if (rows.done() > 0) {
    text += QStringLiteral("; %1 done").arg(QLocale().toString(rows.done()));
  }
  if (rows.fileErrors() > 0) {
    text += QStringLiteral("; %1").arg(counted(rows.fileErrors(), "file error", "file errors"));
  }
  return text + u'.';
}

} // namespace folivex
