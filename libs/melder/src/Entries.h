// Entries: dictionaries and lists of the receiving file that may not be there yet.
#pragma once

#include <qpdf/QPDFObjectHandle.hh>

#include <string>

namespace melder {

/// The dictionary below a key, made where there is none.
[[nodiscard]] inline QPDFObjectHandle dictionaryBelow(QPDFObjectHandle owner,
                                                      const std::string& key) {
  QPDFObjectHandle found = owner.getKey(key);
  return found.isDictionary() ? found
                              : owner.replaceKeyAndGetNew(key, QPDFObjectHandle::newDictionary());
}

/// The array below a key, made where there is none.
[[nodiscard]] inline QPDFObjectHandle arrayBelow(QPDFObjectHandle owner, const std::string& key) {
  QPDFObjectHandle found = owner.getKey(key);
  return found.isArray() ? found : owner.replaceKeyAndGetNew(key, QPDFObjectHandle::newArray());
}

} // namespace melder
