// Utf16: the texts of the C interfaces and those of the files below them.
#pragma once

#include <string>
#include <string_view>

namespace common {

/// UTF-8 of a UTF-16 text. A lone surrogate becomes its own three bytes, so that two different
/// names never fall together.
[[nodiscard]] std::string toUtf8(std::u16string_view text);

/// UTF-16 of a UTF-8 text, the three bytes of a lone surrogate included; other bytes that are no
/// UTF-8 become U+FFFD.
[[nodiscard]] std::u16string toUtf16(std::string_view text);

/// An argument of a C interface: a null pointer is the empty text.
[[nodiscard]] inline std::u16string_view textOf(const char16_t* text) {
  return text == nullptr ? std::u16string_view() : text;
}

} // namespace common
