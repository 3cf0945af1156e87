#include "Utf16.h"

#include <cstdint>

namespace cleftor {

namespace {

constexpr char32_t replacement = 0xFFFD;

bool isHigh(char32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLow(char32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

void appendUtf8(std::string& out, char32_t code) {
  auto byte = [&out](char32_t value) { out.push_back(static_cast<char>(value)); };
  if (code < 0x80) {
    byte(code);
  } else if (code < 0x800) {
    byte(0xC0 | (code >> 6));
    byte(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    byte(0xE0 | (code >> 12));
    byte(0x80 | ((code >> 6) & 0x3F));
    byte(0x80 | (code & 0x3F));
  } else {
    byte(0xF0 | (code >> 18));
    byte(0x80 | ((code >> 12) & 0x3F));
    byte(0x80 | ((code >> 6) & 0x3F));
    byte(0x80 | (code & 0x3F));
  }
}

void appendUtf16(std::u16string& out, char32_t code) {
  if (code < 0x10000) {
    out.push_back(static_cast<char16_t>(code));
    return;
  }
  out.push_back(static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10)));
  out.push_back(static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF)));
}

/** Length of the sequence that a lead byte announces, 0 for a byte that leads none. */
size_t sequenceLength(unsigned char lead) {
  if (lead < 0x80) {
    return 1;
  }
  if (lead >= 0xC2 && lead < 0xE0) {
    return 2;
  }
  if (lead >= 0xE0 && lead < 0xF0) {
    return 3;
  }
  return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

/** Takes one character off the front of rest; a bad byte is taken alone. */
char32_t takeCharacter(std::string_view& rest) {
  const auto lead = static_cast<unsigned char>(rest.front());
  const size_t length = sequenceLength(lead);
  if (length <= 1 || length > rest.size()) {
    rest.remove_prefix(1);
    return length == 1 ? lead : replacement;
  }
  char32_t code = lead & (0xFFU >> (length + 1));
  for (size_t i = 1; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(rest[i]);
    if ((byte & 0xC0) != 0x80) {
      rest.remove_prefix(1);
      return replacement;
    }
    code = (code << 6) | (byte & 0x3FU);
  }
  rest.remove_prefix(length);
  return code > 0x10FFFF ? replacement : code;
}

} // namespace

std::string toUtf8(const char16_t* text) {
  std::string out;
  if (text == nullptr) {
    return out;
  }
  for (; *text != 0; ++text) {
    char32_t code = *text;
    if (isHigh(code) && isLow(text[1])) {
      code = 0x10000 + ((code - 0xD800) << 10) + (text[1] - 0xDC00U);
      ++text;
    }
    appendUtf8(out, code);
  }
  return out;
}

std::u16string toUtf16(std::string_view text) {
  std::u16string out;
  while (!text.empty()) {
    appendUtf16(out, takeCharacter(text));
  }
  return out;
}

} // namespace cleftor
