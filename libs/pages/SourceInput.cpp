#include "SourceInput.h"

#include "common/Failure.h"
#include "common/Paths.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace pages {

SourceInput::SourceInput(const std::string& path, const std::atomic<bool>* stop)
    : m_name(path), m_stop(stop) {
  const std::filesystem::path place = common::pathOf(path);
  std::error_code error;
  const auto status = std::filesystem::status(place, error);
  if (error) {
    common::refuseToOpen(path, error.message());
  }
  // A folder opens for reading on some systems and a pipe would keep the run waiting for ever.
  if (!std::filesystem::is_regular_file(status)) {
    common::refuseToOpen(path, "it is no ordinary file");
  }
  m_file.rdbuf()->pubsetbuf(nullptr, 0);
  errno = 0;
  m_file.open(place, std::ios::binary);
  if (!m_file) {
    common::refuseToOpen(path, std::generic_category().message(errno));
  }
  m_file.seekg(0, std::ios::end);
  m_size = m_file.tellg();
  m_identity = common::FileIdentity::of(path).value_or(common::FileIdentity());
}

bool SourceInput::load(qpdf_offset_t position) {
  if (position >= m_blockStart &&
      position - m_blockStart < static_cast<qpdf_offset_t>(m_blockLength)) {
    return true;
  }
  if (position >= m_size) {
    return false;
  }
  if (m_stop != nullptr && *m_stop) {
    throw std::runtime_error("reading it was stopped");
  }
  // A little of what lies before comes along: the parser reads a header again from its first byte.
  constexpr qpdf_offset_t before = 1024;
  m_blockStart = std::max<qpdf_offset_t>(0, position - before);
  m_blockLength = 0;
  m_file.clear();
  m_file.seekg(m_blockStart);
  m_file.read(m_block.data(), static_cast<std::streamsize>(m_block.size()));
  m_blockLength = static_cast<size_t>(std::max<std::streamsize>(0, m_file.gcount()));
  if (position - m_blockStart >= static_cast<qpdf_offset_t>(m_blockLength)) {
    m_isCut = true;
    throw std::runtime_error("it cannot be read to its end any more");
  }
  return true;
}

qpdf_offset_t SourceInput::findAndSkipNextEOL() {
  const auto isAtEnd = [this] {
    const char ch = m_block[static_cast<size_t>(m_position - m_blockStart)];
    return ch == '\r' || ch == '\n';
  };
  while (load(m_position) && !isAtEnd()) {
    ++m_position;
  }
  const qpdf_offset_t lineEnd = m_position;
  while (load(m_position) && isAtEnd()) {
    ++m_position;
  }
  return lineEnd;
}

void SourceInput::seek(qpdf_offset_t offset, int whence) {
  const qpdf_offset_t base = whence == SEEK_SET ? 0 : (whence == SEEK_CUR ? m_position : m_size);
  if ((offset > 0 && base > INT64_MAX - offset) || base + offset < 0) {
    throw std::runtime_error(m_name + ": seek outside the file");
  }
  m_position = base + offset;
}

size_t SourceInput::read(char* target, size_t length) {
  setLastOffset(m_position);
  size_t done = 0;
  while (done < length && load(m_position)) {
    const auto inside = static_cast<size_t>(m_position - m_blockStart);
    const size_t part = std::min(length - done, m_blockLength - inside);
    std::memcpy(target + done, m_block.data() + inside, part);
    done += part;
    m_position += static_cast<qpdf_offset_t>(part);
  }
  return done;
}

} // namespace pages
