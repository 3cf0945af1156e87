#include "common/Utf16.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <array>

namespace common {

namespace {

constexpr size_t surrogateBytes = 3;

/// Whether the bytes at `at` are the three of a surrogate, which UTF-8 proper does not know.
bool isSurrogateAt(std::string_view text, size_t at) {
  return text.size() - at >= surrogateBytes && text[at] == '\xED' &&
         (static_cast<unsigned char>(text[at + 1]) & 0xE0) == 0xA0 && U8_IS_TRAIL(text[at + 2]);
}

} // namespace

std::string toUtf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (size_t at = 0; at < text.size();) {
    UChar32 code = 0;
    U16_NEXT(text, at, text.size(), code);
    std::array<char, U8_MAX_LENGTH> bytes{};
    size_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, code);
    out.append(bytes.data(), length);
  }
  return out;
}

// The library's macro narrows its own numbers.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"

std::u16string toUtf16(std::string_view text) {
  std::u16string out;
  out.reserve(text.size());
  for (size_t at = 0; at < text.size();) {
    if (isSurrogateAt(text, at)) {
      const int high = (text[at + 1] & 0x3F) << 6;
      out.push_back(static_cast<char16_t>(0xD000 | high | (text[at + 2] & 0x3F)));
      at += surrogateBytes;
      continue;
    }
    UChar32 code = 0;
    U8_NEXT_OR_FFFD(text, at, text.size(), code);
    if (U_IS_BMP(code)) {
      out.push_back(static_cast<char16_t>(code));
    } else {
      out.append({U16_LEAD(code), U16_TRAIL(code)});
    }
  }
  return out;
}

#pragma GCC diagnostic pop

} // namespace common
