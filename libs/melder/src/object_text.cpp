#include "object_text.h"

#include <optional>

namespace melder {

namespace {

bool isLeftOut(const std::string& key) {
  return key == "/StructParent" || key == "/StructParents";
}

/** The name in a place that may name a destination; nothing for explicit ones and other entries. */
std::optional<std::string> namedDestination(QPDFObjectHandle dictionary, const std::string& key,
                                            QPDFObjectHandle value) {
  const bool place =
      key == "/Dest" || (key == "/D" && dictionary.getKey("/S").isNameAndEquals("/GoTo"));
  if (place && value.isString()) {
    return value.getStringValue();
  }
  if (place && value.isName()) {
    return value.getName().substr(1);
  }
  return std::nullopt;
}

/** Streams are written decrypted, so a filter that decrypts must not be named any more. */
void dropCryptFilter(QPDFObjectHandle dictionary) {
  QPDFObjectHandle filter = dictionary.getKey("/Filter");
  if (filter.isNameAndEquals("/Crypt")) {
    dictionary.removeKey("/Filter");
    dictionary.removeKey("/DecodeParms");
  }
  if (!filter.isArray()) {
    return;
  }
  QPDFObjectHandle parameters = dictionary.getKey("/DecodeParms");
  auto filters = QPDFObjectHandle::newArray();
  auto kept = QPDFObjectHandle::newArray();
  for (int i = 0; i < filter.getArrayNItems(); ++i) {
    if (!filter.getArrayItem(i).isNameAndEquals("/Crypt")) {
      filters.appendItem(filter.getArrayItem(i));
      const bool given = parameters.isArray() && i < parameters.getArrayNItems();
      kept.appendItem(given ? parameters.getArrayItem(i) : QPDFObjectHandle::newNull());
    }
  }
  if (filters.getArrayNItems() < filter.getArrayNItems()) {
    dictionary.replaceKey("/Filter", filters);
    if (parameters.isArray()) {
      dictionary.replaceKey("/DecodeParms", kept);
    }
  }
}

} // namespace

Digest ObjectText::digest() const {
  return sha256(isStream ? written(dictionary) + "stream" + data : body);
}

std::string ObjectPrinter::value(const QPDFObjectHandle& object) const {
  return object.isIndirect() ? m_reference(object) : spelled(object);
}

std::string ObjectPrinter::spelled(QPDFObjectHandle object) const {
  if (object.isArray()) {
    std::string text = "[";
    for (const QPDFObjectHandle& item : object.getArrayAsVector()) {
      text += value(item) + ' ';
    }
    return text + ']';
  }
  if (object.isDictionary()) {
    return written(entries(object));
  }
  return object.unparseResolved();
}

DictText ObjectPrinter::entries(QPDFObjectHandle dictionary) const {
  DictText result;
  for (const auto& [key, entry] : dictionary.getDictAsMap()) {
    if (isLeftOut(key)) {
      continue;
    }
    if (const auto name = namedDestination(dictionary, key, entry)) {
      const auto renamed = m_destinations.find(*name);
      result[key] = renamed == m_destinations.end() ? "null" : stringText(renamed->second);
    } else {
      result[key] = value(entry);
    }
  }
  return result;
}

ObjectText ObjectPrinter::whole(QPDFObjectHandle object) const {
  ObjectText text;
  text.isStream = object.isStream();
  if (!text.isStream) {
    text.body = spelled(object);
    return text;
  }
  QPDFObjectHandle dictionary = object.getDict().shallowCopy();
  dictionary.removeKey("/Length");
  dropCryptFilter(dictionary);
  text.dictionary = entries(dictionary);
  const auto raw = object.getRawStreamData();
  text.data.assign(reinterpret_cast<const char*>(raw->getBuffer()), raw->getSize());
  return text;
}

void collectReferences(QPDFObjectHandle object, std::vector<QPDFObjectHandle>& found) {
  const auto take = [&found](const QPDFObjectHandle& item) {
    if (item.isIndirect()) {
      found.push_back(item);
    } else {
      collectReferences(item, found);
    }
  };
  if (object.isArray()) {
    for (const QPDFObjectHandle& item : object.getArrayAsVector()) {
      take(item);
    }
    return;
  }
  const bool stream = object.isStream();
  QPDFObjectHandle dictionary = stream ? object.getDict() : object;
  if (!dictionary.isDictionary()) {
    return;
  }
  for (const auto& [key, entry] : dictionary.getDictAsMap()) {
    if (!isLeftOut(key) && !(stream && key == "/Length") &&
        !namedDestination(dictionary, key, entry)) {
      take(entry);
    }
  }
}

bool isDocumentStructure(QPDFObjectHandle object) {
  return object.isDictionaryOfType("/Page") || object.isDictionaryOfType("/Pages") ||
         object.isDictionaryOfType("/Catalog");
}

} // namespace melder
