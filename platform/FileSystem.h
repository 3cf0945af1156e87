// FileSystem: opening, testing and replacing files, with the reason when it fails.
#pragma once

#include <QFile>
#include <QString>

namespace folivex::platform {

/// Who may read a file that is made, and whose file is taken for the person's own.
enum class FileAccess {
  /// A file like any other: the system's default permissions, links are followed.
  Ordinary,
  /// Holds passwords or addresses: made with permissions 0600. A file that exists is refused when
  /// it
  /// is a link or belongs to another user. For files at places that others can guess.
  Private
};

enum class FileError {
  None,
  NotFound, ///< no such file or folder
  Refused,  ///< it is there but not to be trusted, or no ordinary file
  Failed    ///< anything else; the text is the system's
};

struct FileFailure {
  FileError kind = FileError::None;
  QString text; ///< for a person, without the path; empty when nothing failed
};

/// Opens the ordinary file at `path` for reading, unbuffered. Folders, pipes and devices are
/// refused, since reading one may never end. Blanks at the end of `path` are no part of it.
[[nodiscard]] bool openForReading(QFile& file, const QString& path, FileAccess access,
                                  FileFailure& failure);

/// Makes or empties the file at `path` and opens it for writing, unbuffered. Devices are accepted
/// (a full one serves as a test), pipes and folders are not.
[[nodiscard]] bool openForWriting(QFile& file, const QString& path, FileAccess access,
                                  FileFailure& failure);

/// Makes a new file with an unused name in the folder of `path`, on the same disk so that it can be
/// renamed to `path` afterwards. Returns its path, empty on failure. It is made with permissions
/// 0600 whatever the target's are.
[[nodiscard]] QString openAside(QFile& file, const QString& path, FileFailure& failure);

/// Sees to it that what was written to `file` is on the disk.
[[nodiscard]] bool syncToDisk(QFile& file, FileFailure& failure);

/// Renames `from` to `to`, which may exist; at every moment `to` is the old or the new file, whole.
[[nodiscard]] bool replaceFile(const QString& from, const QString& to, FileFailure& failure);

/// Whether `path` is an ordinary file that can be opened for reading.
bool isReadableFile(const QString& path);

/// Whether a private file may be read from or written to `path`: there is nothing yet, or an
/// ordinary file of this user that is no link.
bool isTrustedPrivateFile(const QString& path);

} // namespace folivex::platform
