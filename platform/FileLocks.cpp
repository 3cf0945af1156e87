#include "platform/FileLocks.h"

#include "platform/Paths.h"

#include <QFileInfo>
#include <QRandomGenerator>

#include <algorithm>
#include <array>
#include <cerrno>

#ifdef Q_OS_WIN
#include <QDir>
#include <io.h>
#include <windows.h>
#else
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>
#endif

namespace folivex::platform {

namespace {

QStringList partsIn(const QString& folder) {
  QStringList names = filesThatBeginWith(".folivex-", folder);
  names.removeIf([](const QString& name) { return !name.endsWith(QLatin1String(".part")); });
  return names;
}

} // namespace

QString newPartPath(const QString& folder) {
  return joinPath(folder,
                  QStringLiteral(".folivex-%1.part")
                      .arg(QRandomGenerator::global()->generate64(), 16, 16, QLatin1Char('0')));
}

#ifdef Q_OS_WIN

QStringList filesThatBeginWith(const QByteArray& start, const QString& folder) {
  return QDir(folder).entryList({QString::fromLatin1(start) + u'*'},
                                QDir::Files | QDir::Hidden | QDir::System, QDir::Unsorted);
}

LockResult lockFile(QFile& file, LockUse use) {
  const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(file.handle()));
  OVERLAPPED place{};
  place.OffsetHigh = 0x7FFFFFFF; // beyond any byte, since locked bytes cannot be read
  UnlockFileEx(handle, 0, 1, 0, &place);
  const DWORD kind = use == LockUse::Alone ? LOCKFILE_EXCLUSIVE_LOCK : 0;
  if (LockFileEx(handle, kind | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place)) {
    return LockResult::Locked;
  }
  const DWORD error = GetLastError();
  return error == ERROR_LOCK_VIOLATION || error == ERROR_IO_PENDING ? LockResult::Busy
                                                                    : LockResult::Unable;
}

// A file that is open is not removed here: it stays where it was opened.
bool isFileAt(QFile&, const QString&) {
  return true;
}

int openForLock(QFile& file, const QString& path, bool make) {
  file.setFileName(path);
  const QIODevice::OpenMode mode = QIODevice::ReadWrite | QIODevice::Unbuffered;
  if (file.open(mode | (make ? QIODevice::NewOnly : QIODevice::ExistingOnly))) {
    file.seek(file.size());
    return 0;
  }
  return QFile::exists(path) ? (make ? EEXIST : EACCES) : (make ? EACCES : ENOENT);
}

bool hasDependableLocks(const QString&) {
  return true;
}

void signFile(QFile& file, const QByteArray& bytes) {
  file.write(bytes);
}

bool isSignatureAlive(QFile&, qint64) {
  return true;
}

void removeDeadParts(const QString& folder) {
  for (const QString& name : partsIn(folder)) {
    QFile::remove(joinPath(folder, name)); // refused while it is open
  }
}

#else

namespace {

/// File systems of this machine alone, as statfs(2) numbers them. Those of a network, and what a
/// program of a user serves, may grant one lock twice.
constexpr std::array<unsigned long, 15> ownFileSystems = {
    0xEF53,     // ext2, ext3, ext4
    0x58465342, // XFS
    0x9123683E, // Btrfs
    0xCA451A4E, // bcachefs
    0xF2F52010, // F2FS
    0x2FC12FC1, // ZFS
    0x01021994, // tmpfs
    0x858458F6, // ramfs
    0x794C7630, // overlay
    0x3153464A, // JFS
    0x52654973, // ReiserFS
    0x3434,     // NILFS
    0x4D44,     // FAT
    0x2011BAB0, // exFAT
    0x7366746E, // NTFS in the kernel
};

bool hasOtherName(const struct stat& status) {
  return !S_ISREG(status.st_mode) || status.st_nlink > 1;
}

/// A file in a shared folder belongs to those who share it, and to nobody else.
void dressLikeFolder(int handle, const QString& path) {
  struct stat folder {};
  if (stat(QFile::encodeName(QFileInfo(path).path()).constData(), &folder) != 0) {
    return;
  }
  const bool groupKept = fchown(handle, static_cast<uid_t>(-1), folder.st_gid) == 0;
  mode_t mode = 0600;
  if ((folder.st_mode & S_IWGRP) != 0) {
    mode |= groupKept ? 0660 : 0666;
  }
  if ((folder.st_mode & S_IWOTH) != 0) {
    mode |= 0666;
  }
  if (fchmod(handle, mode) != 0) {
    return; // it stays as narrow as it was made
  }
}

} // namespace

QStringList filesThatBeginWith(const QByteArray& start, const QString& folder) {
  QStringList names;
  DIR* const entries = opendir(QFile::encodeName(folder.isEmpty() ? QStringLiteral(".") : folder));
  if (entries == nullptr) {
    return names;
  }
  while (const dirent* const entry = readdir(entries)) {
    if (QByteArrayView(entry->d_name).startsWith(start)) {
      names += QFile::decodeName(entry->d_name);
    }
  }
  closedir(entries);
  return names;
}

LockResult lockFile(QFile& file, LockUse use) {
  const int kind = use == LockUse::Alone ? LOCK_EX : LOCK_SH;
  int result = 0;
  do {
    result = flock(file.handle(), kind | LOCK_NB);
  } while (result != 0 && errno == EINTR);
  return result == 0            ? LockResult::Locked
         : errno == EWOULDBLOCK ? LockResult::Busy
                                : LockResult::Unable;
}

bool isFileAt(QFile& file, const QString& path) {
  struct stat open {};
  struct stat there {};
  return fstat(file.handle(), &open) == 0 &&
         lstat(QFile::encodeName(path).constData(), &there) == 0 && open.st_dev == there.st_dev &&
         open.st_ino == there.st_ino && !hasOtherName(open);
}

int openForLock(QFile& file, const QString& path, bool make) {
  // Without O_NONBLOCK a pipe would be waited for before it can be refused.
  constexpr int flags = O_APPEND | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
  const QByteArray name = QFile::encodeName(path);
  int handle = ::open(name.constData(), flags | O_RDWR | (make ? O_CREAT | O_EXCL : 0), 0600);
  QIODevice::OpenMode mode = QIODevice::ReadWrite;
  if (handle < 0 && errno == EACCES && !make) {
    handle = ::open(name.constData(), flags | O_RDONLY);
    mode = QIODevice::ReadOnly;
  }
  if (handle < 0) {
    return errno;
  }
  struct stat status {};
  if (fstat(handle, &status) != 0 || hasOtherName(status)) {
    ::close(handle);
    return ELOOP;
  }
  if (make) {
    dressLikeFolder(handle, path);
  }
  if (!file.open(handle, mode | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle)) {
    ::close(handle);
    return EIO;
  }
  return 0;
}

bool hasDependableLocks(const QString& folder) {
  struct statfs status {};
  const QString asked = folder.isEmpty() ? QStringLiteral(".") : folder;
  return statfs(QFile::encodeName(asked).constData(), &status) == 0 &&
         std::find(ownFileSystems.begin(), ownFileSystems.end(),
                   static_cast<unsigned long>(status.f_type) & 0xFFFFFFFFUL) !=
             ownFileSystems.end();
}

void signFile(QFile& file, const QByteArray& bytes) {
  if (file.write(bytes) != bytes.size()) {
    return;
  }
#ifdef F_OFD_SETLK
  // Beside the lock of the whole file; others add their bytes at its end too.
  struct flock own {};
  own.l_type = F_WRLCK;
  own.l_whence = SEEK_SET;
  own.l_start = lseek(file.handle(), 0, SEEK_CUR) - bytes.size();
  own.l_len = bytes.size();
  static_cast<void>(fcntl(file.handle(), F_OFD_SETLK, &own));
#endif
}

bool isSignatureAlive(QFile& file, qint64 offset) {
#ifdef F_OFD_SETLK
  struct flock first {};
  first.l_type = F_RDLCK;
  first.l_whence = SEEK_SET;
  first.l_start = offset;
  first.l_len = 1;
  return fcntl(file.handle(), F_OFD_GETLK, &first) != 0 || first.l_type != F_UNLCK;
#else
  Q_UNUSED(file);
  Q_UNUSED(offset);
  return true;
#endif
}

void removeDeadParts(const QString& folder) {
  const QStringList names = partsIn(folder);
  if (names.isEmpty() || !hasDependableLocks(folder)) {
    return;
  }
  for (const QString& name : names) {
    const QString path = joinPath(folder, name);
    QFile part;
    if (openForLock(part, path, false) == 0 &&
        lockFile(part, LockUse::Alone) == LockResult::Locked && isFileAt(part, path)) {
      QFile::remove(path);
    }
  }
}

#endif

} // namespace folivex::platform
