// Tokens of a content stream, or of a CMap, which has the same lexical rules.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace glyphrun {

enum class TokenKind : std::uint8_t {
  End,
  Number,
  Name,
  String,
  ArrayOpen,
  ArrayClose,
  DictOpen,
  DictClose,
  Keyword
};

struct Token {
  TokenKind kind = TokenKind::End;
  double number = 0;
  std::string_view text; ///< name without its slash, decoded string, or keyword
};

/// Reads a flat buffer without ever failing: what is no token is passed over. Texts of tokens stay
/// valid as long as the buffer and the lexer.
class ContentLexer {
public:
  explicit ContentLexer(std::string_view buffer)
      : m_begin(buffer.data()), m_at(buffer.data()), m_end(buffer.data() + buffer.size()) {}

  /// Fills `token` and returns its kind; End from the end of the buffer on.
  TokenKind next(Token& token);

  /// Goes on behind an inline image, called after its "ID". The length of its data is told nowhere,
  /// so the end is the first "EI" that stands alone and is followed by something like operators.
  void skipInlineImageData();

private:
  void readNumber(Token& token);
  void readName(Token& token);
  void readString(Token& token);
  void readHexString(Token& token);
  void readKeyword(Token& token);
  void decodeString(const char* from, const char* to, Token& token);
  char* scratchFor(const char* source);

  const char* m_begin;
  const char* m_at;
  const char* m_end;
  // Decoded text is never longer than its source, so each piece finds room at the same offset here.
  std::unique_ptr<char[]> m_scratch;
};

} // namespace glyphrun
