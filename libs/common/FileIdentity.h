// FileIdentity: whether a path still leads to the file that it led to.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace common {

/// Tells one state of a file from another, and from what may have taken its place, without reading
/// it.
struct FileIdentity {
  uint64_t device = 0;
  uint64_t number = 0; ///< of the file on its device; 0 where the system does not tell
  uint64_t size = 0;   ///< in bytes
  int64_t changed = 0; ///< last write, in the system's finest ticks

  bool operator==(const FileIdentity&) const = default;

  /// Of what `path` (UTF-8) leads to, links followed; nothing when there is nothing.
  [[nodiscard]] static std::optional<FileIdentity> of(const std::string& path);
};

} // namespace common
