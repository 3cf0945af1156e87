#include "common/FileCalls.h"

#include <cerrno>
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#include <system_error>
#include <utility>
#include <windows.h>

namespace common::files {

namespace {

int errorNumber(DWORD error) {
  const auto condition = std::system_category().default_error_condition(static_cast<int>(error));
  return condition.category() == std::generic_category() ? condition.value() : EIO;
}

int result(BOOL isDone) {
  return isDone != 0 ? 0 : errorNumber(GetLastError());
}

} // namespace

// A new file takes its access lists from its folder, which may well be open to others. Whoever has
// it open shares neither writing nor deleting, which is its lock.
std::FILE* createLocked(const std::filesystem::path& path, Readers readers, int& error) {
  int descriptor = -1;
  error =
      _wsopen_s(&descriptor, path.c_str(), _O_RDWR | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT,
                _SH_DENYWR, _S_IREAD | _S_IWRITE);
  if (error == EEXIST) {
    error = removeUnused(path);
    return error == 0 || error == ENOENT ? createLocked(path, readers, error) : nullptr;
  }
  std::FILE* const file = error != 0 ? nullptr : _fdopen(descriptor, "w+b");
  if (file != nullptr) {
    std::setvbuf(file, nullptr, _IONBF, 0);
  }
  return file;
}

int removeUnused(const std::filesystem::path& path) {
  if (DeleteFileW(path.c_str()) != 0) {
    return 0;
  }
  return GetLastError() == ERROR_FILE_NOT_FOUND ? ENOENT : EBUSY;
}

std::FILE* openToRead(const std::filesystem::path& path, Links links, int& error) {
  std::error_code ignored;
  const auto status = std::filesystem::status(path, ignored);
  error = 0;
  if ((std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) ||
      (links == Links::Refused && std::filesystem::is_symlink(path, ignored))) {
    return nullptr;
  }
  int descriptor = -1;
  error = _wsopen_s(&descriptor, path.c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT, _SH_DENYNO,
                    _S_IREAD);
  std::FILE* const file = error != 0 ? nullptr : _fdopen(descriptor, "rb");
  if (file != nullptr) {
    std::setvbuf(file, nullptr, _IONBF, 0);
  }
  return file;
}

int seekTo(std::FILE* file, uint64_t offset) {
  return _fseeki64(file, static_cast<int64_t>(offset), SEEK_SET) == 0 ? 0 : errno;
}

int dressLike(std::FILE* /*file*/, const std::filesystem::path& /*model*/) {
  return 0; // moveAndClose() hands it on
}

void beginToSettle(std::FILE* /*file*/) {}

int settle(std::FILE* file) {
  return _commit(_fileno(file)) == 0 ? 0 : errno;
}

int tellLateErrors(std::FILE* /*file*/) {
  return 0;
}

// What is open cannot be moved. Nobody takes it for left behind in between, or the move fails.
int moveAndClose(std::FILE*& file, const std::filesystem::path& part,
                 const std::filesystem::path& target, Old old) {
  if (std::fclose(std::exchange(file, nullptr)) != 0) {
    return errno;
  }
  if (old == Old::HandsOn && ReplaceFileW(target.c_str(), part.c_str(), nullptr,
                                          REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr) != 0) {
    return 0;
  }
  const DWORD replaces = old == Old::None ? 0 : MOVEFILE_REPLACE_EXISTING;
  return result(MoveFileExW(part.c_str(), target.c_str(), replaces | MOVEFILE_WRITE_THROUGH));
}

} // namespace common::files
