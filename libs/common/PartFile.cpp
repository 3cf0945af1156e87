#include "common/PartFile.h"

#include <array>
#include <cinttypes>
#include <cstdint>
#include <system_error>
#include <type_traits>
#include <utility>

namespace common {

namespace {

/// FNV-1a, of the name's bytes.
uint64_t hashOf(const std::filesystem::path::string_type& name) {
  using Unit = std::make_unsigned_t<std::filesystem::path::value_type>;
  uint64_t hash = 0xcbf29ce484222325;
  for (const auto unit : name) {
    hash = (hash ^ static_cast<Unit>(unit)) * 0x100000001b3;
  }
  return hash;
}

} // namespace

std::filesystem::path PartFile::placeFor(const std::filesystem::path& target) {
  // Short, so that a target of the longest possible name still has room for it.
  std::array<char, 32> name{};
  std::snprintf(name.data(), name.size(), ".folivex-%016" PRIx64 ".part",
                hashOf(target.filename().native()));
  return target.parent_path() / name.data();
}

std::unique_ptr<PartFile> PartFile::make(const std::filesystem::path& target,
                                         files::Readers readers, int& error) {
  std::filesystem::path place = placeFor(target);
  std::FILE* const file = files::createLocked(place, readers, error);
  return file == nullptr ? nullptr
                         : std::unique_ptr<PartFile>(new PartFile(std::move(place), file));
}

PartFile::~PartFile() {
  if (m_isMoved) {
    return;
  }
  std::error_code ignored;
#if !defined(_WIN32)
  // While it is locked nobody takes it for left behind, and makes another one.
  std::filesystem::remove(m_place, ignored);
#endif
  if (m_file != nullptr) {
    std::fclose(m_file);
  }
#if defined(_WIN32)
  std::filesystem::remove(m_place, ignored);
#endif
}

int PartFile::moveTo(const std::filesystem::path& target, files::Old old) {
  const int error = files::moveAndClose(m_file, m_place, target, old);
  m_isMoved = error == 0;
  return error;
}

} // namespace common
