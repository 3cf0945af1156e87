#include "common/AsideFile.h"

#include "common/Failure.h"
#include "common/FileCalls.h"
#include "common/Paths.h"

#include <cerrno>
#include <system_error>
#include <utility>
#include <vector>

namespace common {

namespace {

constexpr size_t flushSize = size_t{1024} * 1024;

} // namespace

AsideFile::AsideFile(const std::string& target, AsideOptions options)
    : m_target(target), m_options(std::move(options)), m_place(pathOf(target)),
      m_part(std::move(m_options.claim)), m_isClaimed(m_part != nullptr) {
  if (m_part == nullptr) {
    open();
  }
}

void AsideFile::open() {
  std::error_code ignored;
  const auto status = std::filesystem::status(m_place, ignored);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    refuseToWrite(m_target, "something that is no ordinary file is there");
  }
  if (!m_place.has_filename()) {
    refuseToWrite(m_target, "it names no file");
  }
  const auto readers = m_options.model.empty() ? files::Readers::Usual : files::Readers::OwnerAlone;
  int error = 0;
  m_part = PartFile::make(m_place, readers, error);
  if (error == EBUSY) {
    refuseToWrite(m_target, "another program is writing it");
  }
  if (m_part == nullptr) {
    fail(error);
  }
  if (!m_options.model.empty()) {
    error = files::dressLike(m_part->file(), pathOf(m_options.model));
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
  std::FILE* const file = m_part->file();
  const bool done = files::seekTo(file, offset) == 0 &&
                    std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() &&
                    files::seekTo(file, m_written) == 0;
  if (!done) {
    fail(errno);
  }
}

void AsideFile::flush() {
  errno = 0;
  if (std::fwrite(m_pending.data(), 1, m_pending.size(), m_part->file()) != m_pending.size()) {
    fail(errno);
  }
  m_written += m_pending.size();
  m_pending.clear();
}

void AsideFile::read(const std::function<void(std::string_view)>& take) {
  if (m_written == 0) {
    take(m_pending);
    return;
  }
  flush();
  errno = 0;
  std::FILE* const file = m_part->file();
  std::vector<char> block(flushSize);
  uint64_t left = files::seekTo(file, 0) == 0 ? m_written : 0;
  size_t got = 1;
  while (left > 0 && got > 0) {
    got = std::fread(block.data(), 1, block.size(), file);
    take({block.data(), got});
    left -= got;
  }
  if (left > 0 || files::seekTo(file, m_written) != 0) {
    fail(errno);
  }
}

FileIdentity AsideFile::keep() {
  flush();
  std::FILE* const file = m_part->file();
  int error = 0;
  if (m_options.outlastsPowerFailure) {
    error = files::settle(file);
  } else {
    files::beginToSettle(file);
  }
  if (error == 0) {
    error = files::tellLateErrors(file);
  }
  if (error != 0) {
    fail(error);
  }
  const FileIdentity kept = FileIdentity::of(file);
  const auto replaced = m_options.model.empty() ? files::Old::Replaced : files::Old::HandsOn;
  error = m_part->moveTo(m_place, m_isClaimed ? files::Old::None : replaced);
  if (m_isClaimed && error == EEXIST) {
    refuseToWrite(m_target, "another program has put a file there");
  }
  if (error == EBUSY) {
    refuseToWrite(m_target, "another program has it open");
  }
  if (error != 0) {
    fail(error);
  }
  m_part.reset();
  return kept;
}

void AsideFile::fail(int error) const {
  refuseToWrite(m_target, error == 0 ? "writing failed" : std::generic_category().message(error));
}

} // namespace common
