// FileLock: one process at a time replaces a file.
#pragma once

#include <string>

namespace common {

/// Held while the file at a path is read and then replaced, so that of two processes that do so the
/// second one reads what the first one wrote. It binds only those who ask for it.
class FileLock {
public:
  /// Waits until no other process holds the lock of the file at `path` (UTF-8). Throws Failure:
  /// `cannotOpen` when there is none, `cannotWrite` when a link is there, or another process still
  /// holds the lock after half a minute. Where files cannot be locked there is nothing to wait for.
  explicit FileLock(const std::string& path);
  ~FileLock();
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

private:
  FileLock() = default;
  void open(const std::string& path);
  /// True where files cannot be locked, too.
  [[nodiscard]] bool tryLock() const;
  void close();

#if defined(_WIN32)
  void* m_file = nullptr;
#else
  int m_file = -1;
#endif
};

} // namespace common
