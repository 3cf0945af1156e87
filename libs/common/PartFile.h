// PartFile: the hidden file that becomes another one.
#pragma once

#include "common/FileCalls.h"

#include <filesystem>
#include <memory>
#include <utility>

namespace common {

/// Held locked, so that every process sees that it is in use, and gone with this object unless it
/// was moved. What a killed process leaves is removed by the next one that comes by. As long as all
/// who want a name take its part first, whoever has the part has the name.
class PartFile {
public:
  /// The part of the file at `target`: in the same folder, the same one in every process.
  [[nodiscard]] static std::filesystem::path placeFor(const std::filesystem::path& target);

  /// Null when it cannot be made; `error` is EBUSY when another one has it.
  [[nodiscard]] static std::unique_ptr<PartFile> make(const std::filesystem::path& target,
                                                      files::Readers readers, int& error);
  ~PartFile();
  PartFile(const PartFile&) = delete;
  PartFile& operator=(const PartFile&) = delete;

  /// To be written and read, unbuffered.
  [[nodiscard]] std::FILE* file() const { return m_file; }

  /// Puts it at `target`, once. 0, or the system's error number.
  [[nodiscard]] int moveTo(const std::filesystem::path& target, files::Old old);

private:
  PartFile(std::filesystem::path place, std::FILE* file)
      : m_place(std::move(place)), m_file(file) {}

  std::filesystem::path m_place;
  std::FILE* m_file;
  bool m_isMoved = false;
};

} // namespace common
