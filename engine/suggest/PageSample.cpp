#include "engine/suggest/PageSample.h"

#include "engine/match/WordPlacer.h"

#include <unordered_map>

namespace folivex {

namespace {

constexpr int pageBits = 11;
constexpr int placeBits = 14;
constexpr int textBits = 20;
static_assert(PageSample::mostPages <= 1 << pageBits);

/// Labels stand at the head and the foot of a page. What is between on a page of ten thousand words
/// would cost time and tell nothing.
constexpr int mostWordsOfPage = 1500;

bool isOnPage(int place) {
  return place >= 0 && place < 1 << placeBits;
}

std::uint64_t low(std::uint64_t value, int bits) {
  return value & ((std::uint64_t{1} << bits) - 1);
}

} // namespace

PageSample::PageSample(const WordTable& table) : m_table(table) {
  std::unordered_map<TextPool::Number, TextId> ids;
  const int pages = std::min(table.pageCount(), mostPages);
  m_ends.reserve(static_cast<std::size_t>(pages));
  for (int page = 1; page <= pages && table.hasPage(page); ++page) {
    WordPlacer placer(false);
    placer.beginPage();
    for (int i = 0; i < std::min(table.wordCount(page), mostWordsOfPage); ++i) {
      const PageWord word = table.word(page, i);
      if (word.text.isEmpty()) {
        continue;
      }
      const PlacedWord placed = placer.place(word);
      const TextPool::Number number = table.textNumber(page, i);
      const auto [entry, isNew] = ids.try_emplace(number, static_cast<TextId>(m_texts.size()));
      if (isNew) {
        m_texts.push_back(number);
      }
      m_words.push_back({entry->second, placed.h, word.h, word.v});
      if (entry->second < TextId{1} << textBits && isOnPage(placed.h) && isOnPage(word.v)) {
        const auto at = [](int value) { return static_cast<std::uint64_t>(value); };
        m_byText.push_back(
            (((at(static_cast<int>(entry->second)) << placeBits | at(placed.h)) << placeBits |
              at(word.v))
             << pageBits) |
            at(page - 1));
      }
    }
    if (m_words.size() > (m_ends.empty() ? 0 : m_ends.back())) {
      m_filled.push_back(page - 1);
    }
    m_ends.push_back(m_words.size());
  }
  std::sort(m_byText.begin(), m_byText.end());
}

std::span<const SampleWord> PageSample::page(int page) const {
  const auto index = static_cast<std::size_t>(page);
  const std::size_t begin = index == 0 ? 0 : m_ends[index - 1];
  return std::span(m_words).subspan(begin, m_ends[index] - begin);
}

std::vector<Bookmark> PageSample::bookmarks(int level) const {
  std::vector<Bookmark> found;
  std::copy_if(m_table.outline().begin(), m_table.outline().end(), std::back_inserter(found),
               [&](const Bookmark& bookmark) {
                 return bookmark.level == level && bookmark.page > 0 &&
                        bookmark.page <= pageCount();
               });
  return found;
}

PageSet PageSample::partOf(int page) {
  // The finaliser of a well-mixed generator: sums of its values tell sets apart.
  PageSet x = (static_cast<PageSet>(page) + 1) * 0x9E3779B97F4A7C15ULL;
  x = (x ^ (x >> 30U)) * 0xBF58476D1CE4E5B9ULL;
  x = (x ^ (x >> 27U)) * 0x94D049BB133111EBULL;
  return x ^ (x >> 31U);
}

PageSet PageSample::setOf(std::span<const int> pages) {
  PageSet set = 0;
  for (const int page : pages) {
    set += partOf(page);
  }
  return set;
}

PageSample::Entry PageSample::unpacked(std::uint64_t entry) {
  return {static_cast<TextId>(entry >> (2 * placeBits + pageBits)),
          static_cast<int>(low(entry >> (placeBits + pageBits), placeBits)),
          static_cast<int>(low(entry >> pageBits, placeBits)),
          static_cast<int>(low(entry, pageBits))};
}

} // namespace folivex
