#include "common/FileCalls.h"
#include "common/WindowsFile.h"

#include <cerrno>
#include <fcntl.h>
#include <io.h>
#include <system_error>
#include <utility>
#include <vector>

namespace common::files {

namespace {

int errorNumber(DWORD error) {
  const auto condition = std::system_category().default_error_condition(static_cast<int>(error));
  return condition.category() == std::generic_category() ? condition.value() : EIO;
}

HANDLE handleOf(std::FILE* file) {
  return reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)));
}

/// Unbuffered; null when there is no room for it.
std::FILE* streamOf(Handle file, int flags, const char* mode) {
  const int descriptor = _open_osfhandle(reinterpret_cast<intptr_t>(file.get()), flags | _O_BINARY);
  if (descriptor < 0) {
    return nullptr;
  }
  static_cast<void>(file.release());
  std::FILE* const stream = _fdopen(descriptor, mode);
  if (stream == nullptr) {
    _close(descriptor);
  } else {
    std::setvbuf(stream, nullptr, _IONBF, 0);
  }
  return stream;
}

/// A file that somebody has open is not replaced, which the system tells in several ways.
int whyNotReplaced(DWORD error, const std::filesystem::path& target) {
  if (error == ERROR_ACCESS_DENIED && openThere(target, DELETE, 0, Links::Refused) == nullptr &&
      GetLastError() == ERROR_SHARING_VIOLATION) {
    return EBUSY;
  }
  return errorNumber(error);
}

/// While it is open and locked, so that nobody comes in between.
int rename(HANDLE file, const std::filesystem::path& target, Old old) {
  const std::wstring name = longForm(std::filesystem::absolute(target).make_preferred());
  const size_t nameBytes = name.size() * sizeof(wchar_t);
  // Room for the zero behind the name is in the structure.
  std::vector<std::byte> room(sizeof(FILE_RENAME_INFO) + nameBytes);
  auto* const wanted = reinterpret_cast<FILE_RENAME_INFO*>(room.data());
  wanted->ReplaceIfExists = old == Old::None ? FALSE : TRUE;
  wanted->FileNameLength = static_cast<DWORD>(nameBytes);
  name.copy(wanted->FileName, name.size());
  const auto size = static_cast<DWORD>(room.size());
  return SetFileInformationByHandle(file, FileRenameInfo, wanted, size) != 0
             ? 0
             : whyNotReplaced(GetLastError(), target);
}

/// As close to the other file as can be: the new one gets its access lists, streams and times of
/// making.
int replace(const std::filesystem::path& part, const std::filesystem::path& target) {
  if (openThere(target, DELETE, shareAll, Links::Refused) == nullptr &&
      GetLastError() == ERROR_SHARING_VIOLATION) {
    return EBUSY; // else a try may leave a file of its own behind
  }
  const std::wstring from = longForm(part);
  const std::wstring to = longForm(target);
  const bool isDone = ReplaceFileW(to.c_str(), from.c_str(), nullptr,
                                   REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr) != 0 ||
                      MoveFileExW(from.c_str(), to.c_str(),
                                  MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
  return isDone ? 0 : whyNotReplaced(GetLastError(), target);
}

/// Else the system tells another time of the last write when the file is closed.
void fixTime(std::FILE* file) {
  FILETIME now{};
  GetSystemTimeAsFileTime(&now);
  SetFileTime(handleOf(file), nullptr, nullptr, &now);
}

} // namespace

// A new file takes its access lists from its folder, which may well be open to others. Whoever has
// it open shares neither writing nor deleting, which is its lock.
std::FILE* createLocked(const std::filesystem::path& path, Readers /*readers*/, int& error) {
  constexpr int attempts = 100; // each time round somebody else has taken or removed what was there
  error = EEXIST;
  for (int attempt = 0; attempt < attempts && error == EEXIST; ++attempt) {
    const HANDLE made =
        CreateFileW(longForm(path).c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, FILE_SHARE_READ,
                    nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (made != INVALID_HANDLE_VALUE) {
      std::FILE* const file = streamOf(Handle(made), _O_RDWR, "w+b");
      error = file != nullptr ? 0 : EMFILE;
      return file;
    }
    error = errorNumber(GetLastError());
    if (error == EEXIST) {
      const int removed = removeUnused(path);
      error = removed == 0 || removed == ENOENT ? EEXIST : removed;
    }
  }
  error = error == EEXIST ? EBUSY : error;
  return nullptr;
}

int removeUnused(const std::filesystem::path& path) {
  if (DeleteFileW(longForm(path).c_str()) != 0) {
    return 0;
  }
  return errorNumber(GetLastError()) == ENOENT ? ENOENT : EBUSY;
}

std::FILE* openToRead(const std::filesystem::path& path, Links links, int& error) {
  // Who replaces it meanwhile is not kept off, as nowhere: FileIdentity tells.
  Handle file = openThere(path, GENERIC_READ, shareAll, links);
  error = file == nullptr ? errorNumber(GetLastError()) : 0;
  BY_HANDLE_FILE_INFORMATION found{};
  if (file == nullptr || GetFileType(file.get()) != FILE_TYPE_DISK ||
      GetFileInformationByHandle(file.get(), &found) == 0 ||
      (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ||
      (links == Links::Refused && isLink(file.get()))) {
    return nullptr;
  }
  std::FILE* const stream = streamOf(std::move(file), _O_RDONLY, "rb");
  error = stream != nullptr ? 0 : EMFILE;
  return stream;
}

int seekTo(std::FILE* file, uint64_t offset) {
  return _fseeki64(file, static_cast<int64_t>(offset), SEEK_SET) == 0 ? 0 : errno;
}

int dressLike(std::FILE* /*file*/, const std::filesystem::path& /*model*/) {
  return 0; // moveAndClose() hands it on
}

void beginToSettle(std::FILE* file) {
  fixTime(file);
}

int settle(std::FILE* file) {
  fixTime(file);
  return _commit(_fileno(file)) == 0 ? 0 : errno;
}

int tellLateErrors(std::FILE* /*file*/) {
  return 0;
}

int moveAndClose(std::FILE*& file, const std::filesystem::path& part,
                 const std::filesystem::path& target, Old old) {
  if (old == Old::HandsOn) { // which the system does for closed files alone
    return std::fclose(std::exchange(file, nullptr)) == 0 ? replace(part, target) : errno;
  }
  const int error = rename(handleOf(file), target, old);
  if (error == 0) {
    std::fclose(std::exchange(file, nullptr)); // nothing is left to write: the lock goes
  }
  return error;
}

} // namespace common::files
