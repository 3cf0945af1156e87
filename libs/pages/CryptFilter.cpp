#include "CryptFilter.h"

#include <vector>

namespace pages {

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
  std::vector<QPDFObjectHandle> filters;
  std::vector<QPDFObjectHandle> kept;
  const bool parallel = parameters != entries.end() && parameters->second.isArray();
  for (int i = 0; i < filter->second.getArrayNItems(); ++i) {
    if (filter->second.getArrayItem(i).isNameAndEquals("/Crypt")) {
      continue;
    }
    filters.push_back(filter->second.getArrayItem(i));
    kept.push_back(parallel ? parameters->second.getArrayItem(i) : QPDFObjectHandle::newNull());
  }
  filter->second = QPDFObjectHandle::newArray(filters);
  if (parallel) {
    parameters->second = QPDFObjectHandle::newArray(kept);
  }
}

} // namespace pages
