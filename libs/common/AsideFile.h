// AsideFile: a file that appears whole or not at all.
#pragma once

#include "common/PartFile.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace common {

struct AsideOptions {
  /// The target's part, where it was taken before: then nothing may be at the target when all is
  /// written, else keep() fails. Without it a file that is there gives way.
  std::unique_ptr<PartFile> claim = {};
  /// Path (UTF-8) of the file whose mode, owner and access lists the new one gets, as far as the
  /// system allows; nobody else can read it before. Empty: it is a new file like any other.
  std::string model = {};
  /// Whether the name never stands for bytes that a power failure has taken; both may be lost
  /// together. Without it thousands of outputs are not held up by the disk: their bytes are on
  /// their way there when they are kept.
  bool outlastsPowerFailure = false;
};

/// Written to its part, a file takes the target's place at keep(); without that nothing of it
/// stays, and what was at the target is as it was. A link at the target is replaced and not
/// followed.
///
/// Every operation throws Failure `cannotWrite` that names the target and the system's reason.
class AsideFile {
public:
  /// Refuses a target that is there and no ordinary file: a folder or device is never replaced; and
  /// one that another process is writing.
  explicit AsideFile(const std::string& target, AsideOptions options = {});

  /// Adds bytes at the end. Small pieces are collected: most outputs are written in one go.
  void append(std::string_view bytes);

  /// Hands the bytes appended so far to the system: the part holds them.
  void flush();

  /// Replaces bytes that were appended before; all of them must exist.
  void overwrite(uint64_t offset, std::string_view bytes);

  /// Bytes appended so far.
  [[nodiscard]] uint64_t size() const { return m_written + m_pending.size(); }

  /// Hands on all bytes, in their order.
  void read(const std::function<void(std::string_view)>& take);

  /// Completes the file and puts it in the target's place, once. Tells the file that is there now.
  FileIdentity keep();

private:
  [[noreturn]] void fail(int error) const;
  void open();

  std::string m_target;
  AsideOptions m_options;
  std::filesystem::path m_place;
  std::unique_ptr<PartFile> m_part;
  bool m_isClaimed;
  std::string m_pending;
  uint64_t m_written = 0;
};

} // namespace common
