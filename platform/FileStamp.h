// FileStamp: whether a file is the one that it was, as far as that shows without reading it.
#pragma once

#include <QString>

#include <chrono>
#include <cstdint>
#include <optional>

namespace folivex::platform {

/// One state of one file. Every change of its bytes changes the stamp; what it tells are the
/// system's own numbers.
struct FileStamp {
  uint64_t device = 0;
  uint64_t number = 0;       ///< of the file on its device; 0 where the system does not tell
  uint64_t size = 0;         ///< in bytes
  int64_t written = 0;       ///< last write, in nanoseconds since 1970
  int64_t statusChanged = 0; ///< like `written`, but nobody can set it; 0 where there is no such

  bool operator==(const FileStamp&) const = default;

  /// Whether both are the same state of one file, whatever was done to its name and its rights.
  bool isSameContent(const FileStamp& other) const {
    return device == other.device && number == other.number && size == other.size &&
           written == other.written;
  }

  /// Whether nothing was changed since `moment`, nor so shortly before it that the next change
  /// could have the same time.
  bool isOlderThan(std::chrono::system_clock::time_point moment) const;

  /// Of the file or folder that `path` leads to; nothing when there is none.
  static std::optional<FileStamp> of(const QString& path);

  /// The same of a file that is about to be read. One that was written this very moment is waited
  /// for a little: a further write within one tick of the clock would not show.
  static std::optional<FileStamp> beforeReading(const QString& path);
};

} // namespace folivex::platform
