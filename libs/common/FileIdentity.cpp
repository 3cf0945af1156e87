#include "common/FileIdentity.h"

#include "common/Paths.h"

#include <sys/stat.h>

namespace common {

std::optional<FileIdentity> FileIdentity::of(const std::string& path) {
#if defined(_WIN32)
  struct _stat64 found {};
  if (_wstat64(pathOf(path).c_str(), &found) != 0) {
    return std::nullopt;
  }
  const int64_t changed = found.st_mtime;
#else
  struct stat found {};
  if (::stat(path.c_str(), &found) != 0) {
    return std::nullopt;
  }
  constexpr int64_t ticksPerSecond = 1'000'000'000;
  const int64_t changed = found.st_mtim.tv_sec * ticksPerSecond + found.st_mtim.tv_nsec;
#endif
  return FileIdentity{.device = static_cast<uint64_t>(found.st_dev),
                      .number = static_cast<uint64_t>(found.st_ino),
                      .size = static_cast<uint64_t>(found.st_size),
                      .changed = changed};
}

} // namespace common
