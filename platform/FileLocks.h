// FileLocks: kernel locks on open files. They end with the process that holds them, however it
// ends.
#pragma once

#include <QFile>
#include <QString>
#include <QStringList>

namespace folivex::platform {

enum class LockUse { Shared, Alone };

enum class LockResult {
  Locked,
  Busy,  ///< another one holds it; a lock that was to be changed may be lost
  Unable ///< files cannot be locked here
};

/// Takes the lock of an open file, or changes the use of one that is held, without waiting. The
/// lock is this object's: another QFile on the same file is kept out like another process.
[[nodiscard]] LockResult lockFile(QFile& file, LockUse use);

/// Whether the open file is what stands at `path`, by this name alone. What was locked may have
/// been removed while the lock was waited for.
bool isFileAt(QFile& file, const QString& path);

/// Opens the ordinary file at `path` for reading and writing at its end, links not followed; for
/// reading alone where no more is allowed. `make`: it must not be there yet, and whoever may write
/// the folder may write the file. On failure the system's error number, else 0.
[[nodiscard]] int openForLock(QFile& file, const QString& path, bool make);

/// Whether a lock on a file of this folder binds everybody who reaches it, from other machines too.
bool hasDependableLocks(const QString& folder);

/// Adds bytes to a file that was opened for locking, as those of a living process. Without room for
/// them there are none.
void signFile(QFile& file, const QByteArray& bytes);
/// Whether the process that added the bytes from `offset` on has the file open still; true where
/// that cannot be told.
bool isSignatureAlive(QFile& file, qint64 offset);

/// Names of the files in a folder that begin with `start`, in no order. Fast in a folder of many.
QStringList filesThatBeginWith(const QByteArray& start, const QString& folder);

/// A path in a folder that nothing has, ".folivex-*.part", for a file that becomes another one or
/// is one run's own. Short, since the name of the other may fill what the file system allows.
QString newPartPath(const QString& folder);

/// Removes such files of a folder that no process holds open: a run that was killed left them.
/// Nothing is removed where locks are not dependable.
void removeDeadParts(const QString& folder);

} // namespace folivex::platform
