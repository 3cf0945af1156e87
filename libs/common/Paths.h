// Paths: file names as the libraries get them, and what they lead to.
#pragma once

#include <filesystem>
#include <string>

namespace common {

/// The path (UTF-8) in an argument of a C interface. A trailing blank is no part of a file's name;
/// a null pointer is the empty path.
[[nodiscard]] std::string pathText(const char16_t* path);

/// The path that a UTF-8 text names, on systems of narrow and of wide names alike.
[[nodiscard]] inline std::filesystem::path pathOf(const std::string& utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}

/// Throws Failure `cannotWrite` unless this process may write the file that is at `path`.
void requireWritable(const std::string& path);

} // namespace common
