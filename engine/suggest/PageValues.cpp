#include "engine/suggest/PageValues.h"

#include "engine/suggest/LabelValues.h"
#include "engine/suggest/LineText.h"
#include "engine/suggest/ValueWorth.h"

#include <algorithm>
#include <map>
#include <unordered_map>

namespace folivex {

namespace {

constexpr std::size_t mostKeys = 300;
constexpr std::size_t mostValues = 40;

/// Counts pages by what stands on them.
class PageCounts {
public:
  static std::uint64_t keyOf(std::uint32_t first, std::uint32_t second) {
    return std::uint64_t{first} << 32U | second;
  }
  /// A page is told after the one before it.
  void add(std::uint64_t key, int page) {
    auto& [pages, last] = m_counts.try_emplace(key, 0, -1).first->second;
    if (last != page) {
      last = page;
      ++pages;
    }
  }
  /// The keys of so many pages, in their order, of which too many would tell nothing.
  std::vector<std::uint64_t> ofAtLeast(int pages) const {
    std::vector<std::uint64_t> keys;
    for (const auto& [key, count] : m_counts) {
      if (count.first >= pages) {
        keys.push_back(key);
      }
    }
    std::sort(keys.begin(), keys.end());
    keys.resize(std::min(keys.size(), mostKeys));
    return keys;
  }

private:
  std::unordered_map<std::uint64_t, std::pair<int, int>> m_counts; ///< pages, and the last one
};

/// "4711 0815 42"
bool areNumbersOfWords(const std::vector<QString>& texts) {
  const qsizetype words = texts.front().count(u' ');
  return words > 0 && std::all_of(texts.begin(), texts.end(), [words](const QString& text) {
           return text.count(u' ') == words && std::all_of(text.begin(), text.end(), [](QChar c) {
                    return c.isDigit() || c == u' ';
                  });
         });
}

/// Walks the pages that values are looked for on, once for each kind of place.
class Finder {
public:
  Finder(const PageSample& sample, const std::vector<int>& pages, int mostMissing)
      : m_sample(sample), m_pages(pages), m_fewest(static_cast<int>(pages.size()) - mostMissing) {}

  std::vector<ValuePlace> find();

private:
  void behindLabels();
  void atPlaces();
  void aloneOnLines();
  void add(ValuePlace&& place);

  const PageSample& m_sample;
  const std::vector<int>& m_pages;
  int m_fewest;
  std::vector<ValuePlace> m_found;
};

std::vector<ValuePlace> Finder::find() {
  behindLabels();
  atPlaces();
  aloneOnLines();
  std::stable_sort(m_found.begin(), m_found.end(),
                   [](const ValuePlace& a, const ValuePlace& b) { return a.worth > b.worth; });
  m_found.resize(std::min(m_found.size(), mostValues));
  return std::move(m_found);
}

/// Whether the value only comes next in reading order: a label stands before its value or above it.
bool isElsewhere(const ValuePlace& place) {
  constexpr int farthestAside = 72;
  constexpr int farthestBelow = 40;
  const auto reaches = [](const Span& span, int limit) {
    return span.low < -limit || span.high > limit;
  };
  return place.hasLabel() && reaches(place.step, unevenPrint) &&
         (reaches(place.aside, farthestAside) || reaches(place.step, farthestBelow));
}

void Finder::add(ValuePlace&& place) {
  const bool isLabelled = place.hasLabel() && !isElsewhere(place);
  const bool endsWithColon = isLabelled && m_sample.text(place.label).endsWith(u':');
  const bool hasOwn = !commonLabel(place.texts).isEmpty();
  place.worth = worthOf(place.texts, {isLabelled || place.head != noText || hasOwn,
                                      endsWithColon || hasOwn, place.isPart});
  if (place.hasLabel() && !isLabelled) {
    place.worth -= 1; // its place says more of it
  }
  if (place.isLine()) {
    // One word is found again more surely than a line, but a part of a number is none.
    place.worth += areNumbersOfWords(place.texts) ? 0.5 : -0.5;
  }
  if (place.step.width() > unevenPrint) {
    place.worth -= 2; // on some pages another word comes between
  }
  if (place.before != noText) {
    place.worth -= 0.2;
  }
  if (place.worth > 0) {
    m_found.push_back(std::move(place));
  }
}

/// Words that all pages have, and pairs of them.
void Finder::behindLabels() {
  PageCounts words;
  for (const int page : m_pages) {
    for (const SampleWord& word : m_sample.page(page)) {
      words.add(word.text, page);
    }
  }
  const std::vector<std::uint64_t> common = words.ofAtLeast(m_fewest);
  PageCounts pairs;
  for (const int page : m_pages) {
    TextId before = noText;
    for (const SampleWord& word : m_sample.page(page)) {
      const bool isCommon = std::binary_search(common.begin(), common.end(), word.text);
      if (isCommon && before != noText) {
        pairs.add(PageCounts::keyOf(before, word.text), page);
      }
      before = isCommon ? word.text : noText;
    }
  }
  std::vector<Label> labels;
  const auto take = [&](const Label& label) {
    if (isPlausible(m_sample, label)) {
      labels.push_back(label);
    }
  };
  for (const std::uint64_t text : common) {
    take({static_cast<TextId>(text), noText});
  }
  for (const std::uint64_t pair : pairs.ofAtLeast(m_fewest)) {
    take({static_cast<TextId>(pair), static_cast<TextId>(pair >> 32U)});
  }
  for (ValuePlace& value : valuesBehind(m_sample, m_pages, labels)) {
    add(std::move(value));
  }
}

/// The word that stands above another one as the head of a column does.
TextId headOf(std::span<const SampleWord> words, std::size_t of) {
  constexpr int nearest = 7;
  constexpr int farthest = 22;
  constexpr int aside = 2;
  const SampleWord& value = words[of];
  for (std::size_t i = of; i-- > 0 && words[i].v >= value.v - farthest;) {
    if (words[i].v <= value.v - nearest && std::abs(words[i].h - value.h) <= aside) {
      return words[i].text;
    }
  }
  return noText;
}

/// Places at which all pages have a word.
void Finder::atPlaces() {
  PageCounts counts;
  const auto keyOf = [](const SampleWord& word) {
    return PageCounts::keyOf(static_cast<std::uint32_t>(word.v),
                             static_cast<std::uint32_t>(word.h));
  };
  for (const int page : m_pages) {
    for (const SampleWord& word : m_sample.page(page)) {
      counts.add(keyOf(word), page);
    }
  }
  const std::vector<std::uint64_t> keys = counts.ofAtLeast(m_fewest);
  std::vector<ValuePlace> places(keys.size());
  std::vector<ValuePlace> lines(keys.size());
  for (std::size_t p = 0; p < m_pages.size(); ++p) {
    const std::span<const SampleWord> words = m_sample.page(m_pages[p]);
    for (std::size_t i = 0; i < words.size(); ++i) {
      const auto found = std::lower_bound(keys.begin(), keys.end(), keyOf(words[i]));
      if (found == keys.end() || *found != keyOf(words[i])) {
        continue;
      }
      const auto index = static_cast<std::size_t>(found - keys.begin());
      ValuePlace& place = places[index];
      const TextId head = headOf(words, i);
      place.head = place.texts.empty() || place.head == head ? head : noText;
      place.texts.resize(m_pages.size());
      place.reach(words[i]);
      place.texts[p] = m_sample.text(words[i].text).toString();
      if (!continuesLine(m_sample, words, i)) { // no line begins in the middle of one
        lines[index].texts.resize(m_pages.size());
        lines[index].texts[p] = lineFrom(m_sample, words.subspan(i), lines[index].lineEndsBefore);
      }
    }
  }
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (!lines[i].texts.empty() && lines[i].texts != places[i].texts) {
      ValuePlace line = places[i];
      line.kind = ValuePlace::Kind::LineAtPlace;
      line.texts = std::move(lines[i].texts);
      line.lineEndsBefore = lines[i].lineEndsBefore;
      add(std::move(line));
      places[i].isPart = true;
    }
    add(std::move(places[i]));
  }
}

/// Lines of one word, wherever that begins: values that are set flush right or in the middle, or
/// that stand a little off their place in recognised text.
void Finder::aloneOnLines() {
  struct Alone {
    std::size_t page;
    const SampleWord* word;
  };
  std::map<int, std::vector<Alone>> byV;
  for (std::size_t p = 0; p < m_pages.size(); ++p) {
    const std::span<const SampleWord> words = m_sample.page(m_pages[p]);
    for (std::size_t i = 0; i < words.size(); ++i) {
      if (beginsLine(words, i) && endsLine(words, i) && words[i].v >= 0) {
        byV[words[i].v].push_back({p, &words[i]});
      }
    }
  }
  for (auto from = byV.begin(); from != byV.end();) {
    const auto to = byV.upper_bound(from->first + unevenPrint);
    ValuePlace place;
    place.texts.resize(m_pages.size());
    int count = 0;
    for (auto line = from; line != to; ++line) {
      for (const Alone& alone : line->second) {
        place.reach(*alone.word);
        count += place.texts[alone.page].isEmpty() ? 1 : 0;
        place.texts[alone.page] = m_sample.text(alone.word->text).toString();
      }
    }
    const bool isFound = count >= m_fewest;
    if (isFound && place.h.width() + place.v.width() > 0) {
      add(std::move(place));
    }
    from = isFound ? to : std::next(from);
  }
}

} // namespace

std::vector<ValuePlace> findValues(const PageSample& sample, const std::vector<int>& pages,
                                   int mostMissing) {
  return Finder(sample, pages, mostMissing).find();
}

namespace {

QString textOn(const PageSample& sample, const ValuePlace& value,
               std::span<const SampleWord> words) {
  for (std::size_t i = 0; i < words.size(); ++i) {
    const SampleWord& word = words[i];
    int gap = 0;
    if (!value.hasLabel()) {
      if (value.v.holds(word.v) && value.h.holds(word.h)) {
        return value.isLine() ? lineFrom(sample, words.subspan(i), gap)
                              : sample.text(word.text).toString();
      }
    } else if (word.text == value.label && i + 1 < words.size() &&
               (value.before == noText || (i > 0 && words[i - 1].text == value.before))) {
      return value.isLine() ? lineFrom(sample, words.subspan(i + 1), gap)
                            : sample.text(words[i + 1].text).toString();
    }
  }
  return {};
}

} // namespace

std::vector<QString> textsOf(const PageSample& sample, const ValuePlace& value,
                             const std::vector<int>& pages) {
  std::vector<QString> texts;
  texts.reserve(pages.size());
  for (const int page : pages) {
    texts.push_back(textOn(sample, value, sample.page(page)));
  }
  return texts;
}

} // namespace folivex
