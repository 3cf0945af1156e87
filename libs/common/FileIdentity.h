// FileIdentity: whether a path still leads to the file that it led to.
#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

namespace common {

/// What becomes of a link in the place of a file.
enum class Links { Followed, Refused };

/// Tells one state of a file from another, and from what may have taken its place, without reading
/// it.
struct FileIdentity {
  uint64_t device = 0;
  uint64_t number = 0; ///< of the file on its device; 0 where the system does not tell
  uint64_t size = 0;   ///< in bytes
  int64_t changed = 0; ///< last write, in nanoseconds since 1970

  bool operator==(const FileIdentity&) const = default;

  /// Of what is at `path` (UTF-8); nothing when there is nothing. A link that is not followed has
  /// an identity of its own.
  [[nodiscard]] static std::optional<FileIdentity> of(const std::string& path,
                                                      Links links = Links::Followed);
  /// Of an open file, whatever its name leads to by now.
  [[nodiscard]] static FileIdentity of(std::FILE* file);
};

} // namespace common
