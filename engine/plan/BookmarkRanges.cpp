#include "engine/plan/BookmarkRanges.h"

#include <algorithm>

namespace folivex {

std::vector<SplitRange> bookmarkRanges(const std::vector<Bookmark>& outline, SplitMethod method,
                                       int pageCount) {
  const std::optional<int> level = traitsOf(method).level;
  std::vector<const Bookmark*> starts;
  for (const Bookmark& entry : outline) {
    const bool leadsToPage = entry.page >= 1 && entry.page <= pageCount;
    if (leadsToPage && entry.level == level.value_or(entry.level)) {
      starts.push_back(&entry);
    }
  }
  const auto byPage = [](const Bookmark* a, const Bookmark* b) { return a->page < b->page; };
  std::stable_sort(starts.begin(), starts.end(), byPage);
  const auto samePage = [](const Bookmark* a, const Bookmark* b) { return a->page == b->page; };
  starts.erase(std::unique(starts.begin(), starts.end(), samePage), starts.end());

  std::vector<SplitRange> ranges;
  ranges.reserve(starts.size());
  for (std::size_t i = 0; i < starts.size(); ++i) {
    const int last = i + 1 < starts.size() ? starts[i + 1]->page - 2 : pageCount - 1;
    SplitRange range;
    range.firstPage = starts[i]->page - 1;
    range.lastPage = last;
    range.rangeText = starts[i]->title;
    ranges.push_back(range);
  }
  return ranges;
}

} // namespace folivex
