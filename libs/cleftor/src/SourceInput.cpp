#include "SourceInput.h"

#include "Failure.h"
#include "Paths.h"
#include "cleftor/cleftor.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace cleftor {

namespace {

constexpr size_t blockSize = size_t{64} * 1024;

[[noreturn]] void refuse(const std::string& path, const std::string& reason) {
  throw Failure(CLEFTOR_CANNOT_OPEN, "Unable to open \"" + path + "\": " + reason);
}

} // namespace

SourceInput::SourceInput(const std::string& path) : name_(path), block_(blockSize) {
  const std::filesystem::path place = pathOf(path);
  std::error_code error;
  const auto status = std::filesystem::status(place, error);
  if (error) {
    refuse(path, error.message());
  }
  // A folder opens for reading on some systems and a pipe would keep the run waiting for ever.
  if (!std::filesystem::is_regular_file(status)) {
    refuse(path, "it is no ordinary file");
  }
  file_.rdbuf()->pubsetbuf(nullptr, 0);
  errno = 0;
  file_.open(place, std::ios::binary);
  if (!file_) {
    refuse(path, std::generic_category().message(errno));
  }
  file_.seekg(0, std::ios::end);
  size_ = file_.tellg();
}

bool SourceInput::load(qpdf_offset_t position) {
  if (position >= blockStart_ &&
      position - blockStart_ < static_cast<qpdf_offset_t>(blockLength_)) {
    return true;
  }
  if (position >= size_) {
    return false;
  }
  // A little of what lies before comes along: the parser reads a header again from its first byte.
  constexpr qpdf_offset_t before = 1024;
  blockStart_ = std::max<qpdf_offset_t>(0, position - before);
  blockLength_ = 0;
  file_.clear();
  file_.seekg(blockStart_);
  file_.read(block_.data(), static_cast<std::streamsize>(block_.size()));
  blockLength_ = static_cast<size_t>(std::max<std::streamsize>(0, file_.gcount()));
  return position - blockStart_ < static_cast<qpdf_offset_t>(blockLength_);
}

qpdf_offset_t SourceInput::findAndSkipNextEOL() {
  bool seen = false;
  qpdf_offset_t lineEnd = 0;
  while (load(position_)) {
    const char* begin = block_.data() + (position_ - blockStart_);
    const char* const end = block_.data() + blockLength_;
    const char* at = begin;
    if (!seen) {
      at = std::find_if(begin, end, [](char ch) { return ch == '\r' || ch == '\n'; });
      seen = at != end;
      lineEnd = position_ + (at - begin);
    }
    const char* after = std::find_if(at, end, [](char ch) { return ch != '\r' && ch != '\n'; });
    position_ += after - begin;
    if (seen && after != end) {
      break;
    }
  }
  return seen ? lineEnd : position_;
}

const std::string& SourceInput::getName() const {
  return name_;
}

qpdf_offset_t SourceInput::tell() {
  return position_;
}

void SourceInput::seek(qpdf_offset_t offset, int whence) {
  const qpdf_offset_t base = whence == SEEK_SET ? 0 : (whence == SEEK_CUR ? position_ : size_);
  if ((offset > 0 && base > INT64_MAX - offset) || base + offset < 0) {
    throw std::runtime_error(name_ + ": seek outside the file");
  }
  position_ = base + offset;
}

void SourceInput::rewind() {
  position_ = 0;
}

size_t SourceInput::read(char* target, size_t length) {
  setLastOffset(position_);
  size_t done = 0;
  while (done < length && load(position_)) {
    const auto inside = static_cast<size_t>(position_ - blockStart_);
    const size_t part = std::min(length - done, blockLength_ - inside);
    std::memcpy(target + done, block_.data() + inside, part);
    done += part;
    position_ += static_cast<qpdf_offset_t>(part);
  }
  return done;
}

void SourceInput::unreadCh(char /*ch*/) {
  if (position_ > 0) {
    --position_;
  }
}

} // namespace cleftor
