#include "PlainTokens.h"

#include <utility>

namespace pages {

namespace {

int depthOf(const QPDFTokenizer::Token& token) {
  switch (token.getType()) {
  case QPDFTokenizer::tt_array_open:
  case QPDFTokenizer::tt_dict_open:
    return 1;
  case QPDFTokenizer::tt_array_close:
  case QPDFTokenizer::tt_dict_close:
    return -1;
  case QPDFTokenizer::tt_integer:
  case QPDFTokenizer::tt_name:
  case QPDFTokenizer::tt_string:
  case QPDFTokenizer::tt_real:
  case QPDFTokenizer::tt_bool:
  case QPDFTokenizer::tt_null:
    return 0;
  default:
    throw NotPlain();
  }
}

} // namespace

PlainTokens::PlainTokens(std::shared_ptr<InputSource> input, qpdf_offset_t place)
    : m_input(std::move(input)) {
  m_input->seek(place, SEEK_SET);
  next();
}

void PlainTokens::next() {
  constexpr std::size_t longestToken = 65'536;
  m_token = m_tokenizer.readToken(m_input, {}, true, longestToken);
}

void PlainTokens::take(Type type) {
  if (!is(type)) {
    throw NotPlain();
  }
  next();
}

void PlainTokens::takeWord(const char* word) {
  if (!m_token.isWord(word)) {
    throw NotPlain();
  }
  next();
}

void PlainTokens::takeHeader(QPDFObjGen object) {
  const int number = takeNumber();
  if (QPDFObjGen(number, takeNumber()) != object) {
    throw NotPlain();
  }
  takeWord("obj");
}

void PlainTokens::requireEnd() const {
  if (!m_token.isWord("endobj")) {
    throw NotPlain();
  }
}

std::string PlainTokens::takeName() {
  std::string name = m_token.getValue();
  take(Type::tt_name);
  return name;
}

int PlainTokens::takeNumber() {
  const int number = is(Type::tt_integer) ? numberOf(m_token) : throw NotPlain();
  next();
  return number;
}

int PlainTokens::numberOf(const QPDFTokenizer::Token& token) {
  constexpr std::size_t mostDigits = 9;
  const std::string& digits = token.getValue();
  if (digits.empty() || digits.size() > mostDigits ||
      digits.find_first_not_of("0123456789") != std::string::npos) {
    throw NotPlain();
  }
  return std::stoi(digits);
}

QPDFObjGen PlainTokens::takeReference() {
  const int number = takeNumber();
  const int generation = takeNumber();
  takeWord("R");
  return QPDFObjGen(number, generation);
}

QPDFObjGen PlainTokens::takeValue(Text* text) {
  QPDFObjGen referred;
  int depth = 0;
  do {
    if (is(Type::tt_integer)) {
      const QPDFObjGen object = takeNumbers(text, depth > 0);
      referred = depth > 0 ? referred : object;
      continue;
    }
    depth += depthOf(m_token);
    if (depth < 0) {
      throw NotPlain();
    }
    if (text != nullptr) {
      text->token(m_token);
    }
    next();
  } while (depth > 0);
  return referred;
}

QPDFObjGen PlainTokens::takeNumbers(Text* text, bool mayBeMore) {
  QPDFTokenizer::Token last = m_token;
  const auto handOn = [&] {
    if (text != nullptr) {
      text->token(last);
    }
  };
  next();
  while (is(Type::tt_integer)) {
    QPDFTokenizer::Token second = m_token;
    next();
    if (m_token.isWord("R")) {
      next();
      const QPDFObjGen object(numberOf(last), numberOf(second));
      if (text != nullptr) {
        text->reference(object);
      }
      return object;
    }
    if (!mayBeMore) {
      throw NotPlain();
    }
    handOn();
    last = std::move(second);
  }
  handOn();
  return {};
}

} // namespace pages
