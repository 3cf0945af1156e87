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

AtomicFile::AtomicFile(const std::string& target) : target_(target), place_(pathOf(target)) {
  std::error_code ignored;
  const auto status = std::filesystem::status(place_, ignored);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    throw Failure(CLEFTOR_CANNOT_WRITE, "Unable to write \"" + target_ +
                                            "\": something that is no ordinary file is there");
  }
  if (!place_.has_filename()) {
    throw Failure(CLEFTOR_CANNOT_WRITE, "Unable to write \"" + target_ + "\": it names no file");
  }
  open();
}

AtomicFile::~AtomicFile() {
  drop();
}

void AtomicFile::open() {
  // A part file of a run that was killed may carry the same process number.
  for (int attempt = 0; attempt < 1000 && file_ == nullptr; ++attempt) {
    part_ = place_.parent_path() / partName();
    errno = 0;
    file_ = createNew(part_);
    if (file_ == nullptr && errno != EEXIST) {
      break;
    }
  }
  if (file_ == nullptr) {
    const int error = errno;
    part_.clear();
    fail(error);
  }
  std::setvbuf(file_, nullptr, _IONBF, 0);
}

void AtomicFile::append(std::string_view bytes) {
  pending_.append(bytes);
  if (pending_.size() >= flushSize) {
    flush();
  }
}

void AtomicFile::overwrite(uint64_t offset, std::string_view bytes) {
  if (offset < written_ && offset + bytes.size() > written_) {
    flush();
  }
  if (offset >= written_) {
    pending_.replace(static_cast<size_t>(offset - written_), bytes.size(), bytes);
    return;
  }
  errno = 0;
  const bool done = seekTo(file_, offset) == 0 &&
                    std::fwrite(bytes.data(), 1, bytes.size(), file_) == bytes.size() &&
                    seekTo(file_, written_) == 0;
  if (!done) {
    fail(errno);
  }
}

void AtomicFile::flush() {
  errno = 0;
  if (std::fwrite(pending_.data(), 1, pending_.size(), file_) != pending_.size()) {
    fail(errno);
  }
  written_ += pending_.size();
  pending_.clear();
}

void AtomicFile::keep() {
  flush();
  std::FILE* const file = file_;
  file_ = nullptr;
  errno = 0;
  if (std::fclose(file) != 0) {
    fail(errno);
  }
  std::error_code error;
  std::filesystem::rename(part_, place_, error);
  if (error) {
    throw Failure(CLEFTOR_CANNOT_WRITE, "Unable to write \"" + target_ + "\": " + error.message());
  }
  part_.clear();
}

void AtomicFile::fail(int error) const {
  const std::string reason = error == 0 ? "writing failed" : std::generic_category().message(error);
  throw Failure(CLEFTOR_CANNOT_WRITE, "Unable to write \"" + target_ + "\": " + reason);
}

void AtomicFile::drop() {
  if (file_ != nullptr) {
    std::fclose(file_);
    file_ = nullptr;
  }
  if (!part_.empty()) {
    std::error_code ignored;
    std::filesystem::remove(part_, ignored);
  }
}

} // namespace cleftor
