#include "common/FileCalls.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
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

int processNumber() {
  return static_cast<int>(::getpid());
}

std::FILE* createNew(const std::filesystem::path& path, Readers readers, int& error) {
  const mode_t mode = readers == Readers::OwnerAlone ? 0600 : 0666;
  const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
  std::FILE* const file = descriptor < 0 ? nullptr : ::fdopen(descriptor, "wb");
  error = result(file != nullptr);
  if (file != nullptr) {
    std::setvbuf(file, nullptr, _IONBF, 0);
  } else if (descriptor >= 0) {
    ::close(descriptor);
    ::unlink(path.c_str());
  }
  return file;
}

int seekTo(std::FILE* file, uint64_t offset) {
  return result(::fseeko(file, static_cast<off_t>(offset), SEEK_SET) == 0);
}

int dressLike(std::FILE* file, const std::filesystem::path& model) {
  const int from = ::open(model.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
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

int replace(const std::filesystem::path& part, const std::filesystem::path& target,
            bool /*keepsDress*/) {
  return result(::rename(part.c_str(), target.c_str()) == 0);
}

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

} // namespace common::files
