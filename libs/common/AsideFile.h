// AsideFile: a file that appears whole or not at all.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

namespace common {

struct AsideOptions {
  /// Whether a file that is at the target when all is written gives way; else keep() fails.
  bool mayReplace = true;
  /// Path (UTF-8) of the file whose mode, owner and access lists the new one gets, as far as the
  /// system allows; nobody else can read it before. Empty: it is a new file like any other.
  std::string model = {};
  /// Whether the name never stands for bytes that a power failure has taken; both may be lost
  /// together. Without it thousands of outputs are not held up by the disk.
  bool outlastsPowerFailure = false;
};

/// Written under a hidden name of its own in the target's folder, a file takes the target's place
/// at keep(); without that nothing of it stays, and what was at the target is as it was. A link at
/// the target is replaced and not followed (see linkEnd()).
///
/// Every operation throws Failure `cannotWrite` that names the target and the system's reason.
class AsideFile {
public:
  /// Refuses a target that is there and no ordinary file: a folder or device is never replaced.
  explicit AsideFile(const std::string& target, const AsideOptions& options = {});
  ~AsideFile();
  AsideFile(const AsideFile&) = delete;
  AsideFile& operator=(const AsideFile&) = delete;

  /// Adds bytes at the end. Small pieces are collected: most outputs are written in one go.
  void append(std::string_view bytes);

  /// Replaces bytes that were appended before; all of them must exist.
  void overwrite(uint64_t offset, std::string_view bytes);

  /// Bytes appended so far.
  [[nodiscard]] uint64_t size() const { return m_written + m_pending.size(); }

  /// Completes the file and puts it in the target's place, once.
  void keep();

private:
  [[noreturn]] void fail(int error) const;
  void open();
  void flush();
  void drop();

  std::string m_target;
  AsideOptions m_options;
  std::filesystem::path m_place;
  std::filesystem::path m_part;
  std::FILE* m_file = nullptr;
  std::string m_pending;
  uint64_t m_written = 0;
};

} // namespace common
