#include "PageLabels.h"

#include "TreeWalk.h"

#include <algorithm>
#include <limits>

namespace pages {

namespace {

/// The description of what is left of a section when its first pages are not there.
QPDFObjectHandle withoutFirst(QPDFObjectHandle label, int64_t pages) {
  QPDFObjectHandle number = label.getKey("/St");
  const int64_t first = number.isInteger() ? number.getIntValue() : 1;
  const int64_t start = first <= std::numeric_limits<int64_t>::max() - pages ? first + pages : 1;
  QPDFObjectHandle copy = label.unsafeShallowCopy();
  copy.removeKey("/St");
  if (start != 1) {
    copy.replaceKey("/St", QPDFObjectHandle::newInteger(start));
  }
  return copy;
}

} // namespace

PageLabels::PageLabels(QPDFObjectHandle catalog) {
  walkTree(catalog.getKey("/PageLabels"), "/Nums",
           [this](QPDFObjectHandle key, QPDFObjectHandle label) {
             if (key.isInteger() && label.isDictionary()) {
               m_sections.push_back({key.getIntValue(), label});
             }
           });
  std::stable_sort(
      m_sections.begin(), m_sections.end(),
      [](const Section& left, const Section& right) { return left.page < right.page; });
}

PageLabels::Section PageLabels::byPlace(int64_t page) {
  return {page, withoutFirst(QPDFObjectHandle::parse("<</S/D>>"), page)};
}

/// place: index that the range's first page gets. False when its pages have no labels.
bool PageLabels::addRange(std::vector<Section>& found, PageRange range, int64_t place) const {
  auto at = std::upper_bound(m_sections.begin(), m_sections.end(), range.first,
                             [](int64_t page, const Section& right) { return page < right.page; });
  if (at != m_sections.begin()) {
    --at;
  }
  if (at == m_sections.end() || at->page > range.first) {
    // Those of the range before would else go on here.
    found.push_back(byPlace(place));
  }
  const bool hasAny = at != m_sections.end() && at->page <= range.last;
  for (; at != m_sections.end() && at->page <= range.last; ++at) {
    const int64_t distance = at->page - range.first;
    found.push_back({place + std::max<int64_t>(0, distance),
                     withoutFirst(at->label, std::max<int64_t>(0, -distance))});
  }
  return hasAny;
}

std::vector<PageLabels::Section> PageLabels::within(const std::vector<PageRange>& ranges,
                                                    int64_t place) const {
  std::vector<Section> found;
  bool any = false;
  for (const PageRange& range : ranges) {
    any = addRange(found, range, place) || any;
    place += range.last - range.first + 1;
  }
  return any ? found : std::vector<Section>();
}

} // namespace pages
