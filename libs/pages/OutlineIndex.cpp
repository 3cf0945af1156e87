#include "OutlineIndex.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <unordered_map>
#include <utility>

namespace pages {

namespace {

constexpr size_t mostItems = 5'000'000;

/// The destination of a bookmark, named by it or by its action; null when it leads elsewhere.
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

std::vector<int32_t> OutlineIndex::all() const {
  std::vector<int32_t> positions(m_items.size());
  std::iota(positions.begin(), positions.end(), 0);
  return positions;
}

bool Bookmark::isOpen() const {
  QPDFObjectHandle count = QPDFObjectHandle(item->dictionary).getKey("/Count");
  return count.isInteger() && count.getIntValue() > 0;
}

std::vector<Bookmark> bookmarksAt(const OutlineIndex& index,
                                  const std::vector<int32_t>& positions) {
  std::vector<Bookmark> list(positions.size() + 1);
  const auto at = [&list](int place) -> Bookmark& { return list[static_cast<size_t>(place)]; };
  std::unordered_map<int32_t, int> places{{OutlineIndex::none, 0}};
  for (int place = 1; place < static_cast<int>(list.size()); ++place) {
    const int32_t position = positions[static_cast<size_t>(place - 1)];
    places.emplace(position, place);
    Bookmark& bookmark = at(place);
    bookmark.item = &index.item(position);
    bookmark.parent = places.at(bookmark.item->parent);
    Bookmark& parent = at(bookmark.parent);
    bookmark.previous = std::exchange(parent.last, place);
    (bookmark.previous == Bookmark::none ? parent.first : at(bookmark.previous).next) = place;
  }
  // Parents come before what is below them.
  for (size_t i = list.size() - 1; i > 0; --i) {
    at(list[i].parent).visibleBelow += 1 + (list[i].isOpen() ? list[i].visibleBelow : 0);
  }
  return list;
}

} // namespace pages
