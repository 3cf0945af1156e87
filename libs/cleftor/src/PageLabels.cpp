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

std::optional<Fragment> PageLabels::within(int32_t first, int32_t last) const {
  auto at = std::upper_bound(m_sections.begin(), m_sections.end(), first,
                             [](int64_t page, const Section& right) { return page < right.page; });
  if (at != m_sections.begin()) {
    --at;
  }
  Fragment out;
  out.text("<</Nums[");
  bool any = false;
  for (; at != m_sections.end() && at->page <= last; ++at) {
    const int64_t skipped = std::max<int64_t>(0, first - at->page);
    writeSection(out, std::max<int64_t>(0, at->page - first), at->label, skipped);
    any = true;
  }
  out.text("]>>");
  return any ? std::optional(std::move(out)) : std::nullopt;
}

} // namespace cleftor
