// FileSystem: opening, testing and replacing files, with the reason when it fails.
#pragma once

#include <QFile>
#include <QString>

namespace folivex::platform {

/// Whose file is taken, and who may read a file that is made.
enum class FileAccess {
  /// A file like any other, with the system's default permissions.
  Ordinary,
  /// Holds passwords or addresses, at a place that the person chose: a new file is made 0600.
  Confidential,
  /// Holds them at a place that others can guess and perhaps write to: always 0600, and refused
  /// when it is a link or belongs to another user.
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

/// Opens the ordinary file at `path`, which is made 0600 when it is missing, for reading and for
/// writing at its end, unbuffered. A link is refused.
[[nodiscard]] bool openToAppend(QFile& file, const QString& path, FileFailure& failure);

/// Sees to it that the names in the folder of `path` are on the disk: a file that is there can
/// still be lost by its name.
[[nodiscard]] bool syncFolderOf(const QString& path, FileFailure& failure);

/// Sees to it that what was written to `file` is on the disk.
[[nodiscard]] bool syncToDisk(QFile& file, FileFailure& failure);

/// Renames `from` to `to`, which may exist; at every moment `to` is the old or the new file, whole.
[[nodiscard]] bool replaceFile(const QString& from, const QString& to, FileFailure& failure);

/// A file that takes the place of another one when it is whole. Until keep() what is at the target
/// stays as it was; without keep() nothing is left behind.
///
/// Until then it has no name where the file system allows that, so that a process that is killed
/// leaves nothing. Elsewhere it is a locked file ".folivex-NUMBER.part" beside the target, which
/// removeDeadParts() finds.
class Replacement {
public:
  Replacement() = default;
  ~Replacement();
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  /// Opens file() for writing, unbuffered. A file at `target` hands on its permissions, unless the
  /// access is private. A link at `target` will be replaced itself.
  [[nodiscard]] bool open(const QString& target, FileAccess access, FileFailure& failure);
  QFile& file() { return m_file; }

  /// Sees to it that the file is on the disk and puts it in place.
  [[nodiscard]] bool keep(FileFailure& failure);
  void drop();

  /// Whether a file written for `target` has no name before it is whole.
  static bool isUnseen(const QString& target);

private:
  bool openPart(FileAccess access, FileFailure& failure);
  bool giveName(FileFailure& failure);

  QFile m_file;
  QString m_target;
  QString m_part; ///< its name until keep(); empty when it has none
};

/// Whether `path` is an ordinary file that can be opened for reading.
bool isReadableFile(const QString& path);

/// Whether a private file may be read from or written to `path`: there is nothing yet, or an
/// ordinary file of this user that is no link. Opening with FileAccess::Private asks again, of the
/// file that was opened.
bool isTrustedPrivateFile(const QString& path);

/// The access for a setup, list or log at `path`: private in the temporary folder, else
/// confidential.
FileAccess accessForSecrets(const QString& path);

} // namespace folivex::platform
