#include "ObjectCopier.h"

#include "StreamPipes.h"
#include "cleftor/cleftor.h"
#include "pages/CryptFilter.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace cleftor {

namespace {

bool has(QPDFObjectHandle dictionary, const char* key) {
  return dictionary.hasKey(key);
}

bool isAnnotation(QPDFObjectHandle dictionary) {
  return dictionary.getKey("/Type").isNameAndEquals("/Annot") ||
         (has(dictionary, "/Rect") && has(dictionary, "/Subtype"));
}

bool isField(QPDFObjectHandle dictionary) {
  return has(dictionary, "/FT") || (dictionary.getKey("/T").isString() &&
                                    (has(dictionary, "/Kids") || has(dictionary, "/Parent")));
}

bool isBookmark(QPDFObjectHandle dictionary) {
  return has(dictionary, "/Title") && has(dictionary, "/Parent") &&
         (has(dictionary, "/Prev") || has(dictionary, "/Next") || has(dictionary, "/First") ||
          has(dictionary, "/Dest") || has(dictionary, "/A"));
}

/// Beads of an article form a ring through the whole document.
bool isBead(QPDFObjectHandle dictionary) {
  return has(dictionary, "/N") && has(dictionary, "/V") && has(dictionary, "/P") &&
         has(dictionary, "/R");
}

bool isOfOtherType(QPDFObjectHandle dictionary) {
  static constexpr std::array types = {"/Page",       "/Pages", "/Catalog",  "/StructTreeRoot",
                                       "/StructElem", "/Bead",  "/Outlines", "/DPart",
                                       "/DPartRoot",  "/Thread"};
  QPDFObjectHandle type = dictionary.getKey("/Type");
  if (!type.isName()) {
    return false;
  }
  const std::string name = type.getName();
  return std::find(types.begin(), types.end(), name) != types.end();
}

} // namespace

int ObjectCopier::place(QPDFObjGen object) {
  const auto [place, added] = m_numbers.try_emplace(object, 0);
  if (added) {
    place->second = m_writer.reserve();
  }
  return place->second;
}

int ObjectCopier::numberOf(QPDFObjGen object) {
  const auto [place, added] = m_numbers.try_emplace(object, 0);
  if (!added) {
    return place->second;
  }
  if (m_source.pages().indexOf(object) || m_source.isOfWholeDocument(object)) {
    m_numbers.erase(place);
    return 0;
  }
  place->second = m_writer.reserve();
  m_waiting.emplace_back(object, place->second);
  return place->second;
}

/// Makes the text of a fragment final in m_scratch.
void ObjectCopier::resolve(const Fragment& fragment) {
  m_scratch.clear();
  const std::string& bytes = fragment.bytes();
  size_t done = 0;
  for (const auto& [at, object] : fragment.references()) {
    m_scratch.append(bytes, done, at - done);
    done = at;
    const int number = numberOf(object);
    if (number == 0) {
      m_scratch.append("null");
    } else {
      std::array<char, 16> digits{};
      const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
      m_scratch.append(digits.data(), end.ptr);
      m_scratch.append(" 0 R");
    }
  }
  m_scratch.append(bytes, done, std::string::npos);
}

void ObjectCopier::request(const Fragment& body) {
  for (const Fragment::Reference& reference : body.references()) {
    numberOf(reference.object);
  }
}

void ObjectCopier::write(int number, const Fragment& body) {
  resolve(body);
  m_writer.object(number, m_scratch);
}

void ObjectCopier::copyWaiting() {
  // Copying may add to the list.
  while (!m_waiting.empty()) {
    const auto [object, number] = m_waiting.back();
    m_waiting.pop_back();
    copy(object, number);
  }
}

bool ObjectCopier::staysOut(QPDFObjectHandle object) const {
  return object.isDictionary() && (isOfOtherType(object) || isAnnotation(object) ||
                                   isField(object) || isBookmark(object) || isBead(object));
}

void ObjectCopier::copy(QPDFObjGen object, int number) {
  if (m_source.layers().isLayer(object)) {
    m_usedLayers.insert(object);
  }
  if (const CopiedObject* const kept = m_source.cache().find(object)) {
    writeCopied(number, *kept);
    return;
  }
  const bool keep = m_source.cache().isWanted(object);
  QPDFObjectHandle value = m_source.object(object);
  if (value.isStream() && !m_source.isLocked(value)) {
    copyStream(value, number, keep);
    return;
  }
  CopiedObject copied;
  copied.body = bodyOf(value);
  writeCopied(number, copied);
  if (keep) {
    m_source.cache().keep(object, std::move(copied));
  }
}

Fragment ObjectCopier::bodyOf(QPDFObjectHandle object) {
  Fragment body;
  if (staysOut(object)) {
    body.text("null");
    return body;
  }
  const bool drawsGlyphs =
      object.isDictionary() && object.getKey("/Subtype").isNameAndEquals("/Type3");
  const auto resources = drawsGlyphs ? m_source.resources().forOwner(object) : std::nullopt;
  if (!resources) {
    body.resolved(object);
    return body;
  }
  auto entries = object.getDictAsMap();
  entries.erase("/Resources");
  body.text("<<");
  body.entries(entries);
  body.text("/Resources");
  body.append(*resources);
  body.text(">>");
  return body;
}

Fragment ObjectCopier::streamEntries(QPDFObjectHandle stream) {
  Fragment out;
  auto entries = stream.getDict().getDictAsMap();
  entries.erase("/Length");
  if (m_source.structure() == nullptr) {
    entries.erase("/StructParent");
    entries.erase("/StructParents");
  }
  if ((m_source.facts() & CLEFTOR_FILE_ENCRYPTED) != 0) {
    pages::dropCryptFilter(entries);
  }
  if (entries.count("/Resources") != 0) {
    if (const auto resources = m_source.resources().forOwner(stream)) {
      entries.erase("/Resources");
      out.text("/Resources");
      out.append(*resources);
    }
  }
  out.entries(entries);
  return out;
}

void ObjectCopier::copyStream(QPDFObjectHandle stream, int number, bool keep) {
  CopiedObject copied;
  copied.isStream = true;
  copied.body = streamEntries(stream);
  QPDFObjectHandle length = stream.getDict().getKey("/Length");
  const bool isSmall = length.isInteger() && length.getIntValue() >= 0 &&
                       length.getUIntValue() <= ObjectCache::largestData;
  if (isSmall) {
    copied.data = storedData(stream);
    writeCopied(number, copied);
    if (keep) {
      m_source.cache().keep(stream.getObjGen(), std::move(copied));
    }
    return;
  }
  resolve(copied.body);
  m_writer.beginStream(number, m_scratch);
  writeStoredData(stream, m_writer);
  m_writer.endStream();
}

void ObjectCopier::writeCopied(int number, const CopiedObject& copied) {
  resolve(copied.body);
  if (copied.isStream) {
    m_writer.stream(number, m_scratch, copied.data);
  } else {
    m_writer.object(number, m_scratch);
  }
}

} // namespace cleftor
