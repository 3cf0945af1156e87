#include "ContentLexer.h"

#include <array>
#include <cstring>

namespace glyphrun {

namespace {

enum CharacterClass : std::uint8_t { Regular, White, Delimiter };

constexpr std::array<std::uint8_t, 256> makeClasses() {
  std::array<std::uint8_t, 256> classes{};
  for (const char c : {'\0', '\t', '\n', '\f', '\r', ' '}) {
    classes[static_cast<unsigned char>(c)] = White;
  }
  for (const char c : {'(', ')', '<', '>', '[', ']', '{', '}', '/', '%'}) {
    classes[static_cast<unsigned char>(c)] = Delimiter;
  }
  return classes;
}

constexpr std::array<std::int8_t, 256> makeHexDigits() {
  std::array<std::int8_t, 256> digits{};
  for (auto& digit : digits) {
    digit = -1;
  }
  for (std::size_t i = 0; i < 10; ++i) {
    digits['0' + i] = static_cast<std::int8_t>(i);
  }
  for (std::size_t i = 0; i < 6; ++i) {
    digits['a' + i] = digits['A' + i] = static_cast<std::int8_t>(10 + i);
  }
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
    while (m_at < m_end && classOf(*m_at) == White) {
      ++m_at;
    }
    if (m_at >= m_end) {
      return token.kind = TokenKind::End;
    }
    const char c = *m_at;
    switch (c) {
    case '%':
      while (m_at < m_end && *m_at != '\n' && *m_at != '\r') {
        ++m_at;
      }
      continue;
    case '/':
      readName(token);
      return token.kind = TokenKind::Name;
    case '(':
      readString(token);
      return token.kind = TokenKind::String;
    case '<':
      if (m_at + 1 < m_end && m_at[1] == '<') {
        m_at += 2;
        return token.kind = TokenKind::DictOpen;
      }
      readHexString(token);
      return token.kind = TokenKind::String;
    case '>':
      if (m_at + 1 < m_end && m_at[1] == '>') {
        m_at += 2;
        return token.kind = TokenKind::DictClose;
      }
      ++m_at;
      continue;
    case '[':
      ++m_at;
      return token.kind = TokenKind::ArrayOpen;
    case ']':
      ++m_at;
      return token.kind = TokenKind::ArrayClose;
    case ')':
    case '{':
    case '}':
      ++m_at;
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
  while (m_at < m_end && (*m_at == '-' || *m_at == '+')) {
    negative = negative || *m_at == '-';
    ++m_at;
  }
  std::int64_t mantissa = 0;
  int digits = 0;
  int scale = 0;
  double overflow = 1;
  for (; m_at < m_end && isDigit(*m_at); ++m_at) {
    if (digits < maximumDigits) {
      mantissa = mantissa * 10 + (*m_at - '0');
      digits += mantissa != 0;
    } else {
      overflow *= 10;
    }
  }
  if (m_at < m_end && *m_at == '.') {
    for (++m_at; m_at < m_end && isDigit(*m_at); ++m_at) {
      if (digits < maximumDigits && scale < maximumDigits) {
        mantissa = mantissa * 10 + (*m_at - '0');
        digits += mantissa != 0;
        ++scale;
      }
    }
  }
  // "12-34" and the like occur; the rest of such a number means nothing.
  while (m_at < m_end && classOf(*m_at) == Regular &&
         (*m_at == '-' || *m_at == '.' || isDigit(*m_at))) {
    ++m_at;
  }
  const double value = static_cast<double>(mantissa) * fractions[scale] * overflow;
  token.number = negative ? -value : value;
}

void ContentLexer::readName(Token& token) {
  const char* from = ++m_at;
  bool escaped = false;
  while (m_at < m_end && classOf(*m_at) == Regular) {
    escaped = escaped || *m_at == '#';
    ++m_at;
  }
  token.text = std::string_view(from, static_cast<std::size_t>(m_at - from));
  if (!escaped) {
    return;
  }
  char* out = scratchFor(from);
  std::size_t length = 0;
  for (const char* p = from; p < m_at; ++p) {
    if (*p == '#' && m_at - p > 2 && hexDigit(p[1]) >= 0 && hexDigit(p[2]) >= 0) {
      out[length++] = static_cast<char>(hexDigit(p[1]) * 16 + hexDigit(p[2]));
      p += 2;
    } else {
      out[length++] = *p;
    }
  }
  token.text = std::string_view(out, length);
}

void ContentLexer::readString(Token& token) {
  const char* from = ++m_at;
  int depth = 1;
  bool plain = true;
  for (; m_at < m_end; ++m_at) {
    const char c = *m_at;
    if (c == '\\') {
      plain = false;
      ++m_at;
    } else if (c == '(') {
      ++depth;
    } else if (c == ')') {
      if (--depth == 0) {
        break;
      }
    } else if (c == '\r') {
      plain = false;
    }
  }
  const char* to = m_at < m_end ? m_at : m_end;
  m_at = to < m_end ? to + 1 : m_end;
  if (plain) {
    token.text = std::string_view(from, static_cast<std::size_t>(to - from));
  } else {
    decodeString(from, to, token);
  }
}

void ContentLexer::decodeString(const char* from, const char* to, Token& token) {
  char* out = scratchFor(from);
  std::size_t length = 0;
  for (const char* p = from; p < to; ++p) {
    if (*p == '\r') {
      out[length++] = '\n';
      if (p + 1 < to && p[1] == '\n') {
        ++p;
      }
      continue;
    }
    if (*p != '\\') {
      out[length++] = *p;
      continue;
    }
    if (++p >= to) {
      break;
    }
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
      if (p + 1 < to && p[1] == '\n') {
        ++p;
      }
      break;
    case '\n':
      break;
    default:
      if (isOctal(*p)) {
        int value = *p - '0';
        for (int i = 0; i < 2 && p + 1 < to && isOctal(p[1]); ++i) {
          value = value * 8 + (*++p - '0');
        }
        out[length++] = static_cast<char>(value & 0xFF);
      } else {
        out[length++] = *p;
      }
    }
  }
  token.text = std::string_view(out, length);
}

void ContentLexer::readHexString(Token& token) {
  const char* from = ++m_at;
  char* out = scratchFor(from);
  std::size_t length = 0;
  int high = -1;
  for (; m_at < m_end && *m_at != '>'; ++m_at) {
    const int digit = hexDigit(*m_at);
    if (digit < 0) {
      continue;
    }
    if (high < 0) {
      high = digit;
    } else {
      out[length++] = static_cast<char>(high * 16 + digit);
      high = -1;
    }
  }
  if (high >= 0) {
    out[length++] = static_cast<char>(high * 16);
  }
  if (m_at < m_end) {
    ++m_at;
  }
  token.text = std::string_view(out, length);
}

void ContentLexer::readKeyword(Token& token) {
  const char* from = m_at;
  while (m_at < m_end && classOf(*m_at) == Regular) {
    ++m_at;
  }
  token.text = std::string_view(from, static_cast<std::size_t>(m_at - from));
}

char* ContentLexer::scratchFor(const char* source) {
  // One byte more: an empty buffer still needs a place to point at.
  if (!m_scratch) {
    m_scratch.reset(new char[static_cast<std::size_t>(m_end - m_begin) + 1]);
  }
  return m_scratch.get() + (source - m_begin);
}

void ContentLexer::skipInlineImageData() {
  constexpr std::ptrdiff_t lookAhead = 24;
  if (m_at < m_end) {
    ++m_at;
  }
  for (; m_end - m_at >= 2; ++m_at) {
    m_at = static_cast<const char*>(std::memchr(m_at, 'E', static_cast<std::size_t>(m_end - m_at)));
    if (m_at == nullptr || m_end - m_at < 2) {
      break;
    }
    if (m_at[1] != 'I' || (m_at > m_begin && classOf(m_at[-1]) != White) ||
        (m_at + 2 < m_end && classOf(m_at[2]) != White)) {
      continue;
    }
    const char* from = m_at + 2;
    const char* to = m_end - from < lookAhead ? m_end : from + lookAhead;
    bool text = true;
    for (const char* p = from; p < to && text; ++p) {
      text = classOf(*p) == White ? *p != '\0' : (*p >= 0x20 && *p < 0x7F);
    }
    if (text) {
      m_at = from;
      return;
    }
  }
  m_at = m_end;
}

} // namespace glyphrun
