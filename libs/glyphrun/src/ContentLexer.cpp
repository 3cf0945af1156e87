#include "ContentLexer.h"

#include <array>
#include <cstring>

namespace glyphrun {

namespace {

enum CharacterClass : std::uint8_t { Regular, White, Delimiter };

constexpr std::array<std::uint8_t, 256> makeClasses() {
  std::array<std::uint8_t, 256> classes{};
  for (const char c : {'\0', '\t', '\n', '\f', '\r', ' '})
    classes[static_cast<unsigned char>(c)] = White;
  for (const char c : {'(', ')', '<', '>', '[', ']', '{', '}', '/', '%'})
    classes[static_cast<unsigned char>(c)] = Delimiter;
  return classes;
}

constexpr std::array<std::int8_t, 256> makeHexDigits() {
  std::array<std::int8_t, 256> digits{};
  for (auto& digit : digits)
    digit = -1;
  for (std::size_t i = 0; i < 10; ++i)
    digits['0' + i] = static_cast<std::int8_t>(i);
  for (std::size_t i = 0; i < 6; ++i)
    digits['a' + i] = digits['A' + i] = static_cast<std::int8_t>(10 + i);
  return digits;
}

constexpr auto classes = makeClasses();
constexpr auto hexDigits = makeHexDigits();

std::uint8_t classOf(char c) {
  return classes[static_cast<unsigned char>(c)];
}
int hexDigit(char c) {
  return hexDigits[static_cast<unsigned char>(c)];
}
bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isOctal(char c) {
  return c >= '0' && c <= '7';
}

constexpr double fractions[] = {1,    1e-1, 1e-2,  1e-3,  1e-4,  1e-5,  1e-6,  1e-7,
                                1e-8, 1e-9, 1e-10, 1e-11, 1e-12, 1e-13, 1e-14, 1e-15};
constexpr int maximumDigits = 15;

} // namespace

TokenKind ContentLexer::next(Token& token) {
  for (;;) {
    while (at_ < end_ && classOf(*at_) == White)
      ++at_;
    if (at_ >= end_)
      return token.kind = TokenKind::End;
    const char c = *at_;
    switch (c) {
    case '%':
      while (at_ < end_ && *at_ != '\n' && *at_ != '\r')
        ++at_;
      continue;
    case '/':
      readName(token);
      return token.kind = TokenKind::Name;
    case '(':
      readString(token);
      return token.kind = TokenKind::String;
    case '<':
      if (at_ + 1 < end_ && at_[1] == '<') {
        at_ += 2;
        return token.kind = TokenKind::DictOpen;
      }
      readHexString(token);
      return token.kind = TokenKind::String;
    case '>':
      if (at_ + 1 < end_ && at_[1] == '>') {
        at_ += 2;
        return token.kind = TokenKind::DictClose;
      }
      ++at_;
      continue;
    case '[':
      ++at_;
      return token.kind = TokenKind::ArrayOpen;
    case ']':
      ++at_;
      return token.kind = TokenKind::ArrayClose;
    case ')':
    case '{':
    case '}':
      ++at_;
      continue;
    default:
      if (isDigit(c) || c == '-' || c == '+' || c == '.') {
        readNumber(token);
        return token.kind = TokenKind::Number;
      }
      readKeyword(token);
      return token.kind = TokenKind::Keyword;
    }
  }
}

void ContentLexer::readNumber(Token& token) {
  bool negative = false;
  while (at_ < end_ && (*at_ == '-' || *at_ == '+')) {
    negative = negative || *at_ == '-';
    ++at_;
  }
  std::int64_t mantissa = 0;
  int digits = 0;
  int scale = 0;
  double overflow = 1;
  for (; at_ < end_ && isDigit(*at_); ++at_) {
    if (digits < maximumDigits) {
      mantissa = mantissa * 10 + (*at_ - '0');
      digits += mantissa != 0;
    } else {
      overflow *= 10;
    }
  }
  if (at_ < end_ && *at_ == '.') {
    for (++at_; at_ < end_ && isDigit(*at_); ++at_) {
      if (digits < maximumDigits && scale < maximumDigits) {
        mantissa = mantissa * 10 + (*at_ - '0');
        digits += mantissa != 0;
        ++scale;
      }
    }
  }
  // "12-34" and the like occur; the rest of such a number means nothing.
  while (at_ < end_ && classOf(*at_) == Regular && (*at_ == '-' || *at_ == '.' || isDigit(*at_)))
    ++at_;
  const double value = static_cast<double>(mantissa) * fractions[scale] * overflow;
  token.number = negative ? -value : value;
}

void ContentLexer::readName(Token& token) {
  const char* from = ++at_;
  bool escaped = false;
  while (at_ < end_ && classOf(*at_) == Regular) {
    escaped = escaped || *at_ == '#';
    ++at_;
  }
  token.text = std::string_view(from, static_cast<std::size_t>(at_ - from));
  if (!escaped)
    return;
  char* out = scratchFor(from);
  std::size_t length = 0;
  for (const char* p = from; p < at_; ++p) {
    if (*p == '#' && at_ - p > 2 && hexDigit(p[1]) >= 0 && hexDigit(p[2]) >= 0) {
      out[length++] = static_cast<char>(hexDigit(p[1]) * 16 + hexDigit(p[2]));
      p += 2;
    } else {
      out[length++] = *p;
    }
  }
  token.text = std::string_view(out, length);
}

void ContentLexer::readString(Token& token) {
  const char* from = ++at_;
  int depth = 1;
  bool plain = true;
  for (; at_ < end_; ++at_) {
    const char c = *at_;
    if (c == '\\') {
      plain = false;
      ++at_;
    } else if (c == '(') {
      ++depth;
    } else if (c == ')') {
      if (--depth == 0)
        break;
    } else if (c == '\r') {
      plain = false;
    }
  }
  const char* to = at_ < end_ ? at_ : end_;
  at_ = to < end_ ? to + 1 : end_;
  if (plain)
    token.text = std::string_view(from, static_cast<std::size_t>(to - from));
  else
    decodeString(from, to, token);
}

void ContentLexer::decodeString(const char* from, const char* to, Token& token) {
  char* out = scratchFor(from);
  std::size_t length = 0;
  for (const char* p = from; p < to; ++p) {
    if (*p == '\r') {
      out[length++] = '\n';
      if (p + 1 < to && p[1] == '\n')
        ++p;
      continue;
    }
    if (*p != '\\') {
      out[length++] = *p;
      continue;
    }
    if (++p >= to)
      break;
    switch (*p) {
    case 'n':
      out[length++] = '\n';
      break;
    case 'r':
      out[length++] = '\r';
      break;
    case 't':
      out[length++] = '\t';
      break;
    case 'b':
      out[length++] = '\b';
      break;
    case 'f':
      out[length++] = '\f';
      break;
    case '\r':
      if (p + 1 < to && p[1] == '\n')
        ++p;
      break;
    case '\n':
      break;
    default:
      if (isOctal(*p)) {
        int value = *p - '0';
        for (int i = 0; i < 2 && p + 1 < to && isOctal(p[1]); ++i)
          value = value * 8 + (*++p - '0');
        out[length++] = static_cast<char>(value & 0xFF);
      } else {
        out[length++] = *p;
      }
    }
  }
  token.text = std::string_view(out, length);
}

void ContentLexer::readHexString(Token& token) {
  const char* from = ++at_;
  char* out = scratchFor(from);
  std::size_t length = 0;
  int high = -1;
  for (; at_ < end_ && *at_ != '>'; ++at_) {
    const int digit = hexDigit(*at_);
    if (digit < 0)
      continue;
    if (high < 0) {
      high = digit;
    } else {
      out[length++] = static_cast<char>(high * 16 + digit);
      high = -1;
    }
  }
  if (high >= 0)
    out[length++] = static_cast<char>(high * 16);
  if (at_ < end_)
    ++at_;
  token.text = std::string_view(out, length);
}

void ContentLexer::readKeyword(Token& token) {
  const char* from = at_;
  while (at_ < end_ && classOf(*at_) == Regular)
    ++at_;
  token.text = std::string_view(from, static_cast<std::size_t>(at_ - from));
}

char* ContentLexer::scratchFor(const char* source) {
  // One byte more: an empty buffer still needs a place to point at.
  if (!scratch_)
    scratch_.reset(new char[static_cast<std::size_t>(end_ - begin_) + 1]);
  return scratch_.get() + (source - begin_);
}

void ContentLexer::skipInlineImageData() {
  constexpr std::ptrdiff_t lookAhead = 24;
  if (at_ < end_)
    ++at_;
  for (; end_ - at_ >= 2; ++at_) {
    at_ = static_cast<const char*>(std::memchr(at_, 'E', static_cast<std::size_t>(end_ - at_)));
    if (at_ == nullptr || end_ - at_ < 2)
      break;
    if (at_[1] != 'I' || (at_ > begin_ && classOf(at_[-1]) != White) ||
        (at_ + 2 < end_ && classOf(at_[2]) != White))
      continue;
    const char* from = at_ + 2;
    const char* to = end_ - from < lookAhead ? end_ : from + lookAhead;
    bool text = true;
    for (const char* p = from; p < to && text; ++p)
      text = classOf(*p) == White ? *p != '\0' : (*p >= 0x20 && *p < 0x7F);
    if (text) {
      at_ = from;
      return;
    }
  }
  at_ = end_;
}

} // namespace glyphrun
