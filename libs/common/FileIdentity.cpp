#include "common/FileIdentity.h"

#include "common/Paths.h"

#include <sys/stat.h>

namespace common {

namespace {

#if defined(_WIN32)
using Status = struct _stat64;

int64_t lastWrite(const Status& found) {
  return found.st_mtime;
}
#else
using Status = struct stat;

int64_t lastWrite(const Status& found) {
  constexpr int64_t ticksPerSecond = 1'000'000'000;
  return found.st_mtim.tv_sec * ticksPerSecond + found.st_mtim.tv_nsec;
}
#endif

FileIdentity identityIn(const Status& found) {
  return {.device = static_cast<uint64_t>(found.st_dev),
          .number = static_cast<uint64_t>(found.st_ino),
          .size = static_cast<uint64_t>(found.st_size),
          .changed = lastWrite(found)};
}

} // namespace

std::optional<FileIdentity> FileIdentity::of(const std::string& path,
                                             [[maybe_unused]] Links links) {
  Status found{};
#if defined(_WIN32)
  const bool isThere = _wstat64(pathOf(path).c_str(), &found) == 0;
#else
  const bool isThere = links == Links::Followed ? ::stat(path.c_str(), &found) == 0
                                                : ::lstat(path.c_str(), &found) == 0;
#endif
  return isThere ? std::optional(identityIn(found)) : std::nullopt;
}

FileIdentity FileIdentity::of(std::FILE* file) {
  Status found{};
#if defined(_WIN32)
  _fstat64(_fileno(file), &found);
#else
  ::fstat(::fileno(file), &found);
#endif
  return identityIn(found);
}

} // namespace common
