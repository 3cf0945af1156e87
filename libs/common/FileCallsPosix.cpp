#include "common/FileCalls.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

#if defined(__linux__)
#include <sys/vfs.h>
#include <sys/xattr.h>
#endif

namespace common::files {

namespace {

int result(bool isDone) {
  return isDone ? 0 : errno;
}

/// EBUSY when another one has the lock; any other error: files cannot be locked here.
int takeLock(int descriptor) {
  return ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 ? 0 : errno == EWOULDBLOCK ? EBUSY : errno;
}

/// Whether a lock that another machine holds would be seen here.
bool seesAllLocks([[maybe_unused]] int descriptor) {
#if defined(__linux__)
  // Of this machine alone: ext2 to ext4, XFS, Btrfs, bcachefs, F2FS, ZFS, files in memory (two),
  // overlay, JFS, ReiserFS, NILFS, FAT, exFAT, NTFS. Those of a network may grant a lock twice.
  constexpr std::array<uint32_t, 15> own = {0xEF53,     0x58465342, 0x9123683E, 0xCA451A4E,
                                            0xF2F52010, 0x2FC12FC1, 0x01021994, 0x858458F6,
                                            0x794C7630, 0x3153464A, 0x52654973, 0x3434,
                                            0x4D44,     0x2011BAB0, 0x7366746E};
  struct statfs system {};
  return ::fstatfs(descriptor, &system) == 0 &&
         std::ranges::find(own, static_cast<uint32_t>(system.f_type)) != own.end();
#else
  return true;
#endif
}

bool isAt(int descriptor, const std::filesystem::path& path) {
  struct stat open {};
  struct stat there {};
  return ::fstat(descriptor, &open) == 0 && ::lstat(path.c_str(), &there) == 0 &&
         open.st_dev == there.st_dev && open.st_ino == there.st_ino;
}

/// What the system keeps beside the mode: access lists above all.
void copyAttributes([[maybe_unused]] int from, [[maybe_unused]] int to) {
#if defined(__linux__)
  const ssize_t room = ::flistxattr(from, nullptr, 0);
  std::vector<char> names(room > 0 ? static_cast<size_t>(room) : 0);
  const ssize_t listed = names.empty() ? 0 : ::flistxattr(from, names.data(), names.size());
  for (ssize_t at = 0; at < listed;) {
    const char* const name = names.data() + at;
    at += static_cast<ssize_t>(std::strlen(name)) + 1;
    const ssize_t length = ::fgetxattr(from, name, nullptr, 0);
    std::vector<char> value(length > 0 ? static_cast<size_t>(length) : 0);
    const ssize_t got = length < 0 ? -1 : ::fgetxattr(from, name, value.data(), value.size());
    if (got >= 0) {
      (void)::fsetxattr(to, name, value.data(), static_cast<size_t>(got), 0);
    }
  }
#endif
}

} // namespace

std::FILE* createLocked(const std::filesystem::path& path, Readers readers, int& error) {
  const mode_t mode = readers == Readers::OwnerAlone ? 0600 : 0666;
  // Each time round somebody else has taken or removed what was there.
  for (int attempt = 0; attempt < 100; ++attempt) {
    const int descriptor =
        ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
    if (descriptor >= 0) {
      // Between its making and its locking it may have been taken for one that was left behind.
      std::FILE* const file = takeLock(descriptor) != EBUSY && isAt(descriptor, path)
                                  ? ::fdopen(descriptor, "w+b")
                                  : nullptr;
      if (file != nullptr) {
        std::setvbuf(file, nullptr, _IONBF, 0);
        error = 0;
        return file;
      }
      ::close(descriptor);
      continue;
    }
    if (errno != EEXIST) {
      error = errno;
      return nullptr;
    }
    error = removeUnused(path);
    if (error != 0 && error != ENOENT) {
      return nullptr;
    }
  }
  error = EBUSY;
  return nullptr;
}

int removeUnused(const std::filesystem::path& path) {
  const int descriptor =
      ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
  if (descriptor < 0) {
    if (errno == ELOOP) {
      return result(::unlink(path.c_str()) == 0);
    }
    return errno == ENOENT ? ENOENT : EBUSY;
  }
  struct stat status {};
  int error = EBUSY;
  if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && seesAllLocks(descriptor) &&
      takeLock(descriptor) == 0) {
    // What was locked may have another name by now, and something else this one.
    error = isAt(descriptor, path) ? result(::unlink(path.c_str()) == 0) : 0;
  }
  ::close(descriptor);
  return error == 0 || error == ENOENT ? error : EBUSY;
}

std::FILE* openToRead(const std::filesystem::path& path, Links links, int& error) {
  // A pipe would keep the opening waiting for ever.
  const int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
  const int descriptor = ::open(path.c_str(), links == Links::Refused ? flags | O_NOFOLLOW : flags);
  error = result(descriptor >= 0);
  if (descriptor < 0) {
    return nullptr;
  }
  struct stat status {};
  std::FILE* file = nullptr;
  if (::fstat(descriptor, &status) != 0) {
    error = errno;
  } else if (S_ISREG(status.st_mode)) {
    file = ::fdopen(descriptor, "rb");
    error = result(file != nullptr);
  }
  if (file == nullptr) {
    ::close(descriptor);
  } else {
    std::setvbuf(file, nullptr, _IONBF, 0);
  }
  return file;
}

int seekTo(std::FILE* file, uint64_t offset) {
  return result(::fseeko(file, static_cast<off_t>(offset), SEEK_SET) == 0);
}

int dressLike(std::FILE* file, const std::filesystem::path& model) {
  const int from = ::open(model.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
  struct stat wanted {};
  if (from < 0 || ::fstat(from, &wanted) != 0) {
    const int error = errno;
    if (from >= 0) {
      ::close(from);
    }
    return error;
  }
  const int to = ::fileno(file);
  // Owner first: a change of owner clears the set-id bits that the mode may ask for.
  if (::fchown(to, wanted.st_uid, wanted.st_gid) != 0 &&
      ::fchown(to, static_cast<uid_t>(-1), wanted.st_gid) != 0) {
    wanted.st_mode &= ~static_cast<mode_t>(S_ISUID | S_ISGID);
  }
  const int error = result(::fchmod(to, wanted.st_mode & 07777) == 0);
  copyAttributes(from, to);
  ::close(from);
  return error;
}

void beginToSettle([[maybe_unused]] std::FILE* file) {
#if defined(__linux__)
  (void)::sync_file_range(::fileno(file), 0, 0, SYNC_FILE_RANGE_WRITE);
#endif
}

int settle(std::FILE* file) {
  const int descriptor = ::fileno(file);
#if defined(__linux__)
  // ext3 and ext4, XFS, Btrfs, and files in memory: once the bytes have reached the disk, these log
  // the growth of the file before the change of its name. What remains of a sync is to wait for the
  // log, and that is most of its time.
  constexpr std::array<uint32_t, 4> ordered = {0xEF53, 0x58465342, 0x9123683E, 0x01021994};
  constexpr unsigned writeAndWait =
      SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
  struct statfs system {};
  if (::fstatfs(descriptor, &system) == 0 &&
      std::ranges::find(ordered, static_cast<uint32_t>(system.f_type)) != ordered.end() &&
      ::sync_file_range(descriptor, 0, 0, writeAndWait) == 0) {
    return 0;
  }
#endif
  return result(::fsync(descriptor) == 0);
}

int tellLateErrors(std::FILE* file) {
  const int other = ::dup(::fileno(file));
  return result(other >= 0 && ::close(other) == 0);
}

namespace {

int moveToFreePlace(const std::filesystem::path& part, const std::filesystem::path& target) {
#if defined(__linux__)
  if (::renameat2(AT_FDCWD, part.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) {
    return 0;
  }
  if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP) {
    return errno;
  }
#endif
  if (::link(part.c_str(), target.c_str()) != 0) {
    return errno;
  }
  return result(::unlink(part.c_str()) == 0);
}

} // namespace

int moveAndClose(std::FILE*& file, const std::filesystem::path& part,
                 const std::filesystem::path& target, Old old) {
  const int error = old == Old::None ? moveToFreePlace(part, target)
                                     : result(::rename(part.c_str(), target.c_str()) == 0);
  if (error == 0) {
    std::fclose(std::exchange(file, nullptr)); // nothing is left to write: the lock goes
  }
  return error;
}

} // namespace common::files
