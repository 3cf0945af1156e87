// WindowsFile: files of Windows by their handles; FileIdentity there is made of it.
#pragma once

#include "common/FileIdentity.h"

#include <filesystem>
#include <memory>
#include <string>

#include <windows.h>

namespace common::files {

struct HandleCloser {
  using pointer = HANDLE;
  void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, HandleCloser>;

constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// The path as the system takes it at any length.
std::wstring longForm(const std::filesystem::path& path);

/// What is at the path, a folder too; null on failure (GetLastError). A link that is refused is
/// opened itself: see isLink(). No other process inherits it.
Handle openThere(const std::filesystem::path& path, DWORD access, DWORD share, Links links);

/// Whether what was opened stands for something else (a symbolic link, a junction), and not for
/// its own bytes, which a file of a cloud folder does.
bool isLink(HANDLE file);

} // namespace common::files
