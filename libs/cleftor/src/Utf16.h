#ifndef CLEFTOR_UTF16_H
#define CLEFTOR_UTF16_H

#include <string>
#include <string_view>

namespace cleftor {

/**
 * UTF-8 of a UTF-16 text; a null pointer is the empty text. A lone surrogate becomes its own three
 * bytes, so that two different names never fall together.
 */
std::string toUtf8(const char16_t* text);

/** UTF-16 of a UTF-8 text; bytes that are no UTF-8 become U+FFFD. */
std::u16string toUtf16(std::string_view text);

} // namespace cleftor

#endif
