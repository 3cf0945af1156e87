#include "CryptFilter.h"

namespace pages {

bool hasPlainPages(QPDFObjectHandle encryption) {
  constexpr int firstWithFilters = 4;
  if (!encryption.isDictionary()) {
    return false;
  }
  const auto isPlain = [&encryption](const char* key) {
    QPDFObjectHandle filter = encryption.getKey(key);
    return filter.isNull() || filter.isNameAndEquals("/Identity");
  };
  QPDFObjectHandle version = encryption.getKey("/V");
  return version.isInteger() && version.getIntValue() >= firstWithFilters && isPlain("/StmF") &&
         isPlain("/StrF");
}

bool hasKeyOfItsOwn(QPDFObjectHandle streamDictionary) {
  // One filter and its parameters may stand without an array around them.
  const auto at = [](QPDFObjectHandle value, int index) {
    return value.isArray() ? value.getArrayItem(index) : value;
  };
  QPDFObjectHandle filters = streamDictionary.getKey("/Filter");
  QPDFObjectHandle parameters = streamDictionary.getKey("/DecodeParms");
  for (int i = filters.isArray() ? filters.getArrayNItems() - 1 : 0; i >= 0; --i) {
    if (at(filters, i).isNameAndEquals("/Crypt")) {
      QPDFObjectHandle beside = at(parameters, i);
      QPDFObjectHandle key = beside.isDictionary() ? beside.getKey("/Name") : beside;
      return key.isName() && !key.isNameAndEquals("/Identity");
    }
  }
  return false;
}

void dropCryptFilter(std::map<std::string, QPDFObjectHandle>& entries) {
  const auto filter = entries.find("/Filter");
  if (filter == entries.end()) {
    return;
  }
  const auto parameters = entries.find("/DecodeParms");
  if (filter->second.isNameAndEquals("/Crypt")) {
    entries.erase(filter);
    entries.erase("/DecodeParms");
    return;
  }
  if (!filter->second.isArray()) {
    return;
  }
  // The parameters stand beside the filters that they belong to.
  filter->second = filter->second.unsafeShallowCopy();
  QPDFObjectHandle beside = QPDFObjectHandle::newNull();
  if (parameters != entries.end() && parameters->second.isArray()) {
    beside = parameters->second = parameters->second.unsafeShallowCopy();
  }
  for (int i = filter->second.getArrayNItems() - 1; i >= 0; --i) {
    if (filter->second.getArrayItem(i).isNameAndEquals("/Crypt")) {
      filter->second.eraseItem(i);
      if (beside.isArray() && i < beside.getArrayNItems()) {
        beside.eraseItem(i);
      }
    }
  }
}

} // namespace pages
