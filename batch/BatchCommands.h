// BatchCommands: what the batch list does with files, and what it then says.
#pragma once

#include "batch/BatchEntries.h"
#include "batch/FolderScan.h"
#include "widgets/CommandWords.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace folivex {

/// Knows the list file in use and the places that choosers begin at. Shows and asks nothing.
class BatchCommands {
public:
  explicit BatchCommands(BatchEntries& rows);

  /// The file that save() writes.
  const QString& listPath() const { return m_listPath; }
  /// Path of a file that was picked last, and the folder in which the next one is looked for.
  const QString& lastFile() const { return m_lastFile; }

  void addFiles(const QStringList& paths);

  /// What was dropped, in that order: files whatever they are called, folders handed to `scan`.
  /// What does not exist is left out.
  void addDropped(const QStringList& paths, const std::function<void(const QString&)>& scan);

  /// Where the choice of a folder to scan begins.
  QString scanStart() const;
  /// Remembers the folder that was chosen; returns the one to scan.
  QString chosenForScan(const QString& folder);

  /// Both remember the path. A file that cannot be read leaves the rows as they are.
  CommandWords append(const QString& path);
  CommandWords saveAs(const QString& path);
  CommandWords save() const;

  /// The list is put away: rows, if there are any, go to the list file of the temporary folder.
  CommandWords putAway();

  /// Words for a finished scan.
  static QString scanNotice(const QStringList& folders, const ScanResult& result);
  /// "3 files, 2 in use." and what a run made of them.
  static QString countText(const BatchEntries& rows);

private:
  BatchEntries& m_rows;
  QString m_listPath;
  QString m_lastFile;
  QString m_scanFolder;
};

} // namespace folivex
