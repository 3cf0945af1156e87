// BatchScope: what lasts from one source of a batch to the next.
#pragma once

#include "engine/naming/NameList.h"
#include "engine/output/FolderLocks.h"

#include <QStringList>

#include <optional>

namespace folivex {

/// Several sources are one piece of work between begin() and end(): an output folder is cleared
/// before the first of them only, and none of the sources with it, and the list of names goes on
/// from source to source. Outside of it each run stands alone.
class BatchScope {
public:
  BatchScope(Operator& person, const RunState& state) : m_folders(person, state) {}

  void begin(const QStringList& sources);
  void end();
  bool isOpen() const { return m_isOpen; }

  /// The folders that are kept from other runs: until a run's end, or the batch's when a folder was
  /// cleared, since nobody may come between its sources then.
  FolderLocks& folders() { return m_folders; }
  void runEnded();

  /// Whether a run would still clear this folder.
  bool mayClear(const QString& folder) const { return !m_clearedFolders.contains(folder); }
  /// Clears it before a run of `source`; a list of names that lies there is read before. Empty, or
  /// what stood in the way.
  QString clear(const QString& folder, const QString& source, const QString& nameList);
  /// What lies in the folder belongs to this piece of work: it is not cleared any more.
  void keepFolder(const QString& folder) { m_clearedFolders += folder; }
  /// The sources that stay when a folder is cleared for a run of `source`.
  QStringList kept(const QString& source) const { return m_sources + QStringList(source); }

  /// The list at this path: a batch goes through one, every other run begins it.
  NameList& names(const QString& path);
  /// A run has named its outputs, or begins to. Nobody could save the list while it is open.
  void namesTaken();

private:
  bool m_isOpen = false;
  QStringList m_sources;
  QStringList m_clearedFolders;
  std::optional<NameList> m_names;
  FolderLocks m_folders;
};

} // namespace folivex
