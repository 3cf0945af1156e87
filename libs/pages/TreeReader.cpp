#include "TreeReader.h"

#include <qpdf/QPDFTokenizer.hh>

#include <algorithm>
#include <string>

namespace pages {

namespace {

using Type = QPDFTokenizer::token_type_e;

/// Thrown and caught in here: the object is to be left to the parser.
struct NotPlain {};

/// Reads one dictionary (PDF 32000-1, 7.3.7) that is an object of its own.
class PlainDictionary {
public:
  PlainDictionary(const std::shared_ptr<InputSource>& input, qpdf_offset_t place) : m_input(input) {
    m_input->seek(place, SEEK_SET);
    next();
  }

  TreeObject read(QPDFObjGen object) {
    takeHeader(object);
    take(Type::tt_dict_open);
    TreeObject found;
    found.isDictionary = true;
    bool hasResources = false;
    while (m_token.getType() == Type::tt_name) {
      const std::string key = m_token.getValue();
      next();
      if (key == "/Kids" && !found.isNode) {
        found.isNode = true;
        found.kids = takeKids();
      } else if (key == "/Resources" && !hasResources) {
        hasResources = true;
        found.resources = takeValue();
      } else if (key == "/Kids" || key == "/Resources") {
        throw NotPlain();
      } else {
        takeValue();
      }
    }
    take(Type::tt_dict_close);
    if (!m_token.isWord("endobj")) {
      throw NotPlain();
    }
    return found;
  }

private:
  static constexpr std::size_t longestToken = 65'536;

  void next() { m_token = m_tokenizer.readToken(m_input, {}, true, longestToken); }

  void take(Type type) {
    if (m_token.getType() != type) {
      throw NotPlain();
    }
    next();
  }

  static int numberOf(const std::string& digits) {
    constexpr std::size_t mostDigits = 9;
    if (digits.empty() || digits.size() > mostDigits ||
        digits.find_first_not_of("0123456789") != std::string::npos) {
      throw NotPlain();
    }
    return std::stoi(digits);
  }

  int takeNumber() {
    const std::string digits = m_token.getValue();
    take(Type::tt_integer);
    return numberOf(digits);
  }

  void takeWord(const char* word) {
    if (!m_token.isWord(word)) {
      throw NotPlain();
    }
    next();
  }

  void takeHeader(QPDFObjGen object) {
    const int number = takeNumber();
    if (QPDFObjGen(number, takeNumber()) != object) {
      throw NotPlain();
    }
    takeWord("obj");
  }

  QPDFObjGen takeReference() {
    const int number = takeNumber();
    const int generation = takeNumber();
    takeWord("R");
    return QPDFObjGen(number, generation);
  }

  std::vector<QPDFObjGen> takeKids() {
    take(Type::tt_array_open);
    std::vector<QPDFObjGen> kids;
    while (m_token.getType() != Type::tt_array_close) {
      kids.push_back(takeReference());
    }
    next();
    return kids;
  }

  /// The object that a value refers to; object 0 for a direct one.
  QPDFObjGen takeValue() {
    switch (m_token.getType()) {
    case Type::tt_integer:
      return takeNumberOrReference();
    case Type::tt_array_open:
    case Type::tt_dict_open:
      skipNested();
      return {};
    case Type::tt_name:
    case Type::tt_string:
    case Type::tt_real:
    case Type::tt_bool:
    case Type::tt_null:
      next();
      return {};
    default:
      throw NotPlain();
    }
  }

  QPDFObjGen takeNumberOrReference() {
    const std::string first = m_token.getValue();
    next();
    if (m_token.getType() != Type::tt_integer) {
      return {};
    }
    const int generation = takeNumber();
    takeWord("R");
    return QPDFObjGen(numberOf(first), generation);
  }

  void skipNested() {
    int depth = 0;
    do {
      switch (m_token.getType()) {
      case Type::tt_array_open:
      case Type::tt_dict_open:
        ++depth;
        break;
      case Type::tt_array_close:
      case Type::tt_dict_close:
        --depth;
        break;
      case Type::tt_bad:
      case Type::tt_eof:
        throw NotPlain();
      default:
        break;
      }
      next();
    } while (depth > 0);
  }

  std::shared_ptr<InputSource> m_input;
  QPDFTokenizer m_tokenizer;
  QPDFTokenizer::Token m_token;
};

} // namespace

TreeReader::TreeReader(QPDF& document, std::shared_ptr<InputSource> input)
    : m_document(document), m_input(std::move(input)) {
  constexpr int uncompressed = 1;
  if (m_input == nullptr) {
    return;
  }
  for (const auto& [object, entry] : m_document.getXRefTable()) {
    if (entry.getType() == uncompressed) {
      m_places.emplace_back(object, entry.getOffset());
    }
  }
}

QPDFObjGen TreeReader::made(QPDFObjectHandle direct) {
  m_madeObjects = true;
  return m_document.makeIndirectObject(direct).getObjGen();
}

TreeObject TreeReader::read(QPDFObjGen object) {
  if (auto plain = readPlain(object)) {
    return std::move(*plain);
  }
  return readParsed(object);
}

std::optional<TreeObject> TreeReader::readPlain(QPDFObjGen object) {
  const auto place = std::lower_bound(
      m_places.begin(), m_places.end(), object,
      [](const auto& left, const QPDFObjGen& wanted) { return left.first < wanted; });
  if (place == m_places.end() || place->first != object) {
    return std::nullopt;
  }
  try {
    return PlainDictionary(m_input, place->second).read(object);
  } catch (const NotPlain&) {
    // The parser may find the table to be wrong, and then everything elsewhere.
    m_places.clear();
    return std::nullopt;
  }
}

TreeObject TreeReader::readParsed(QPDFObjGen object) {
  QPDFObjectHandle dictionary = m_document.getObject(object);
  TreeObject found;
  found.isDictionary = dictionary.isDictionary();
  if (!found.isDictionary) {
    return found;
  }
  QPDFObjectHandle resources = dictionary.getKey("/Resources");
  if (resources.isIndirect()) {
    found.resources = resources.getObjGen();
  }
  QPDFObjectHandle kids = dictionary.getKey("/Kids");
  found.isNode = kids.isArray();
  const int count = found.isNode ? kids.getArrayNItems() : 0;
  for (int i = 0; i < count; ++i) {
    QPDFObjectHandle kid = kids.getArrayItem(i);
    if (!kid.isIndirect()) {
      if (!kid.isDictionary()) {
        continue;
      }
      const QPDFObjGen own = made(kid);
      kids.setArrayItem(i, m_document.getObject(own));
      found.kids.push_back(own);
    } else {
      found.kids.push_back(kid.getObjGen());
    }
  }
  return found;
}

} // namespace pages
