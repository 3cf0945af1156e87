#include "common/AsideFile.h"

#include "common/Failure.h"
#include "common/FileCalls.h"
#include "common/Paths.h"

#include <atomic>
#include <cerrno>
#include <system_error>
#include <utility>

namespace common {

namespace {

constexpr size_t flushSize = size_t{1024} * 1024;

/// A short name, so that a target of the longest possible name still has room for its part file.
std::string partName() {
  static std::atomic<uint32_t> count{0};
  return ".folivex-" + std::to_string(files::processNumber()) + "-" + std::to_string(++count) +
         ".part";
}

} // namespace

AsideFile::AsideFile(const std::string& target, const AsideOptions& options)
    : m_target(target), m_options(options), m_place(pathOf(target)) {
  std::error_code ignored;
  const auto status = std::filesystem::status(m_place, ignored);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    refuseToWrite(target, "something that is no ordinary file is there");
  }
  if (!m_place.has_filename()) {
    refuseToWrite(target, "it names no file");
  }
  try {
    open();
  } catch (...) {
    drop();
    throw;
  }
}

AsideFile::~AsideFile() {
  drop();
}

void AsideFile::open() {
  const auto readers = m_options.model.empty() ? files::Readers::Usual : files::Readers::OwnerAlone;
  int error = EEXIST;
  // A part file of a run that was killed may carry the same process number.
  for (int attempt = 0; attempt < 1000 && error == EEXIST; ++attempt) {
    m_part = m_place.parent_path() / partName();
    m_file = files::createNew(m_part, readers, error);
  }
  if (m_file == nullptr) {
    m_part.clear();
    fail(error);
  }
  if (!m_options.model.empty()) {
    error = files::dressLike(m_file, pathOf(m_options.model));
    if (error != 0) {
      fail(error);
    }
  }
}

void AsideFile::append(std::string_view bytes) {
  m_pending.append(bytes);
  if (m_pending.size() >= flushSize) {
    flush();
  }
}

void AsideFile::overwrite(uint64_t offset, std::string_view bytes) {
  if (offset < m_written && offset + bytes.size() > m_written) {
    flush();
  }
  if (offset >= m_written) {
    m_pending.replace(static_cast<size_t>(offset - m_written), bytes.size(), bytes);
    return;
  }
  errno = 0;
  const bool done = files::seekTo(m_file, offset) == 0 &&
                    std::fwrite(bytes.data(), 1, bytes.size(), m_file) == bytes.size() &&
                    files::seekTo(m_file, m_written) == 0;
  if (!done) {
    fail(errno);
  }
}

void AsideFile::flush() {
  errno = 0;
  if (std::fwrite(m_pending.data(), 1, m_pending.size(), m_file) != m_pending.size()) {
    fail(errno);
  }
  m_written += m_pending.size();
  m_pending.clear();
}

void AsideFile::keep() {
  flush();
  int error = m_options.outlastsPowerFailure ? files::settle(m_file) : 0;
  if (error != 0) {
    fail(error);
  }
  errno = 0;
  if (std::fclose(std::exchange(m_file, nullptr)) != 0) {
    fail(errno);
  }
  error = m_options.mayReplace ? files::replace(m_part, m_place, !m_options.model.empty())
                               : files::moveToFreePlace(m_part, m_place);
  if (error != 0) {
    fail(error);
  }
  m_part.clear();
}

void AsideFile::fail(int error) const {
  refuseToWrite(m_target, error == 0 ? "writing failed" : std::generic_category().message(error));
}

void AsideFile::drop() {
  if (m_file != nullptr) {
    std::fclose(m_file);
    m_file = nullptr;
  }
  if (!m_part.empty()) {
    std::error_code ignored;
    std::filesystem::remove(m_part, ignored);
  }
}

} // namespace common
