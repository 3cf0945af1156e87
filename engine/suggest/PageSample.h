// PageSample: the first pages of a file, put in order so that what repeats is found at once.
#pragma once

#include "engine/words/WordTable.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace folivex {

/// Distinct texts of the sample are numbered from 0; pages count from 0.
using TextId = std::uint32_t;
inline constexpr TextId noText = ~TextId{0};

struct SampleWord {
  TextId text = noText;
  int h = 0;    ///< where it counts as standing, as a search at a position is typed
  int rawH = 0; ///< where it stands, as a name that asks for a position is typed
  int v = 0;
};

/// Whether a word of a page begins its line, or ends it.
inline bool beginsLine(std::span<const SampleWord> words, std::size_t word) {
  return word == 0 || words[word - 1].v != words[word].v;
}
inline bool endsLine(std::span<const SampleWord> words, std::size_t word) {
  return word + 1 == words.size() || words[word + 1].v != words[word].v;
}

/// What was reached on one axis, both ends included; nothing as long as nothing was.
struct Span {
  int low = std::numeric_limits<int>::max();
  int high = std::numeric_limits<int>::min();

  void reach(int value) {
    low = std::min(low, value);
    high = std::max(high, value);
  }
  bool holds(int value) const { return value >= low && value <= high; }
  int width() const { return std::max(low, high) == high ? high - low : 0; }
  /// As a position is typed.
  QString text() const {
    return low == high ? QString::number(low) : QStringLiteral("%1-%2").arg(low).arg(high);
  }
};

/// A set of pages as one number: equal sets have equal numbers.
using PageSet = std::uint64_t;

class PageSample {
public:
  static constexpr int mostPages = 1000;

  /// Takes the pages of the table that are there, from the first on. The table must outlive this.
  explicit PageSample(const WordTable& table);

  int pageCount() const { return static_cast<int>(m_ends.size()); }
  std::span<const SampleWord> page(int page) const;
  QStringView text(TextId id) const { return m_table.text(m_texts[id]); }
  std::size_t textCount() const { return m_texts.size(); }
  /// Pages with words, ascending.
  const std::vector<int>& filledPages() const { return m_filled; }
  /// Those of a level that lead to pages of the sample, in their order.
  std::vector<Bookmark> bookmarks(int level) const;

  /// The part of a set that a page is.
  static PageSet partOf(int page);
  static PageSet setOf(std::span<const int> pages);

  /// One word for each place and page, packed so that those of one text come together, then those
  /// of one place, in page order. Words far outside a page are left out.
  const std::vector<std::uint64_t>& byText() const { return m_byText; }

  struct Entry {
    TextId text;
    int h;
    int v;
    int page;
  };
  static Entry unpacked(std::uint64_t entry);

private:
  const WordTable& m_table;
  std::vector<TextPool::Number> m_texts;
  std::vector<SampleWord> m_words;
  std::vector<std::size_t> m_ends; ///< of the pages' words
  std::vector<int> m_filled;
  std::vector<std::uint64_t> m_byText;
};

} // namespace folivex
