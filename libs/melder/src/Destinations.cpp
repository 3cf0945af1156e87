#include "Joining.h"

#include "pages/TreeWalk.h"

#include <algorithm>
#include <set>

namespace melder {

namespace {

/// `firstPage`: number of the part's first page in the receiving document.
std::string freeName(const std::string& wanted, const std::set<std::string>& taken,
                     int32_t firstPage) {
  if (!taken.contains(wanted)) {
    return wanted;
  }
  // In front and padded: the renamed ones of one append lie side by side in the tree.
  std::string digits = std::to_string(firstPage);
  digits.insert(0, 7 - std::min<size_t>(digits.size(), 7), '0');
  std::string name = 'p' + digits + '.' + wanted;
  for (int again = 2; taken.contains(name); ++again) {
    name = 'p' + digits + '.' + std::to_string(again) + '.' + wanted;
  }
  return name;
}

} // namespace

void joinDestinations(Joining& joining) {
  const auto added = joining.names.within({{0, joining.part.pageCount() - 1}});
  if (added.empty()) {
    return;
  }
  std::map<std::string, QPDFObjectHandle> all;
  std::set<std::string> taken;
  QPDFObjectHandle catalog = joining.receiver.catalog();
  pages::walkTree(pages::entryOf(catalog.getKey("/Names"), "/Dests"), "/Names",
                  [&](QPDFObjectHandle key, const QPDFObjectHandle& value) {
                    if (key.isString() && all.emplace(key.getStringValue(), value).second) {
                      taken.insert(key.getStringValue());
                    }
                  });
  if (QPDFObjectHandle older = catalog.getKey("/Dests"); older.isDictionary()) {
    for (const std::string& key : older.getKeys()) {
      taken.insert(key.substr(1));
    }
  }
  Transplant::Names renamed;
  for (const auto* each : added) {
    const std::string name = each->isNameObject ? each->name.substr(1) : each->name;
    if (!renamed.contains(name)) {
      const std::string fresh = freeName(name, taken, joining.receiver.pageCount() + 1);
      renamed[name] = fresh;
      taken.insert(fresh);
      // Some name the page by its index, which is another one in the receiving document.
      QPDFObjectHandle array = QPDFObjectHandle(each->value).unsafeShallowCopy();
      array.setArrayItem(0, joining.part.page(each->page));
      all[fresh] = joining.transplant.value(array);
    }
  }
  joining.transplant.setDestinations(renamed);
  std::vector<QPDFObjectHandle> entries;
  for (const auto& [name, value] : all) {
    entries.push_back(QPDFObjectHandle::newString(name));
    entries.push_back(value);
  }
  joining.setTree(dictionaryBelow(catalog, "/Names"), "/Dests", "/Names", entries);
}

} // namespace melder
