#include "SourceInput.h"

#include "common/Failure.h"
#include "common/FileCalls.h"
#include "common/Paths.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <system_error>

namespace pages {

SourceInput::SourceInput(const std::string& path, const std::atomic<bool>* stop,
                         common::Links links)
    : m_name(path), m_stop(stop), m_file(nullptr, &std::fclose) {
  int error = 0;
  m_file.reset(common::files::openToRead(common::pathOf(path), links, error));
  if (m_file == nullptr) {
    common::refuseToOpen(path, error == 0 ? "it is no ordinary file"
                                          : std::generic_category().message(error));
  }
  m_identity = common::FileIdentity::of(m_file.get());
  m_size = static_cast<qpdf_offset_t>(m_identity.size);
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
  if (common::files::seekTo(m_file.get(), static_cast<uint64_t>(m_blockStart)) == 0) {
    m_blockLength = std::fread(m_block.data(), 1, m_block.size(), m_file.get());
  }
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
