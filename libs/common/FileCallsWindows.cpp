#include "common/FileCalls.h"

#include <cerrno>
#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <share.h>
#include <sys/stat.h>
#include <system_error>
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

int processNumber() {
  return _getpid();
}

// A new file takes its access lists from its folder, which may well be open to others.
std::FILE* createNew(const std::filesystem::path& path, Readers /*readers*/, int& error) {
  int descriptor = -1;
  error = _wsopen_s(&descriptor, path.c_str(),
                    _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT, _SH_DENYWR,
                    _S_IREAD | _S_IWRITE);
  std::FILE* const file = error != 0 ? nullptr : _fdopen(descriptor, "wb");
  if (file != nullptr) {
    std::setvbuf(file, nullptr, _IONBF, 0);
  }
  return file;
}

int seekTo(std::FILE* file, uint64_t offset) {
  return _fseeki64(file, static_cast<int64_t>(offset), SEEK_SET) == 0 ? 0 : errno;
}

int dressLike(std::FILE* /*file*/, const std::filesystem::path& /*model*/) {
  return 0; // replace() hands it on
}

int settle(std::FILE* file) {
  return _commit(_fileno(file)) == 0 ? 0 : errno;
}

int replace(const std::filesystem::path& part, const std::filesystem::path& target,
            bool keepsDress) {
  if (keepsDress && ReplaceFileW(target.c_str(), part.c_str(), nullptr,
                                 REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr) != 0) {
    return 0;
  }
  return result(MoveFileExW(part.c_str(), target.c_str(),
                            MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH));
}

int moveToFreePlace(const std::filesystem::path& part, const std::filesystem::path& target) {
  return result(MoveFileExW(part.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH));
}

} // namespace common::files
