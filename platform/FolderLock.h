// FolderLock: a folder of outputs, shared with other runs or had alone.
#pragma once

#include "platform/FileLocks.h"

namespace folivex::platform {

/// Held in a file ".folivex.lock" of the folder, whose kernel lock is taken: it ends with the
/// process. The file names the holders, and the last one who leaves removes it.
///
/// Where locks are not dependable, each run puts a file ".folivex-run-..." into the folder and
/// takes it away again. Who wants the folder alone is refused beside any such file, others beside
/// one of a run that has it alone. A killed run leaves its file: nobody can tell it from one that
/// is at work on another machine, so only a person removes it.
///
/// Not for two objects on one folder within a process: each would wait for the other.
class FolderLock {
public:
  enum class State {
    Held,
    Busy,    ///< others() may tell who has it; to be tried again
    Refused, ///< problem() tells why; trying again helps only when somebody does what it says
    NoPlace  ///< no file can be made in the folder, so that there is nothing to be locked
  };
  enum class Locks { AsFound, Undependable };

  /// `work` is what others are told that this process does there.
  FolderLock(const QString& folder, LockUse use, const QString& work, Locks locks = Locks::AsFound);
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

  /// Tries once, without waiting. Not to be called again when it is held.
  [[nodiscard]] State take();

  LockUse use() const { return m_use; }
  /// "user on host since time: work", one a line; may be empty.
  const QString& others() const { return m_others; }
  const QString& problem() const { return m_problem; }

private:
  State takeLock();
  State takeRunFile();
  State refuse(const QString& path, const QString& reason);
  State refuseBesideRunFiles();
  QString line() const;
  void readOthers();
  void leave();

  QString m_folder;
  LockUse m_use;
  QString m_work;
  bool m_isDependable;
  QString m_lockPath;
  QString m_runPath; ///< of the file of this run, when there is one
  QFile m_file;
  QString m_others;
  QString m_problem;
};

} // namespace folivex::platform
