#include "OutlineIndex.h"

#include <algorithm>
#include <set>

namespace cleftor {

namespace {

constexpr size_t mostItems = 5'000'000;

/** The destination of a bookmark, named by it or by its action; null when it leads elsewhere. */
QPDFObjectHandle destinationOf(QPDFObjectHandle item) {
  QPDFObjectHandle destination = item.getKey("/Dest");
  if (!destination.isNull()) {
    return destination;
  }
  QPDFObjectHandle action = item.getKey("/A");
  const bool jumps = action.isDictionary() && action.getKey("/S").isNameAndEquals("/GoTo");
  return jumps ? action.getKey("/D") : QPDFObjectHandle::newNull();
}

} // namespace

OutlineIndex::OutlineIndex(QPDFObjectHandle catalog, const NamedDestinations& names) {
  QPDFObjectHandle root = catalog.getKey("/Outlines");
  if (root.isDictionary()) {
    walk(root, names);
  }
  for (size_t i = 0; i < m_items.size(); ++i) {
    if (m_items[i].page != none) {
      m_byPage.push_back(static_cast<int32_t>(i));
    }
  }
  std::stable_sort(m_byPage.begin(), m_byPage.end(), [this](int32_t left, int32_t right) {
    return item(left).page < item(right).page;
  });
}

void OutlineIndex::walk(QPDFObjectHandle root, const NamedDestinations& names) {
  struct Step {
    QPDFObjectHandle item;
    int32_t parent;
  };
  ObjGenSet seen;
  std::vector<Step> waiting{{root.getKey("/First"), none}};
  while (!waiting.empty() && m_items.size() < mostItems) {
    Step step = waiting.back();
    waiting.pop_back();
    if (!step.item.isDictionary() || !step.item.isIndirect() ||
        !seen.insert(step.item.getObjGen()).second) {
      continue;
    }
    const auto page = names.pageOfDestination(destinationOf(step.item));
    const auto position = static_cast<int32_t>(m_items.size());
    m_items.push_back({step.item, step.parent, page.value_or(none)});
    waiting.push_back({step.item.getKey("/Next"), step.parent});
    waiting.push_back({step.item.getKey("/First"), position});
  }
}

std::vector<int32_t> OutlineIndex::within(const std::vector<PageRange>& ranges) const {
  std::set<int32_t> kept;
  for (const auto& [first, last] : ranges) {
    auto at = std::lower_bound(
        m_byPage.begin(), m_byPage.end(), first,
        [this](int32_t position, int32_t page) { return item(position).page < page; });
    for (; at != m_byPage.end() && item(*at).page <= last; ++at) {
      for (int32_t up = *at; up != none && kept.insert(up).second;) {
        up = item(up).parent;
      }
    }
  }
  return {kept.begin(), kept.end()};
}

} // namespace cleftor
