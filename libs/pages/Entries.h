// Entries: what stands below a dictionary or in an array, whatever a file has put in its place.
#pragma once

#include <qpdf/QPDFObjectHandle.hh>

#include <string>
#include <vector>

namespace pages {

/// The dictionary of a dictionary or stream, null for anything else.
[[nodiscard]] inline QPDFObjectHandle dictionaryOf(QPDFObjectHandle object) {
  if (object.isStream()) {
    return object.getDict();
  }
  return object.isDictionary() ? object : QPDFObjectHandle::newNull();
}

/// The value below a key, null where the owner has no dictionary.
[[nodiscard]] inline QPDFObjectHandle entryOf(const QPDFObjectHandle& owner,
                                              const std::string& key) {
  QPDFObjectHandle dictionary = dictionaryOf(owner);
  return dictionary.isDictionary() ? dictionary.getKey(key) : dictionary;
}

/// The items of an array, none of anything else.
[[nodiscard]] inline std::vector<QPDFObjectHandle> itemsOf(QPDFObjectHandle list) {
  return list.isArray() ? list.getArrayAsVector() : std::vector<QPDFObjectHandle>();
}

} // namespace pages
