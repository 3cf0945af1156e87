#include "platform/FileSystem.h"

#include "platform/RawText.h"

#include "platform/Paths.h"

#include <cerrno>
#include <system_error>

#ifdef Q_OS_WIN
#include <io.h>
#include <windows.h>
#else
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace folivex::platform {

namespace {

bool fail(FileFailure& failure, FileError kind, const QString& text) {
  failure = {kind, text};
  return false;
}

bool failWithErrno(FileFailure& failure, int error) {
  const FileError kind =
      error == ENOENT || error == ENOTDIR ? FileError::NotFound : FileError::Failed;
  return fail(failure, kind, QString::fromLocal8Bit(std::system_category().message(error).c_str()));
}

} // namespace

#ifdef Q_OS_WIN

namespace {

bool openNamed(QFile& file, const QString& path, QIODevice::OpenMode mode, FileFailure& failure) {
  file.setFileName(path);
  if (file.open(mode | QIODevice::Unbuffered)) {
    return true;
  }
  return fail(failure, QFile::exists(path) ? FileError::Failed : FileError::NotFound,
              file.errorString());
}

} // namespace

bool openForReading(QFile& file, const QString& path, FileAccess, FileFailure& failure) {
  return openNamed(file, withoutTrailingBlanks(path), QIODevice::ReadOnly, failure);
}

// The temporary folder of Windows is the user's own already, so private needs nothing more.
bool openForWriting(QFile& file, const QString& path, FileAccess, FileFailure& failure) {
  return openNamed(file, withoutTrailingBlanks(path), QIODevice::WriteOnly | QIODevice::Truncate,
                   failure);
}

bool openToAppend(QFile& file, const QString& path, FileFailure& failure) {
  return openNamed(file, path, QIODevice::ReadWrite | QIODevice::Append, failure);
}

bool syncFolderOf(const QString&, FileFailure&) {
  return true;
}

bool syncToDisk(QFile& file, FileFailure& failure) {
  return _commit(file.handle()) == 0 || failWithErrno(failure, errno);
}

bool replaceFile(const QString& from, const QString& to, FileFailure& failure) {
  if (MoveFileExW(systemPath(from).c_str(), systemPath(to).c_str(),
                  MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
    return true;
  }
  return fail(failure, FileError::Failed,
              QString::fromLocal8Bit(
                  std::system_category().message(static_cast<int>(GetLastError())).c_str()));
}

bool isTrustedPrivateFile(const QString&) {
  return true;
}

#else

namespace {

bool failUntrusted(FileFailure& failure, const char* text) {
  return fail(failure, FileError::Refused, QString::fromLatin1(text));
}

bool checkOwner(const struct stat& status, FileAccess access, FileFailure& failure) {
  if (access != FileAccess::Private) {
    return true;
  }
  if (status.st_uid != geteuid()) {
    return failUntrusted(failure, "it belongs to another user");
  }
  return status.st_nlink == 1 || failUntrusted(failure, "it is a link");
}

enum class Devices { Refused, Accepted };

bool checkKind(const struct stat& status, Devices devices, FileFailure& failure) {
  if (S_ISREG(status.st_mode) || (devices == Devices::Accepted && S_ISCHR(status.st_mode))) {
    return true;
  }
  return failUntrusted(failure,
                       S_ISDIR(status.st_mode) ? "it is a folder" : "it is no ordinary file");
}

/// Nobody else may put a file in place between a look at the path and the opening of it, so all
/// that is checked is checked on what was opened.
bool openChecked(QFile& file, const QString& path, int flags, FileAccess access,
                 FileFailure& failure) {
  const bool writes = (flags & O_ACCMODE) != O_RDONLY;
  const mode_t mode = access == FileAccess::Ordinary ? 0666 : 0600;
  // Without O_NONBLOCK a pipe would be waited for before it can be refused.
  int all = flags | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
  if (access == FileAccess::Private) {
    all |= O_NOFOLLOW;
  }
  const int handle = ::open(QFile::encodeName(withoutTrailingBlanks(path)).constData(), all, mode);
  if (handle < 0) {
    if (errno == ELOOP && access == FileAccess::Private) {
      return failUntrusted(failure, "it is a link");
    }
    return errno == EISDIR ? failUntrusted(failure, "it is a folder")
                           : failWithErrno(failure, errno);
  }
  struct stat status {};
  if (fstat(handle, &status) != 0) {
    const int error = errno;
    ::close(handle);
    return failWithErrno(failure, error);
  }
  if (!checkKind(status, writes ? Devices::Accepted : Devices::Refused, failure) ||
      !checkOwner(status, access, failure)) {
    ::close(handle);
    return false;
  }
  if (!file.open(handle,
                 (writes ? QIODevice::WriteOnly : QIODevice::ReadOnly) | QIODevice::Unbuffered,
                 QFileDevice::AutoCloseHandle)) {
    ::close(handle);
    return fail(failure, FileError::Failed, file.errorString());
  }
  return true;
}

} // namespace

bool openForReading(QFile& file, const QString& path, FileAccess access, FileFailure& failure) {
  return openChecked(file, path, O_RDONLY, access, failure);
}

bool openForWriting(QFile& file, const QString& path, FileAccess access, FileFailure& failure) {
  // Emptied only after the checks: a file that is refused must keep what it holds.
  if (!openChecked(file, path, O_WRONLY | O_CREAT, access, failure)) {
    return false;
  }
  if (file.isSequential()) {
    return true;
  }
  if (ftruncate(file.handle(), 0) != 0 ||
      (access == FileAccess::Private && fchmod(file.handle(), 0600) != 0)) {
    failWithErrno(failure, errno);
    file.close();
    return false;
  }
  return true;
}

bool openToAppend(QFile& file, const QString& path, FileFailure& failure) {
  constexpr int flags =
      O_RDWR | O_APPEND | O_CREAT | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
  const int handle = ::open(QFile::encodeName(path).constData(), flags, 0600);
  if (handle < 0) {
    return errno == ELOOP ? failUntrusted(failure, "it is a link") : failWithErrno(failure, errno);
  }
  struct stat status {};
  const bool isGood = fstat(handle, &status) == 0 ? checkKind(status, Devices::Refused, failure)
                                                  : failWithErrno(failure, errno);
  if (isGood && file.open(handle, QIODevice::ReadWrite | QIODevice::Append | QIODevice::Unbuffered,
                          QFileDevice::AutoCloseHandle)) {
    return true;
  }
  ::close(handle);
  return isGood ? fail(failure, FileError::Failed, file.errorString()) : false;
}

bool syncFolderOf(const QString& path, FileFailure& failure) {
  const QString folder = folderOf(path);
  const int handle =
      ::open(QFile::encodeName(folder.isEmpty() ? QStringLiteral(".") : folder).constData(),
             O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (handle < 0) {
    return failWithErrno(failure, errno);
  }
  // Some file systems sync no folders, and need none.
  const bool ok = fsync(handle) == 0 || errno == EINVAL || failWithErrno(failure, errno);
  ::close(handle);
  return ok;
}

bool syncToDisk(QFile& file, FileFailure& failure) {
  return fsync(file.handle()) == 0 || failWithErrno(failure, errno);
}

bool replaceFile(const QString& from, const QString& to, FileFailure& failure) {
  return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0 ||
         failWithErrno(failure, errno);
}

bool isTrustedPrivateFile(const QString& path) {
  struct stat status {};
  if (lstat(QFile::encodeName(withoutTrailingBlanks(path)).constData(), &status) != 0) {
    return errno == ENOENT;
  }
  return S_ISREG(status.st_mode) && status.st_uid == geteuid() && status.st_nlink == 1;
}

#endif

FileAccess accessForSecrets(const QString& path) {
  return isInTemporaryFolder(path) ? FileAccess::Private : FileAccess::Confidential;
}

bool isReadableFile(const QString& path) {
  QFile file;
  FileFailure ignored;
  // Opened by what is left of its name as text it would be another file.
  return !hasRawBytes(path) && openForReading(file, path, FileAccess::Ordinary, ignored);
}

} // namespace folivex::platform
