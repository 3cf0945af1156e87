#include "engine/suggest/AnchorGroups.h"

#include <algorithm>
#include <functional>
#include <span>

namespace folivex {

namespace {

constexpr std::size_t mostGroups = 24;
constexpr std::size_t mostAnchors = 12;

struct Rough {
  int words = 0;
  int pages = 0;
  int firstPage = 0;
};

/// Tells every way in which words may stand on a set of pages.
class AnchorWalk {
public:
  using Entries = std::span<const std::uint64_t>;
  using Take = std::function<void(const Anchor& anchor, PageSet set, Entries entries, int pages)>;

  AnchorWalk(const PageSample& sample, Take take)
      : m_take(std::move(take)), m_stamps(static_cast<std::size_t>(sample.pageCount()), 0) {}

  void walk(Entries all);

private:
  void text(Entries entries);
  /// The set of the pages of entries; how many they are comes into `pages`.
  PageSet setOf(Entries entries, int& pages);
  void offer(Anchor::Reach reach, Entries entries, bool onceAPage);

  Take m_take;
  std::vector<std::uint32_t> m_stamps; ///< by page: the last walk that met it
  std::uint32_t m_stamp = 0;
  std::vector<PageSet> m_offered; ///< of the text
};

/// Tells each run of entries, of two and more, in which `part` is the same.
template <typename Part, typename Tell>
void forRuns(AnchorWalk::Entries all, Part part, Tell tell) {
  for (std::size_t from = 0; from < all.size();) {
    const auto first = part(PageSample::unpacked(all[from]));
    std::size_t to = from + 1;
    while (to < all.size() && part(PageSample::unpacked(all[to])) == first) {
      ++to;
    }
    if (to - from > 1) {
      tell(all.subspan(from, to - from));
    }
    from = to;
  }
}

void AnchorWalk::walk(Entries all) {
  forRuns(
      all, [](const PageSample::Entry& entry) { return entry.text; },
      [&](Entries entries) { text(entries); });
}

PageSet AnchorWalk::setOf(Entries entries, int& pages) {
  ++m_stamp;
  PageSet set = 0;
  pages = 0;
  for (const std::uint64_t entry : entries) {
    const int page = PageSample::unpacked(entry).page;
    if (m_stamps[static_cast<std::size_t>(page)] != m_stamp) {
      m_stamps[static_cast<std::size_t>(page)] = m_stamp;
      set += PageSample::partOf(page);
      ++pages;
    }
  }
  return set;
}

void AnchorWalk::offer(Anchor::Reach reach, Entries entries, bool onceAPage) {
  int pages = 0;
  const PageSet set = setOf(entries, pages);
  if (pages < 2 || (onceAPage && pages != static_cast<int>(entries.size())) ||
      std::find(m_offered.begin(), m_offered.end(), set) != m_offered.end()) {
    return;
  }
  m_offered.push_back(set);
  const PageSample::Entry first = PageSample::unpacked(entries.front());
  const PageSample::Entry last = PageSample::unpacked(entries.back());
  const int lastV = reach == Anchor::Reach::AtColumn ? last.v : first.v;
  m_take({first.text, reach, first.h, {first.v, lastV}}, set, entries, pages);
}

void AnchorWalk::text(Entries entries) {
  using Entry = PageSample::Entry;
  m_offered.clear();
  offer(Anchor::Reach::Anywhere, entries, true);
  forRuns(
      entries, [](const Entry& entry) { return entry.h; },
      [&](Entries column) {
        forRuns(
            column, [](const Entry& entry) { return entry.v; },
            [&](Entries place) { offer(Anchor::Reach::AtPlace, place, false); });
        offer(Anchor::Reach::AtColumn, column, true);
      });
}

double roughWorth(const Rough& rough) {
  constexpr int enoughWords = 30;
  constexpr int enoughPages = 10;
  const double begins = rough.firstPage == 0 ? 10 : rough.firstPage < 3 ? 4 : 0;
  return std::min(rough.words, enoughWords) + begins + 0.5 * std::min(rough.pages, enoughPages);
}

int firstPageOf(AnchorWalk::Entries entries) {
  int first = PageSample::mostPages;
  for (const std::uint64_t entry : entries) {
    first = std::min(first, PageSample::unpacked(entry).page);
  }
  return first;
}

std::vector<PageSet> bestSets(const std::unordered_map<PageSet, Rough>& all) {
  std::vector<std::pair<double, PageSet>> order;
  order.reserve(all.size());
  for (const auto& [set, rough] : all) {
    order.emplace_back(-roughWorth(rough), set);
  }
  const std::size_t count = std::min(order.size(), mostGroups);
  std::partial_sort(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(count), order.end());
  std::vector<PageSet> best;
  for (std::size_t i = 0; i < count; ++i) {
    best.push_back(order[i].second);
  }
  return best;
}

/// A label before a plain word, a text that is enough alone before one that needs its place.
int plainness(const PageSample& sample, const Anchor& anchor) {
  const QStringView text = sample.text(anchor.text);
  const bool isWord = text.size() > 2 && std::all_of(text.begin(), text.end() - 1, [](QChar c) {
                        return c.isLetter() || c == u'-';
                      });
  const int looks = text.endsWith(u':') && text.size() > 2 ? 0 : isWord ? 1 : 3;
  const int reach = anchor.reach == Anchor::Reach::Anywhere  ? 0
                    : anchor.reach == Anchor::Reach::AtPlace ? 2
                                                             : 6;
  return looks + reach;
}

} // namespace

std::unordered_map<PageSet, AnchorGroup> findAnchorGroups(const PageSample& sample,
                                                          const std::vector<PageSet>& wanted) {
  std::unordered_map<PageSet, Rough> all;
  const auto count = [&](const Anchor&, PageSet set, AnchorWalk::Entries entries, int pages) {
    if (pages < sample.pageCount()) {
      Rough& rough = all[set];
      rough.firstPage = rough.words == 0 ? firstPageOf(entries) : rough.firstPage;
      rough.pages = pages;
      ++rough.words;
    }
  };
  AnchorWalk(sample, count).walk(sample.byText());

  std::unordered_map<PageSet, AnchorGroup> groups;
  for (const PageSet set : bestSets(all)) {
    groups.try_emplace(set);
  }
  for (const PageSet set : wanted) {
    groups.try_emplace(set);
  }
  const auto collect = [&](const Anchor& anchor, PageSet set, AnchorWalk::Entries entries, int) {
    const auto found = groups.find(set);
    if (found == groups.end()) {
      return;
    }
    AnchorGroup& group = found->second;
    if (group.pages.empty()) {
      for (const std::uint64_t entry : entries) {
        group.pages.push_back(PageSample::unpacked(entry).page);
      }
      std::sort(group.pages.begin(), group.pages.end());
      group.pages.erase(std::unique(group.pages.begin(), group.pages.end()), group.pages.end());
    }
    ++group.anchorCount;
    const auto place = std::upper_bound(
        group.anchors.begin(), group.anchors.end(), plainness(sample, anchor),
        [&](int plain, const Anchor& other) { return plain < plainness(sample, other); });
    group.anchors.insert(place, anchor);
    group.anchors.resize(std::min(group.anchors.size(), mostAnchors));
  };
  AnchorWalk(sample, collect).walk(sample.byText());
  return groups;
}

} // namespace folivex
