#ifndef CLEFTOR_PATHS_H
#define CLEFTOR_PATHS_H

#include <filesystem>
#include <string>

namespace cleftor {

/** The path that a UTF-8 text names, on systems of narrow and of wide names alike. */
inline std::filesystem::path pathOf(const std::string& utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}

} // namespace cleftor

#endif
