#include "utf16.h"

#include <array>

namespace updates {

namespace {

constexpr char32_t replacement = 0xFFFD;

void append(std::string& bytes, char32_t c) {
  const auto add = [&bytes](char32_t byte) { bytes += static_cast<char>(byte); };
  const auto follow = [&](unsigned shift) { add(0x80U | ((c >> shift) & 0x3FU)); };
  if (c < 0x80) {
    add(c);
  } else if (c < 0x800) {
    add(0xC0U | (c >> 6U));
    follow(0);
  } else if (c < 0x10000) {
    add(0xE0U | (c >> 12U));
    follow(6);
    follow(0);
  } else {
    add(0xF0U | (c >> 18U));
    follow(12);
    follow(6);
    follow(0);
  }
}

bool isLead(char16_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}

bool isTrail(char16_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

/** Takes one character off the front. */
char32_t takeCharacter(std::string_view& text) {
  const auto byteAt = [&text](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
  };
  const unsigned first = byteAt(0);
  const std::size_t length = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  constexpr std::array<char32_t, 5> least = {0, 0, 0x80, 0x800, 0x10000};
  char32_t c = length == 1 ? first : first & (0x7FU >> length);
  bool isGood = length == 1 || (first >= 0xC2 && first < 0xF5);
  for (std::size_t i = 1; i < length; i++) {
    isGood = isGood && (byteAt(i) & 0xC0U) == 0x80;
    c = (c << 6U) | (byteAt(i) & 0x3FU);
  }
  isGood = isGood && c >= least.at(length) && c < 0x110000 && (c < 0xD800 || c >= 0xE000);
  text.remove_prefix(isGood ? length : 1);
  return isGood ? c : replacement;
}

} // namespace

std::string toUtf8(const char16_t* text) {
  std::string bytes;
  while (text != nullptr && *text != 0) {
    const char16_t unit = *text++;
    if (isLead(unit) && isTrail(*text)) {
      append(bytes, 0x10000U + ((unit - 0xD800U) << 10U) + (*text++ - 0xDC00U));
    } else {
      append(bytes, isLead(unit) || isTrail(unit) ? replacement : unit);
    }
  }
  return bytes;
}

std::u16string toUtf16(std::string_view text) {
  std::u16string units;
  while (!text.empty()) {
    const char32_t c = takeCharacter(text);
    if (c < 0x10000) {
      units += static_cast<char16_t>(c);
    } else {
      units += static_cast<char16_t>(0xD800U + ((c - 0x10000U) >> 10U));
      units += static_cast<char16_t>(0xDC00U + (c & 0x3FFU));
    }
  }
  return units;
}

} // namespace updates
