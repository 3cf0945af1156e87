#include "TreeReader.h"

#include "PlainTokens.h"

#include <string>

namespace pages {

namespace {

using Type = QPDFTokenizer::token_type_e;

/// Reads one dictionary that is an object of its own.
TreeObject readTreeObject(PlainTokens& tokens, QPDFObjGen object) {
  TreeObject found;
  found.isDictionary = true;
  bool hasResources = false;
  tokens.takeHeader(object);
  tokens.take(Type::tt_dict_open);
  while (tokens.is(Type::tt_name)) {
    const std::string key = tokens.takeName();
    if (key == "/Kids" && !found.isNode) {
      found.isNode = true;
      tokens.take(Type::tt_array_open);
      while (!tokens.is(Type::tt_array_close)) {
        found.kids.push_back(tokens.takeReference());
      }
      tokens.take(Type::tt_array_close);
    } else if (key == "/Resources" && !hasResources) {
      hasResources = true;
      found.resources = tokens.takeValue();
    } else if (key == "/Kids" || key == "/Resources") {
      throw NotPlain();
    } else {
      tokens.takeValue();
    }
  }
  tokens.take(Type::tt_dict_close);
  tokens.requireEnd();
  return found;
}

} // namespace

TreeReader::TreeReader(QPDF& document, std::shared_ptr<InputSource> input)
    : m_document(document), m_input(std::move(input)) {
  if (m_input != nullptr) {
    m_places = ObjectPlaces(document);
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
  const QPDFXRefEntry* const place = m_places.find(object);
  if (place == nullptr || place->getType() != ObjectPlaces::inFile) {
    return std::nullopt;
  }
  try {
    PlainTokens tokens(m_input, place->getOffset());
    return readTreeObject(tokens, object);
  } catch (const NotPlain&) {
    m_places.forget();
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
