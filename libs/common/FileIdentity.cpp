#include "common/FileIdentity.h"

#include <sys/stat.h>

namespace common {

namespace {

FileIdentity identityIn(const struct stat& found) {
  constexpr int64_t ticksPerSecond = 1'000'000'000;
  return {.device = static_cast<uint64_t>(found.st_dev),
          .number = static_cast<uint64_t>(found.st_ino),
          .size = static_cast<uint64_t>(found.st_size),
          .changed = found.st_mtim.tv_sec * ticksPerSecond + found.st_mtim.tv_nsec};
}

} // namespace

std::optional<FileIdentity> FileIdentity::of(const std::string& path, Links links) {
  struct stat found {};
  const bool isThere = links == Links::Followed ? ::stat(path.c_str(), &found) == 0
                                                : ::lstat(path.c_str(), &found) == 0;
  return isThere ? std::optional(identityIn(found)) : std::nullopt;
}

FileIdentity FileIdentity::of(std::FILE* file) {
  struct stat found {};
  ::fstat(::fileno(file), &found);
  return identityIn(found);
}

} // namespace common
