#include "PageLabels.h"

#include "TreeWalk.h"

#include <algorithm>
#include <limits>

namespace cleftor {

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

namespace {

/** A section that begins skipped pages into the one that label describes. */
void writeSection(Fragment& out, int64_t page, QPDFObjectHandle label, int64_t skipped) {
  out.integer(page);
  out.text("<<");
  for (auto& [key, value] : label.getDictAsMap()) {
    if (key != "/St" && !value.isNull()) {
      out.entry(key, value);
    }
  }
  QPDFObjectHandle start = label.getKey("/St");
  const int64_t first = start.isInteger() ? start.getIntValue() : 1;
  if (first <= std::numeric_limits<int64_t>::max() - skipped && first + skipped != 1) {
    out.text("/St ");
    out.integer(first + skipped);
  }
  out.text(">>");
}

} // namespace

/** place: index of the range's first page in the output. False when its pages have no labels. */
bool PageLabels::writeRange(Fragment& out, PageRange range, int64_t place) const {
  auto at = std::upper_bound(m_sections.begin(), m_sections.end(), range.first,
                             [](int64_t page, const Section& right) { return page < right.page; });
  if (at != m_sections.begin()) {
    --at;
  }
  if (at == m_sections.end() || at->page > range.last) {
    // Those of the range before would else go on here.
    writeSection(out, place, QPDFObjectHandle::parse("<</S/D>>"), place);
    return false;
  }
  for (; at != m_sections.end() && at->page <= range.last; ++at) {
    const int64_t skipped = std::max<int64_t>(0, range.first - at->page);
    writeSection(out, place + std::max<int64_t>(0, at->page - range.first), at->label, skipped);
  }
  return true;
}

std::optional<Fragment> PageLabels::within(const std::vector<PageRange>& ranges) const {
  Fragment out;
  out.text("<</Nums[");
  bool any = false;
  int64_t place = 0;
  for (const PageRange& range : ranges) {
    any = writeRange(out, range, place) || any;
    place += range.last - range.first + 1;
  }
  out.text("]>>");
  return any ? std::optional(std::move(out)) : std::nullopt;
}

} // namespace cleftor
