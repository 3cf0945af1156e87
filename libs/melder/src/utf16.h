#ifndef MELDER_UTF16_H
#define MELDER_UTF16_H

#include <string>
#include <string_view>

namespace melder {

/** Lone surrogates and broken sequences become U+FFFD: a text is never refused for its encoding. */
[[nodiscard]] std::string toUtf8(std::u16string_view text);
[[nodiscard]] std::u16string toUtf16(std::string_view text);

} // namespace melder

#endif
