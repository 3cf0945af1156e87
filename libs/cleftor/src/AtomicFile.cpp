#include "AtomicFile.h"

#include "Failure.h"
#include "Paths.h"
#include "cleftor/cleftor.h"

#include <atomic>
#include <cerrno>
#include <system_error>

#if defined(_WIN32)
#include <process.h>
#else
#include <unistd.h>
#endif

namespace cleftor {

namespace {

constexpr size_t flushSize = size_t{1024} * 1024;

int processNumber() {
#if defined(_WIN32)
  return _getpid();
#else
  return static_cast<int>(getpid());
#endif
}

/** A short name, so that a target of the longest possible name still has room for its part file. */
std::string partName() {
  static std::atomic<uint32_t> count{0};
  return ".cleftor-" + std::to_string(processNumber()) + "-" + std::to_string(++count) + ".part";
}

/** Creates a file that must not be there, for reading back nothing and writing at any place. */
std::FILE* createNew(const std::filesystem::path& path) {
#if defined(_WIN32)
  return _wfopen(path.c_str(), L"wbx");
#else
  return std::fopen(path.c_str(), "wbxe");
#endif
}

int seekTo(std::FILE* file, uint64_t offset) {
#if defined(_WIN32)
  return _fseeki64(file, static_cast<int64_t>(offset), SEEK_SET);
#else
  return fseeko(file, static_cast<off_t>(offset), SEEK_SET);
#endif
}

} // namespace

AtomicFile::AtomicFile(const std::string& target) : m_target(target), m_place(pathOf(target)) {
  std::error_code ignored;
  const auto status = std::filesystem::status(m_place, ignored);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    throw Failure(CLEFTOR_CANNOT_WRITE, "Unable to write \"" + m_target +
                                            "\": something that is no ordinary file is there");
  }
  if (!m_place.has_filename()) {
    throw Failure(CLEFTOR_CANNOT_WRITE, "Unable to write \"" + m_target + "\": it names no file");
  }
  open();
}

AtomicFile::~AtomicFile() {
  drop();
}

void AtomicFile::open() {
  // A part file of a run that was killed may carry the same process number.
  for (int attempt = 0; attempt < 1000 && m_file == nullptr; ++attempt) {
    m_part = m_place.parent_path() / partName();
    errno = 0;
    m_file = createNew(m_part);
    if (m_file == nullptr && errno != EEXIST) {
      break;
    }
  }
  if (m_file == nullptr) {
    const int error = errno;
    m_part.clear();
    fail(error);
  }
  std::setvbuf(m_file, nullptr, _IONBF, 0);
}

void AtomicFile::append(std::string_view bytes) {
  m_pending.append(bytes);
  if (m_pending.size() >= flushSize) {
    flush();
  }
}

void AtomicFile::overwrite(uint64_t offset, std::string_view bytes) {
  if (offset < m_written && offset + bytes.size() > m_written) {
    flush();
  }
  if (offset >= m_written) {
    m_pending.replace(static_cast<size_t>(offset - m_written), bytes.size(), bytes);
    return;
  }
  errno = 0;
  const bool done = seekTo(m_file, offset) == 0 &&
                    std::fwrite(bytes.data(), 1, bytes.size(), m_file) == bytes.size() &&
                    seekTo(m_file, m_written) == 0;
  if (!done) {
    fail(errno);
  }
}

void AtomicFile::flush() {
  errno = 0;
  if (std::fwrite(m_pending.data(), 1, m_pending.size(), m_file) != m_pending.size()) {
    fail(errno);
  }
  m_written += m_pending.size();
  m_pending.clear();
}

void AtomicFile::keep() {
  flush();
  std::FILE* const file = m_file;
  m_file = nullptr;
  errno = 0;
  if (std::fclose(file) != 0) {
    fail(errno);
  }
  std::error_code error;
  std::filesystem::rename(m_part, m_place, error);
  if (error) {
    throw Failure(CLEFTOR_CANNOT_WRITE, "Unable to write \"" + m_target + "\": " + error.message());
  }
  m_part.clear();
}

void AtomicFile::fail(int error) const {
  const std::string reason = error == 0 ? "writing failed" : std::generic_category().message(error);
  throw Failure(CLEFTOR_CANNOT_WRITE, "Unable to write \"" + m_target + "\": " + reason);
}

void AtomicFile::drop() {
  if (m_file != nullptr) {
    std::fclose(m_file);
    m_file = nullptr;
  }
  if (!m_part.empty()) {
    std::error_code ignored;
    std::filesystem::remove(m_part, ignored);
  }
}

} // namespace cleftor
