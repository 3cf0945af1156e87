#include "utf16.h"

#include <cstdint>

namespace melder {

namespace {

constexpr uint32_t kReplacement = 0xFFFD;

bool isLead(char16_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
bool isTrail(char16_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

void putUtf8(std::string& out, uint32_t point) {
  if (point < 0x80) {
    out += static_cast<char>(point);
    return;
  }
  if (point < 0x800) {
    out += static_cast<char>(0xC0 | (point >> 6));
  } else {
    if (point < 0x10000) {
      out += static_cast<char>(0xE0 | (point >> 12));
    } else {
      out += static_cast<char>(0xF0 | (point >> 18));
      out += static_cast<char>(0x80 | ((point >> 12) & 0x3F));
    }
    out += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
  }
  out += static_cast<char>(0x80 | (point & 0x3F));
}

/** Reads one code point at `at` and steps over it; a broken sequence costs one byte. */
uint32_t takeUtf8(std::string_view text, size_t& at) {
  const auto first = static_cast<unsigned char>(text[at++]);
  if (first < 0x80) {
    return first;
  }
  int more = 0;
  uint32_t point = 0;
  uint32_t least = 0;
  if ((first & 0xE0) == 0xC0) {
    more = 1, point = first & 0x1F, least = 0x80;
  } else if ((first & 0xF0) == 0xE0) {
    more = 2, point = first & 0x0F, least = 0x800;
  } else if ((first & 0xF8) == 0xF0) {
    more = 3, point = first & 0x07, least = 0x10000;
  } else {
    return kReplacement;
  }
  size_t next = at;
  for (int i = 0; i < more; ++i, ++next) {
    if (next >= text.size() || (static_cast<unsigned char>(text[next]) & 0xC0) != 0x80) {
      return kReplacement;
    }
    point = (point << 6) | (static_cast<unsigned char>(text[next]) & 0x3F);
  }
  if (point < least || point > 0x10FFFF || (point >= 0xD800 && point < 0xE000)) {
    return kReplacement;
  }
  at = next;
  return point;
}

} // namespace

std::string toUtf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    if (isLead(unit) && i + 1 < text.size() && isTrail(text[i + 1])) {
      const uint32_t lead = static_cast<uint32_t>(unit) - 0xD800;
      const uint32_t trail = static_cast<uint32_t>(text[++i]) - 0xDC00;
      putUtf8(out, 0x10000 + (lead << 10) + trail);
    } else {
      putUtf8(out, isLead(unit) || isTrail(unit) ? kReplacement : unit);
    }
  }
  return out;
}

std::u16string toUtf16(std::string_view text) {
  std::u16string out;
  out.reserve(text.size());
  for (size_t at = 0; at < text.size();) {
    const uint32_t point = takeUtf8(text, at);
    if (point < 0x10000) {
      out += static_cast<char16_t>(point);
    } else {
      out += static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
      out += static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
    }
  }
  return out;
}

} // namespace melder
