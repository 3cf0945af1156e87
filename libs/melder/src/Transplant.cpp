#include "Transplant.h"

#include "pages/CryptFilter.h"

#include <optional>

namespace melder {

namespace {

bool isDocumentStructure(QPDFObjectHandle object) {
  return object.isDictionaryOfType("/Page") || object.isDictionaryOfType("/Pages") ||
         object.isDictionaryOfType("/Catalog");
}

/// Structure is not carried along, so a place in it means nothing.
bool isLeftOut(const std::string& key) {
  return key == "/StructParent" || key == "/StructParents";
}

/// The name in a place that may name a destination; nothing for explicit ones and other entries.
std::optional<std::string> namedDestination(bool isJump, const std::string& key,
                                            QPDFObjectHandle value) {
  const bool isPlace = key == "/Dest" || (key == "/D" && isJump);
  if (isPlace && value.isString()) {
    return value.getStringValue();
  }
  if (isPlace && value.isName()) {
    return value.getName().substr(1);
  }
  return std::nullopt;
}

} // namespace

QPDFObjectHandle Transplant::placed(QPDFObjGen source) const {
  const auto found = m_standIns.find(source);
  return found == m_standIns.end() ? QPDFObjectHandle::newNull() : found->second;
}

QPDFObjectHandle Transplant::standIn(QPDFObjectHandle source) {
  const auto [known, isNew] =
      m_standIns.try_emplace(source.getObjGen(), QPDFObjectHandle::newNull());
  if (!isNew) {
    return known->second;
  }
  if (source.isNull()) {
    ++m_dangling;
  } else if (!isDocumentStructure(source)) {
    // Not null for the time being: a key that gets null is gone.
    known->second = source.isStream()
                        ? m_receiver.newStream()
                        : m_receiver.makeIndirectObject(QPDFObjectHandle::newDictionary());
    m_waiting.push_back({source, known->second});
  }
  return known->second;
}

QPDFObjectHandle Transplant::value(const QPDFObjectHandle& source) {
  QPDFObjectHandle object = source;
  if (object.isIndirect()) {
    return standIn(object);
  }
  if (object.isDictionary()) {
    return entries(object.getDictAsMap());
  }
  if (!object.isArray()) {
    return object.unsafeShallowCopy(); // as parsed it belongs to the part
  }
  std::vector<QPDFObjectHandle> items;
  for (const QPDFObjectHandle& item : object.getArrayAsVector()) {
    items.push_back(value(item));
  }
  return QPDFObjectHandle::newArray(items);
}

QPDFObjectHandle Transplant::entries(const Entries& source) {
  auto result = QPDFObjectHandle::newDictionary();
  const auto kind = source.find("/S");
  const bool isJump =
      kind != source.end() && QPDFObjectHandle(kind->second).isNameAndEquals("/GoTo");
  for (const auto& [key, entry] : source) {
    if (isLeftOut(key)) {
      continue;
    }
    const auto name = namedDestination(isJump, key, entry);
    if (!name) {
      result.replaceKey(key, value(entry));
    } else if (const auto found = m_destinations.find(*name); found != m_destinations.end()) {
      result.replaceKey(key, QPDFObjectHandle::newString(found->second));
    }
  }
  return result;
}

void Transplant::copyStream(QPDFObjectHandle source, QPDFObjectHandle target) {
  Entries dictionary = source.getDict().getDictAsMap();
  dictionary.erase("/Length");
  pages::dropCryptFilter(dictionary);
  target.replaceDict(entries(dictionary));
  const auto provide = [source, lost = m_lostData](Pipeline* out, bool quiet, bool again) mutable {
    const bool isWhole = source.pipeStreamData(out, nullptr, 0, qpdf_dl_none, quiet, again);
    *lost = *lost || !isWhole;
    return isWhole;
  };
  target.replaceStreamData(provide, QPDFObjectHandle(), QPDFObjectHandle());
}

void Transplant::copyWaiting() {
  // Copying may add to the list.
  while (!m_waiting.empty()) {
    Waiting next = m_waiting.back();
    m_waiting.pop_back();
    if (next.standIn.isStream()) {
      copyStream(next.source, next.standIn);
    } else {
      QPDFObjectHandle source = next.source;
      m_receiver.replaceObject(next.standIn.getObjGen(), source.isDictionary()
                                                             ? entries(source.getDictAsMap())
                                                             : value(source.unsafeShallowCopy()));
    }
  }
}

} // namespace melder
