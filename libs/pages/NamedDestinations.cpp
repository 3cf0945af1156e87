#include "NamedDestinations.h"

#include "TreeWalk.h"

#include <algorithm>
#include <tuple>

namespace pages {

NamedDestinations::NamedDestinations(QPDFObjectHandle catalog, const PageTable& pages)
    : m_pages(pages) {
  QPDFObjectHandle older = catalog.getKey("/Dests");
  if (older.isDictionary()) {
    for (auto& [name, value] : older.getDictAsMap()) {
      add(name, true, value);
    }
  }
  QPDFObjectHandle names = catalog.getKey("/Names");
  if (names.isDictionary()) {
    addTree(names.getKey("/Dests"));
  }
  std::stable_sort(
      m_all.begin(), m_all.end(),
      [](const Destination& left, const Destination& right) { return left.page < right.page; });
}

void NamedDestinations::addTree(QPDFObjectHandle root) {
  walkTree(root, "/Names", [this](QPDFObjectHandle key, QPDFObjectHandle value) {
    if (key.isString()) {
      add(key.getStringValue(), false, value);
    }
  });
}

void NamedDestinations::add(const std::string& name, bool isNameObject, QPDFObjectHandle value) {
  if (value.isDictionary()) {
    value = value.getKey("/D");
  }
  const auto page = pageOfArray(value);
  if (!page) {
    return;
  }
  auto& known = isNameObject ? m_pageByName : m_pageByString;
  if (known.emplace(name, *page).second) {
    m_all.push_back({name, isNameObject, *page, value});
  }
}

std::optional<int32_t> NamedDestinations::pageOfArray(QPDFObjectHandle array) const {
  if (!array.isArray() || array.getArrayNItems() == 0) {
    return std::nullopt;
  }
  QPDFObjectHandle target = array.getArrayItem(0);
  if (target.isIndirect()) {
    return m_pages.indexOf(target.getObjGen());
  }
  // Some producers give the page's index instead of the page.
  if (target.isInteger() && target.getIntValue() >= 0 && target.getIntValue() < m_pages.count()) {
    return static_cast<int32_t>(target.getIntValue());
  }
  return std::nullopt;
}

std::optional<int32_t> NamedDestinations::pageOf(QPDFObjectHandle name) const {
  const auto& known = name.isName() ? m_pageByName : m_pageByString;
  if (!name.isName() && !name.isString()) {
    return std::nullopt;
  }
  const auto found = known.find(name.isName() ? name.getName() : name.getStringValue());
  return found == known.end() ? std::nullopt : std::optional(found->second);
}

std::optional<int32_t> NamedDestinations::pageOfDestination(QPDFObjectHandle destination) const {
  if (destination.isDictionary()) {
    destination = destination.getKey("/D");
  }
  return destination.isArray() ? pageOfArray(destination) : pageOf(destination);
}

std::vector<const NamedDestinations::Destination*>
NamedDestinations::within(const std::vector<PageRange>& ranges) const {
  std::vector<const Destination*> found;
  for (const auto& [first, last] : ranges) {
    auto at =
        std::lower_bound(m_all.begin(), m_all.end(), first,
                         [](const Destination& left, int32_t page) { return left.page < page; });
    for (; at != m_all.end() && at->page <= last; ++at) {
      found.push_back(&*at);
    }
  }
  std::sort(found.begin(), found.end(), [](const Destination* left, const Destination* right) {
    return std::tuple(!left->isNameObject, std::string_view(left->name)) <
           std::tuple(!right->isNameObject, std::string_view(right->name));
  });
  found.erase(std::unique(found.begin(), found.end()), found.end());
  return found;
}

} // namespace pages
