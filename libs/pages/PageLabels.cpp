#include "PageLabels.h"

#include "TreeWalk.h"

#include <algorithm>
#include <limits>

namespace pages {

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

int64_t PageLabels::Section::start() const {
  QPDFObjectHandle number = QPDFObjectHandle(label).getKey("/St");
  const int64_t first = number.isInteger() ? number.getIntValue() : 1;
  return first <= std::numeric_limits<int64_t>::max() - skipped ? first + skipped : 1;
}

QPDFObjectHandle PageLabels::Section::shifted() const {
  QPDFObjectHandle copy = QPDFObjectHandle(label).unsafeShallowCopy();
  copy.removeKey("/St");
  if (start() != 1) {
    copy.replaceKey("/St", QPDFObjectHandle::newInteger(start()));
  }
  return copy;
}

/// place: index that the range's first page gets. False when its pages have no labels.
bool PageLabels::addRange(std::vector<Section>& found, PageRange range, int64_t place) const {
  auto at = std::upper_bound(m_sections.begin(), m_sections.end(), range.first,
                             [](int64_t page, const Section& right) { return page < right.page; });
  if (at != m_sections.begin()) {
    --at;
  }
  if (at == m_sections.end() || at->page > range.last) {
    // Those of the range before would else go on here.
    found.push_back({place, QPDFObjectHandle::parse("<</S/D>>"), place});
    return false;
  }
  for (; at != m_sections.end() && at->page <= range.last; ++at) {
    const int64_t skipped = std::max<int64_t>(0, range.first - at->page);
    found.push_back({place + std::max<int64_t>(0, at->page - range.first), at->label, skipped});
  }
  return true;
}

std::vector<PageLabels::Section> PageLabels::within(const std::vector<PageRange>& ranges) const {
  std::vector<Section> found;
  if (m_sections.empty()) {
    return found;
  }
  bool any = false;
  int64_t place = 0;
  for (const PageRange& range : ranges) {
    any = addRange(found, range, place) || any;
    place += range.last - range.first + 1;
  }
  return any ? found : std::vector<Section>();
}

} // namespace pages
