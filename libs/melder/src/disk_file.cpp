#include "disk_file.h"

#include "failure.h"
#include "melder/melder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#ifndef RENAME_EXCHANGE
#define RENAME_EXCHANGE (1 << 1)
#endif

namespace melder {

namespace {

constexpr size_t kCopyChunk = size_t{1} << 20;
constexpr auto kLockPatience = std::chrono::seconds(30);
constexpr auto kLockPause = std::chrono::milliseconds(5);

/** ext3 and ext4, XFS, Btrfs, and files in memory. */
constexpr std::array<uint32_t, 4> kOrdered = {0xEF53, 0x58465342, 0x9123683E, 0x01021994};

[[noreturn]] void failAt(int32_t code, const std::string& path, const char* action, int error) {
  throw Failure(code, path + ": cannot " + action + ": " + std::strerror(error));
}

FileStamp stampOf(const struct stat& found) {
  constexpr int64_t kNano = 1000000000;
  return {.device = found.st_dev,
          .inode = found.st_ino,
          .size = static_cast<uint64_t>(found.st_size),
          .modified = found.st_mtim.tv_sec * kNano + found.st_mtim.tv_nsec,
          .changed = found.st_ctim.tv_sec * kNano + found.st_ctim.tv_nsec,
          .links = found.st_nlink};
}

/** Errors of copy_file_range that mean "not here" and not "not possible". */
bool meansUnsupported(int error) {
  return error == EXDEV || error == EINVAL || error == ENOSYS || error == EOPNOTSUPP ||
         error == EPERM || error == EBADF;
}

} // namespace

DiskFile::DiskFile(std::string path, int descriptor)
    : m_path(std::move(path)), m_descriptor(descriptor) {}

DiskFile::DiskFile(DiskFile&& other) noexcept
    : m_path(std::move(other.m_path)), m_descriptor(std::exchange(other.m_descriptor, -1)) {}

DiskFile& DiskFile::operator=(DiskFile&& other) noexcept {
  std::swap(m_path, other.m_path);
  std::swap(m_descriptor, other.m_descriptor);
  return *this;
}

DiskFile::~DiskFile() {
  if (m_descriptor >= 0) {
    ::close(m_descriptor);
  }
}

void DiskFile::fail(int32_t code, const char* action) const {
  failAt(code, m_path, action, errno);
}

DiskFile DiskFile::open(const std::string& path, Access access) {
  const int mode = access == Access::Read ? O_RDONLY : O_RDWR;
  const int descriptor = ::open(path.c_str(), mode | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor < 0) {
    failAt(MELDER_CANNOT_OPEN, path, "open", errno);
  }
  DiskFile file(path, descriptor);
  struct stat found = {};
  if (::fstat(descriptor, &found) != 0) {
    file.fail(MELDER_CANNOT_OPEN, "open");
  }
  if (!S_ISREG(found.st_mode)) {
    throw Failure(MELDER_CANNOT_OPEN, path + ": cannot open: not a regular file");
  }
  return file;
}

DiskFile DiskFile::create(const std::string& path, Audience audience) {
  removeQuietly(path);
  const mode_t mode = audience == Audience::Owner ? 0600 : 0666;
  const int descriptor =
      ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
  if (descriptor < 0) {
    failAt(MELDER_CANNOT_WRITE, path, "create", errno);
  }
  return {path, descriptor};
}

FileStamp DiskFile::stamp() const {
  struct stat found = {};
  if (::fstat(m_descriptor, &found) != 0) {
    fail(MELDER_CANNOT_OPEN, "look at");
  }
  return stampOf(found);
}

std::string DiskFile::read(uint64_t offset, size_t length) const {
  std::string bytes(length, '\0');
  size_t have = 0;
  while (have < length) {
    const ssize_t got = ::pread(m_descriptor, bytes.data() + have, length - have,
                                static_cast<off_t>(offset + have));
    if (got < 0 && errno == EINTR) {
      continue;
    }
    if (got < 0) {
      fail(MELDER_CANNOT_OPEN, "read");
    }
    if (got == 0) {
      break;
    }
    have += static_cast<size_t>(got);
  }
  bytes.resize(have);
  return bytes;
}

void DiskFile::write(uint64_t offset, std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t put =
        ::pwrite(m_descriptor, bytes.data(), bytes.size(), static_cast<off_t>(offset));
    if (put < 0 && errno == EINTR) {
      continue;
    }
    if (put < 0) {
      fail(MELDER_CANNOT_WRITE, "write");
    }
    bytes.remove_prefix(static_cast<size_t>(put));
    offset += static_cast<uint64_t>(put);
  }
}

void DiskFile::cut(uint64_t size) const {
  if (::ftruncate(m_descriptor, static_cast<off_t>(size)) != 0) {
    fail(MELDER_CANNOT_WRITE, "write");
  }
}

void DiskFile::sync() const {
  if (::fdatasync(m_descriptor) != 0) {
    fail(MELDER_CANNOT_WRITE, "write");
  }
}

void DiskFile::settleBeforeRename() const {
  // Once the bytes have reached the disk, these file systems log the growth of the file before the
  // change of its name. What remains of a sync is to wait for the log, and that is most of its
  // time.
  struct statfs system = {};
  const bool ordered =
      ::fstatfs(m_descriptor, &system) == 0 &&
      std::ranges::find(kOrdered, static_cast<uint32_t>(system.f_type)) != kOrdered.end();
  constexpr unsigned kWriteAndWait =
      SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
  if (!ordered || ::sync_file_range(m_descriptor, 0, 0, kWriteAndWait) != 0) {
    sync();
  }
}

void DiskFile::copyRange(const DiskFile& source, uint64_t from, uint64_t to) const {
  while (from < to) {
    auto in = static_cast<off_t>(from);
    auto out = static_cast<off_t>(from);
    const ssize_t moved =
        ::copy_file_range(source.m_descriptor, &in, m_descriptor, &out, to - from, 0);
    if (moved > 0) {
      from += static_cast<uint64_t>(moved);
    } else if (moved < 0 && !meansUnsupported(errno)) {
      fail(MELDER_CANNOT_WRITE, "write");
    } else {
      break;
    }
  }
  while (from < to) {
    const std::string chunk = source.read(from, std::min<uint64_t>(kCopyChunk, to - from));
    if (chunk.empty()) {
      throw Failure(MELDER_CANNOT_OPEN, source.path() + ": became shorter while it was read");
    }
    write(from, chunk);
    from += chunk.size();
  }
}

void DiskFile::dressLike(const DiskFile& model) const {
  struct stat wanted = {};
  if (::fstat(model.m_descriptor, &wanted) != 0) {
    model.fail(MELDER_CANNOT_OPEN, "look at");
  }
  // Owner first: a change of owner clears the set-id bits that the mode may ask for.
  if (::fchown(m_descriptor, wanted.st_uid, wanted.st_gid) != 0 &&
      ::fchown(m_descriptor, static_cast<uid_t>(-1), wanted.st_gid) != 0) {
    wanted.st_mode &= ~static_cast<mode_t>(S_ISUID | S_ISGID);
  }
  if (::fchmod(m_descriptor, wanted.st_mode & 07777) != 0) {
    fail(MELDER_CANNOT_WRITE, "set the mode of");
  }
  const ssize_t room = ::flistxattr(model.m_descriptor, nullptr, 0);
  if (room <= 0) {
    return;
  }
  std::vector<char> names(static_cast<size_t>(room));
  const ssize_t listed = ::flistxattr(model.m_descriptor, names.data(), names.size());
  for (ssize_t at = 0; at < listed;) {
    const char* name = names.data() + at;
    at += static_cast<ssize_t>(std::strlen(name)) + 1;
    const ssize_t length = ::fgetxattr(model.m_descriptor, name, nullptr, 0);
    if (length < 0) {
      continue;
    }
    std::vector<char> value(static_cast<size_t>(length));
    const ssize_t got = ::fgetxattr(model.m_descriptor, name, value.data(), value.size());
    if (got >= 0) {
      (void)::fsetxattr(m_descriptor, name, value.data(), static_cast<size_t>(got), 0);
    }
  }
}

bool DiskFile::lock() const {
  const auto giveUp = std::chrono::steady_clock::now() + kLockPatience;
  while (::flock(m_descriptor, LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK && errno != EINTR) {
      return true; // a file system without locks: nothing to wait for
    }
    if (std::chrono::steady_clock::now() >= giveUp) {
      return false;
    }
    std::this_thread::sleep_for(kLockPause);
  }
  return true;
}

bool DiskFile::isUnwatched() const {
  // A write lease is granted only while no other descriptor for the file exists. A lease that is
  // broken raises a signal; SIGURG is one that does nothing unless the program asks for it.
  (void)::fcntl(m_descriptor, F_SETSIG, SIGURG);
  if (::fcntl(m_descriptor, F_SETLEASE, F_WRLCK) != 0) {
    return false;
  }
  (void)::fcntl(m_descriptor, F_SETLEASE, F_UNLCK);
  return true;
}

std::string finalPath(const std::string& path) {
  const std::unique_ptr<char, void (*)(void*)> resolved(::realpath(path.c_str(), nullptr),
                                                        std::free);
  if (!resolved) {
    failAt(MELDER_CANNOT_OPEN, path, "open", errno);
  }
  return resolved.get();
}

void requireWritable(const std::string& path) {
  if (::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) {
    failAt(MELDER_CANNOT_WRITE, path, "write", errno);
  }
}

FileStamp stampAt(const std::string& path) noexcept {
  struct stat found = {};
  return ::lstat(path.c_str(), &found) == 0 ? stampOf(found) : FileStamp{};
}

void removeQuietly(const std::string& path) noexcept {
  (void)::unlink(path.c_str());
}

bool exchangeNames(const std::string& one, const std::string& other) {
  if (::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) == 0) {
    return true;
  }
  if (errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP) {
    return false;
  }
  failAt(MELDER_CANNOT_WRITE, other, "replace", errno);
}

void renameOver(const std::string& from, const std::string& to) {
  if (::rename(from.c_str(), to.c_str()) != 0) {
    failAt(MELDER_CANNOT_WRITE, to, "replace", errno);
  }
}

} // namespace melder
