#ifndef UPDATES_UTF16_H
#define UPDATES_UTF16_H

#include <string>
#include <string_view>

namespace updates {

/** Lone surrogates become U+FFFD. Null is the empty text. */
[[nodiscard]] std::string toUtf8(const char16_t* text);

/** Broken sequences become U+FFFD. */
[[nodiscard]] std::u16string toUtf16(std::string_view text);

} // namespace updates

#endif
