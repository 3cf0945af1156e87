#include "common/WindowsFile.h"

#include "common/Paths.h"

#include <io.h>

namespace common::files {

std::wstring longForm(const std::filesystem::path& path) {
  // What the system adds in places stays below its limit of 260 units.
  constexpr size_t longest = 240;
  std::error_code ignored;
  std::wstring whole =
      std::filesystem::absolute(path, ignored).lexically_normal().make_preferred().native();
  if (whole.size() <= longest || whole.starts_with(L"\\\\?\\")) {
    return path.native();
  }
  return whole.starts_with(L"\\\\") ? L"\\\\?\\UNC" + whole.substr(1) : L"\\\\?\\" + whole;
}

Handle openThere(const std::filesystem::path& path, DWORD access, DWORD share, Links links) {
  const DWORD flags = FILE_FLAG_BACKUP_SEMANTICS | // folders, too
                      (links == Links::Refused ? FILE_FLAG_OPEN_REPARSE_POINT : 0U);
  const HANDLE file =
      CreateFileW(longForm(path).c_str(), access, share, nullptr, OPEN_EXISTING, flags, nullptr);
  return Handle(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

bool isLink(HANDLE file) {
  FILE_ATTRIBUTE_TAG_INFO found{};
  return GetFileInformationByHandleEx(file, FileAttributeTagInfo, &found, sizeof found) != 0 &&
         (found.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         IsReparseTagNameSurrogate(found.ReparseTag);
}

} // namespace common::files

namespace common {

namespace {

FileIdentity identityOf(HANDLE file) {
  constexpr int64_t ticksTo1970 = 116'444'736'000'000'000; // from 1601
  constexpr int64_t nanosecondsPerTick = 100;
  BY_HANDLE_FILE_INFORMATION found{};
  GetFileInformationByHandle(file, &found);
  const auto joined = [](DWORD high, DWORD low) { return (uint64_t{high} << 32U) | low; };
  return {.device = found.dwVolumeSerialNumber,
          .number = joined(found.nFileIndexHigh, found.nFileIndexLow),
          .size = joined(found.nFileSizeHigh, found.nFileSizeLow),
          .changed = (static_cast<int64_t>(joined(found.ftLastWriteTime.dwHighDateTime,
                                                  found.ftLastWriteTime.dwLowDateTime)) -
                      ticksTo1970) *
                     nanosecondsPerTick};
}

} // namespace

std::optional<FileIdentity> FileIdentity::of(const std::string& path, Links links) {
  const files::Handle file =
      files::openThere(pathOf(path), FILE_READ_ATTRIBUTES, files::shareAll, links);
  return file == nullptr ? std::nullopt : std::optional(identityOf(file.get()));
}

FileIdentity FileIdentity::of(std::FILE* file) {
  return identityOf(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file))));
}

} // namespace common
