#include "StructureReader.h"

#include <qpdf/Buffer.hh>
#include <qpdf/BufferInputSource.hh>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace cleftor {

namespace {

using pages::NotPlain;
using pages::PlainTokens;
using Type = PlainTokens::Type;
using Kind = StructureKid::Kind;

/// What of an element is kept. What it is stays whatever of it is kept; the rest holds for all of
/// it, so for what is on other pages, too, when a part of it is there.
enum class Group { Entries, Attributes, Said, Page, Kids };

struct Key {
  std::string_view name;
  Group group;
};

constexpr std::array<Key, 15> keys = {{{"/S", Group::Entries},
                                       {"/K", Group::Kids},
                                       {"/Pg", Group::Page},
                                       {"/A", Group::Attributes},
                                       {"/ID", Group::Entries},
                                       {"/Lang", Group::Entries},
                                       {"/C", Group::Entries},
                                       {"/R", Group::Entries},
                                       {"/NS", Group::Entries},
                                       {"/PhoneticAlphabet", Group::Entries},
                                       {"/T", Group::Said},
                                       {"/Alt", Group::Said},
                                       {"/E", Group::Said},
                                       {"/ActualText", Group::Said},
                                       {"/Phoneme", Group::Said}}};

const Key* keyOf(std::string_view name) {
  const auto* const found =
      std::find_if(keys.begin(), keys.end(), [&](const Key& key) { return key.name == name; });
  return found != keys.end() ? found : nullptr;
}

struct Texts {
  std::array<Fragment, 3> groups;

  Fragment& of(Group group) { return groups[static_cast<size_t>(group)]; }

  void moveTo(StructureTexts& texts, StructureObject& object) {
    object.entries = texts.add(std::move(of(Group::Entries)));
    object.attributes = texts.add(std::move(of(Group::Attributes)));
    object.said = texts.add(std::move(of(Group::Said)));
  }
};

/// Writes a value as it stands in the file.
class ValueText : public PlainTokens::Text {
public:
  explicit ValueText(Fragment& out) : m_out(out) {}

  void token(const QPDFTokenizer::Token& token) override {
    if (token.getType() == Type::tt_name) {
      m_out.name(token.getValue());
      return;
    }
    if (token.getType() != Type::tt_dict_open && token.getType() != Type::tt_array_open) {
      m_out.separate();
    }
    m_out.text(token.getRawValue());
  }
  void reference(QPDFObjGen object) override { m_out.reference(object); }

private:
  Fragment& m_out;
};

/// The kids that numbers and references are.
class KidNumbers : public PlainTokens::Text {
public:
  explicit KidNumbers(std::vector<StructureKid>& kids) : m_kids(kids) {}

  void token(const QPDFTokenizer::Token& token) override {
    m_kids.push_back({Kind::Marked, {}, PlainTokens::numberOf(token), {}});
  }
  void reference(QPDFObjGen object) override { m_kids.push_back({Kind::Element, object, 0, {}}); }

private:
  std::vector<StructureKid>& m_kids;
};

/// A dictionary in /K.
struct KidEntries {
  bool isElement = false;
  long long mark = -1; ///< below 0: none
  QPDFObjGen stream;
  QPDFObjGen object;
  std::optional<QPDFObjGen> page;

  StructureKid kid() const {
    if (isElement) {
      return {Kind::Nameless, {}, 0, {}};
    }
    if (mark >= 0) {
      return {Kind::Marked, stream, mark, page};
    }
    return {object.isIndirect() ? Kind::Object : Kind::Nothing, object, 0, page};
  }
};

StructureKid takeKidEntries(PlainTokens& tokens) {
  KidEntries entries;
  tokens.take(Type::tt_dict_open);
  while (tokens.is(Type::tt_name)) {
    const std::string key = tokens.takeName();
    if (tokens.is(Type::tt_null)) {
      tokens.take(Type::tt_null);
    } else if (key == "/MCID") {
      entries.mark = tokens.takeNumber();
    } else if (key == "/Stm") {
      entries.stream = tokens.takeValue();
    } else if (key == "/Obj") {
      entries.object = tokens.takeValue();
    } else if (key == "/Pg") {
      entries.page = tokens.takeValue();
    } else {
      entries.isElement = entries.isElement || (key == "/S" && tokens.is(Type::tt_name));
      tokens.takeValue();
    }
  }
  tokens.take(Type::tt_dict_close);
  return entries.kid();
}

void takeKid(PlainTokens& tokens, std::vector<StructureKid>& kids, bool isInArray) {
  KidNumbers numbers(kids);
  if (tokens.is(Type::tt_integer)) {
    tokens.takeNumbers(&numbers, isInArray);
  } else if (tokens.is(Type::tt_dict_open)) {
    kids.push_back(takeKidEntries(tokens));
  } else {
    tokens.takeValue();
    kids.emplace_back();
  }
}

void takeKids(PlainTokens& tokens, std::vector<StructureKid>& kids) {
  if (!tokens.is(Type::tt_array_open)) {
    takeKid(tokens, kids, false);
    return;
  }
  tokens.take(Type::tt_array_open);
  while (!tokens.is(Type::tt_array_close)) {
    takeKid(tokens, kids, true);
  }
  tokens.take(Type::tt_array_close);
}

void takeEntry(PlainTokens& tokens, const Key& key, Texts& texts, StructureObject& object) {
  Fragment& text = texts.of(key.group);
  if ((key.name == "/S" && !tokens.is(Type::tt_name)) ||
      (key.name == "/ID" && !tokens.is(Type::tt_string))) {
    throw NotPlain();
  }
  if (key.name == "/S") {
    object.isElement = true;
  } else if (key.name == "/ID") {
    object.name = tokens.text();
  }
  text.name(std::string(key.name));
  ValueText value(text);
  tokens.takeValue(&value);
}

QPDFObjGen numberOf(const QPDFObjectHandle& value) {
  return value.isIndirect() ? value.getObjGen() : QPDFObjGen();
}

/// A kid as the parser has it, but for an element that is an object of its own.
StructureKid kidOf(QPDFObjectHandle kid) {
  KidEntries entries;
  if (kid.isInteger()) {
    entries.mark = kid.getIntValue();
  } else if (kid.isDictionary()) {
    entries.isElement = kid.getKey("/S").isName();
    if (QPDFObjectHandle mark = kid.getKey("/MCID"); mark.isInteger()) {
      entries.mark = mark.getIntValue();
    }
    entries.stream = numberOf(kid.getKey("/Stm"));
    entries.object = numberOf(kid.getKey("/Obj"));
    if (QPDFObjectHandle page = kid.getKey("/Pg"); !page.isNull()) {
      entries.page = numberOf(page);
    }
  }
  return entries.kid();
}

StructureKid standingFor(QPDFObjectHandle kid) {
  return kid.isIndirect() ? StructureKid{Kind::Element, kid.getObjGen(), 0, {}} : kidOf(kid);
}

} // namespace

uint32_t StructureTexts::add(Fragment&& text) {
  std::string known = text.bytes();
  for (const auto& [at, object] : text.references()) {
    known += ' ' + std::to_string(at) + ' ' + object.unparse();
  }
  const auto [place, isNew] =
      m_known.try_emplace(std::move(known), static_cast<uint32_t>(m_texts.size()));
  if (isNew) {
    m_texts.push_back(std::move(text));
  }
  return place->second;
}

StructureReader::StructureReader(QPDF& document, std::shared_ptr<InputSource> input,
                                 StructureTexts& texts)
    : m_document(document), m_input(std::move(input)), m_texts(texts), m_places(document),
      m_isEncrypted(document.isEncrypted()) {}

StructureObject StructureReader::read(QPDFObjGen object) {
  if (auto plain = readPlain(object)) {
    return std::move(*plain);
  }
  return readParsed(object);
}

std::optional<StructureObject> StructureReader::readPlain(QPDFObjGen object) {
  const QPDFXRefEntry* const place = m_places.find(object);
  if (place == nullptr) {
    return std::nullopt;
  }
  if (place->getType() == pages::ObjectPlaces::inStream) {
    if (m_opened.insert(place->getObjStreamNumber()).second) {
      unpack(place->getObjStreamNumber());
    }
    auto unpacked = m_unpacked.extract(object);
    return unpacked ? std::optional(std::move(unpacked.mapped())) : std::nullopt;
  }
  // A string that is encrypted is the parser's.
  if (m_isEncrypted) {
    return std::nullopt;
  }
  try {
    PlainTokens tokens(m_input, place->getOffset());
    tokens.takeHeader(object);
    StructureObject found = readElement(tokens);
    tokens.requireEnd();
    return found;
  } catch (const NotPlain&) {
    return std::nullopt;
  }
}

/// Reads all elements of an object stream (PDF 32000-1 section 7.5.7), since others are soon asked
/// for. What is not found in it is the parser's.
void StructureReader::unpack(int stream) {
  try {
    QPDFObjectHandle packed = m_document.getObject(stream, 0);
    if (!packed.isStream()) {
      return;
    }
    const long long first = packed.getDict().getKey("/First").getIntValue();
    const long long count = packed.getDict().getKey("/N").getIntValue();
    const auto data = packed.getStreamData(qpdf_dl_specialized);
    const auto bytes = std::make_shared<BufferInputSource>("object stream", data.get());
    std::vector<std::pair<QPDFObjGen, int>> objects;
    PlainTokens header(bytes, 0);
    for (int index = 0; index < count; ++index) {
      const QPDFObjGen object(header.takeNumber(), 0);
      const int offset = header.takeNumber();
      const QPDFXRefEntry* const place = m_places.find(object);
      if (place != nullptr && place->getType() == pages::ObjectPlaces::inStream &&
          place->getObjStreamNumber() == stream && place->getObjStreamIndex() == index) {
        objects.emplace_back(object, offset);
      }
    }
    for (const auto& [object, offset] : objects) {
      keepElement(object, bytes, first + offset);
    }
  } catch (const std::runtime_error&) { // the parser's, too
  } catch (const NotPlain&) {
  }
}

void StructureReader::keepElement(QPDFObjGen object, const std::shared_ptr<InputSource>& bytes,
                                  qpdf_offset_t place) {
  try {
    PlainTokens tokens(bytes, place);
    m_unpacked.emplace(object, readElement(tokens));
  } catch (const NotPlain&) {
  }
}

StructureObject StructureReader::readElement(PlainTokens& tokens) {
  StructureObject object;
  Texts texts;
  std::array<bool, keys.size()> isMet{};
  tokens.take(Type::tt_dict_open);
  while (tokens.is(Type::tt_name)) {
    const Key* const key = keyOf(tokens.takeName());
    if (key == nullptr || tokens.is(Type::tt_null)) {
      tokens.takeValue();
      continue;
    }
    if (std::exchange(isMet[static_cast<size_t>(key - keys.data())], true)) {
      throw NotPlain();
    }
    if (key->group == Group::Kids) {
      takeKids(tokens, object.kids);
    } else if (key->group == Group::Page) {
      object.page = tokens.takeValue();
    } else {
      takeEntry(tokens, *key, texts, object);
    }
  }
  tokens.take(Type::tt_dict_close);
  if (!object.isElement) {
    throw NotPlain();
  }
  texts.moveTo(m_texts, object);
  return object;
}

/// The parser forgets an element at once.
StructureObject StructureReader::readParsed(QPDFObjGen number) {
  QPDFObjectHandle parsed = m_document.getObject(number);
  StructureObject object;
  if (!parsed.isDictionary() || !parsed.getKey("/S").isName()) {
    object.kid = kidOf(parsed);
    return object;
  }
  object.isElement = true;
  Texts texts;
  for (auto& [name, value] : parsed.getDictAsMap()) {
    const Key* const key = keyOf(name);
    if (key != nullptr && key->group <= Group::Said && !value.isNull()) {
      texts.of(key->group).entry(name, value);
    }
  }
  if (QPDFObjectHandle name = parsed.getKey("/ID"); name.isString()) {
    object.name = name.getStringValue();
  }
  object.page = numberOf(parsed.getKey("/Pg"));
  object.kids = kidsOf(parsed.getKey("/K"));
  texts.moveTo(m_texts, object);
  m_document.replaceObject(number, QPDFObjectHandle::newNull());
  return object;
}

std::vector<StructureKid> StructureReader::kidsOf(QPDFObjectHandle kids) {
  std::vector<StructureKid> found;
  if (kids.isArray()) {
    const int count = kids.getArrayNItems();
    for (int i = 0; i < count; ++i) {
      found.push_back(standingFor(kids.getArrayItem(i)));
    }
  } else if (!kids.isNull()) {
    found.push_back(standingFor(kids));
  }
  return found;
}

} // namespace cleftor
