#include "platform/FileLocks.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"

#include <cerrno>
#include <system_error>

#ifndef Q_OS_WIN
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace folivex::platform {

namespace {

constexpr int namesToTry = 16;

} // namespace

Replacement::~Replacement() {
  drop();
}

void Replacement::drop() {
  // On Windows an open file cannot be removed; elsewhere its lock keeps others off to the end.
#ifdef Q_OS_WIN
  m_file.close();
#endif
  if (!m_part.isEmpty()) {
    QFile::remove(std::exchange(m_part, QString()));
  }
  m_file.close();
}

#ifdef Q_OS_WIN

bool Replacement::isUnseen(const QString&) {
  return false;
}

bool Replacement::open(const QString& target, FileAccess access, FileFailure& failure) {
  drop();
  m_target = target;
  return openPart(access, failure);
}

bool Replacement::openPart(FileAccess, FileFailure& failure) {
  m_part = newPartPath(folderOf(m_target));
  m_file.setFileName(m_part);
  if (m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) {
    return true;
  }
  m_part.clear();
  failure = {FileError::Failed, m_file.errorString()};
  return false;
}

bool Replacement::giveName(FileFailure&) {
  return true;
}

bool Replacement::keep(FileFailure& failure) {
  const bool isWhole = syncToDisk(m_file, failure);
  m_file.close();
  if (!isWhole || !replaceFile(m_part, m_target, failure)) {
    drop();
    return false;
  }
  m_part.clear();
  return true;
}

#else

namespace {

bool failWithErrno(FileFailure& failure, int error) {
  const bool isMissing = error == ENOENT || error == ENOTDIR;
  failure = {isMissing ? FileError::NotFound : FileError::Failed,
             QString::fromLocal8Bit(std::system_category().message(error).c_str())};
  return false;
}

mode_t modeFor(FileAccess access) {
  return access == FileAccess::Ordinary ? 0666 : 0600;
}

bool adopt(QFile& file, int handle) {
  if (file.open(handle, QIODevice::WriteOnly | QIODevice::Unbuffered,
                QFileDevice::AutoCloseHandle)) {
    return true;
  }
  ::close(handle);
  return false;
}

int openUnnamed(const QString& target, mode_t mode) {
#ifdef O_TMPFILE
  const QString folder = folderOf(target);
  return ::open(folder.isEmpty() ? "." : QFile::encodeName(folder).constData(),
                O_TMPFILE | O_WRONLY | O_CLOEXEC, mode);
#else
  Q_UNUSED(target);
  Q_UNUSED(mode);
  return -1;
#endif
}

/// Through /proc, since naming a handle itself takes a privilege.
QByteArray nameOfHandle(int handle) {
  return "/proc/self/fd/" + QByteArray::number(handle);
}

int nameFile(QFile& file, const QString& path) {
  return linkat(AT_FDCWD, nameOfHandle(file.handle()).constData(), AT_FDCWD,
                QFile::encodeName(path).constData(), AT_SYMLINK_FOLLOW) == 0
             ? 0
             : errno;
}

/// A group that cannot be kept must not hand its rights to another one.
void takePermissions(int handle, const QString& path) {
  struct stat old {};
  if (stat(QFile::encodeName(path).constData(), &old) != 0) {
    return;
  }
  const bool groupKept = fchown(handle, static_cast<uid_t>(-1), old.st_gid) == 0;
  const mode_t mask = groupKept ? 0777 : 0707;
  if (fchmod(handle, old.st_mode & mask) != 0) {
    // The file stays with the narrower permissions it was made with.
    return;
  }
}

} // namespace

bool Replacement::isUnseen(const QString& target) {
  const int handle = openUnnamed(target, 0600);
  if (handle < 0) {
    return false;
  }
  const bool canBeNamed = access(nameOfHandle(handle).constData(), F_OK) == 0;
  ::close(handle);
  return canBeNamed;
}

bool Replacement::open(const QString& target, FileAccess access, FileFailure& failure) {
  drop();
  m_target = target;
  failure = {};
  const int handle = isUnseen(target) ? openUnnamed(target, modeFor(access)) : -1;
  const bool isOpen = handle >= 0 ? adopt(m_file, handle) : openPart(access, failure);
  if (isOpen && access != FileAccess::Private) {
    takePermissions(m_file.handle(), target);
  }
  return isOpen;
}

bool Replacement::openPart(FileAccess access, FileFailure& failure) {
  for (int i = 0; i < namesToTry; ++i) {
    const QString name = newPartPath(folderOf(m_target));
    const int handle =
        ::open(QFile::encodeName(name).constData(),
               O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, modeFor(access));
    if (handle < 0 && errno == EEXIST) {
      continue;
    }
    if (handle < 0 || !adopt(m_file, handle)) {
      return failWithErrno(failure, errno);
    }
    // Before it was locked, another process may have taken it for a dead run's.
    if (lockFile(m_file, LockUse::Alone) != LockResult::Busy && isFileAt(m_file, name)) {
      m_part = name;
      return true;
    }
    m_file.close();
  }
  return failWithErrno(failure, EEXIST);
}

/// Where nothing is at the target, its own; else one for the moment before the renaming.
bool Replacement::giveName(FileFailure& failure) {
  static_cast<void>(lockFile(m_file, LockUse::Alone));
  int error = nameFile(m_file, m_target);
  for (int i = 0; i < namesToTry && error == EEXIST; ++i) {
    const QString name = newPartPath(folderOf(m_target));
    error = nameFile(m_file, name);
    if (error == 0) {
      m_part = name;
    }
  }
  return error == 0 || failWithErrno(failure, error);
}

bool Replacement::keep(FileFailure& failure) {
  const bool isWhole = syncToDisk(m_file, failure) && (!m_part.isEmpty() || giveName(failure)) &&
                       (m_part.isEmpty() || replaceFile(m_part, m_target, failure));
  if (isWhole) {
    m_part.clear();
  }
  drop();
  return isWhole;
}

#endif

} // namespace folivex::platform
