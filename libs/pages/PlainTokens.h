// PlainTokens: a plain object of a file, token by token.
#pragma once

#include <qpdf/InputSource.hh>
#include <qpdf/QPDFObjGen.hh>
#include <qpdf/QPDFTokenizer.hh>

#include <memory>
#include <string>

namespace pages {

/// Thrown at whatever is in any way unusual: the object is to be left to the parser, whose word
/// counts.
struct NotPlain {};

/// Steps through the tokens of an object (PDF 32000-1, 7.3) beside the parser, which would keep it
/// and all that it names in its memory for good. Each operation takes what stands there, and throws
/// NotPlain when that is something else.
class PlainTokens {
public:
  using Type = QPDFTokenizer::token_type_e;

  /// From a place (offset in bytes) of what is read.
  PlainTokens(std::shared_ptr<InputSource> input, qpdf_offset_t place);

  bool is(Type type) const { return m_token.getType() == type; }

  /// What a string or name says.
  const std::string& text() const { return m_token.getValue(); }

  void take(Type type);

  /// "7 0 obj" before an object
  void takeHeader(QPDFObjGen object);

  /// That "endobj" comes now.
  void requireEnd() const;

  /// With its slash, and nothing in it escaped.
  std::string takeName();

  /// From 0, of nine digits at most.
  int takeNumber();
  static int numberOf(const QPDFTokenizer::Token& token);

  QPDFObjGen takeReference();

  /// What a value is of, as it stands in the file.
  class Text {
  public:
    virtual ~Text() = default;
    virtual void token(const QPDFTokenizer::Token& token) = 0;
    virtual void reference(QPDFObjGen object) = 0;
  };

  /// The object that a value refers to; object 0 for a direct one. `text`: may be null.
  QPDFObjGen takeValue(Text* text = nullptr);

  /// One number or more; two and an "R" are a reference, which ends them. It is told, or object 0.
  QPDFObjGen takeNumbers(Text* text, bool mayBeMore);

private:
  void next();
  void takeWord(const char* word);

  std::shared_ptr<InputSource> m_input;
  QPDFTokenizer m_tokenizer;
  QPDFTokenizer::Token m_token;
};

} // namespace pages
