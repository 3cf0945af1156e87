#include "engine/suggest/PageValues.h"

#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <unordered_map>

namespace folivex {

namespace {

constexpr std::size_t mostLabels = 300;
constexpr std::size_t mostPlaces = 300;
constexpr std::size_t mostValues = 40;

std::uint64_t pairOf(std::uint64_t first, std::uint64_t second) {
  return first << 32U | second;
}

using Counts = std::unordered_map<std::uint64_t, std::pair<int, int>>; ///< pages, and the last one

void countOn(Counts& counts, std::uint64_t key, int page) {
  auto& [pages, last] = counts.try_emplace(key, 0, -1).first->second;
  if (last != page) {
    last = page;
    ++pages;
  }
}

std::vector<std::uint64_t> atLeast(const Counts& counts, int pages, std::size_t most) {
  std::vector<std::uint64_t> keys;
  for (const auto& [key, count] : counts) {
    if (count.first >= pages) {
      keys.push_back(key);
    }
  }
  std::sort(keys.begin(), keys.end());
  keys.resize(std::min(keys.size(), most));
  return keys;
}

void startAt(ValuePlace& place, const SampleWord& value) {
  place.h = place.highH = value.h;
  place.rawH = place.highRawH = value.rawH;
  place.v = value.v;
}

void reachTo(ValuePlace& place, const SampleWord& value) {
  place.valueMoves = place.valueMoves || place.v != value.v;
  place.h = std::min(place.h, value.h);
  place.highH = std::max(place.highH, value.h);
  place.rawH = std::min(place.rawH, value.rawH);
  place.highRawH = std::max(place.highRawH, value.rawH);
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
  void takeBehind(const std::vector<std::uint64_t>& labels);
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

void Finder::add(ValuePlace&& place) {
  const bool hasLabel = place.kind != ValuePlace::Kind::AtPlace;
  const bool endsWithColon = hasLabel && m_sample.text(place.label).endsWith(u':');
  place.worth = worthOf(place.texts, hasLabel, endsWithColon);
  if (place.kind == ValuePlace::Kind::LineOfLabel) {
    place.worth -= 0.5; // one word is found again more surely than a line
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
  Counts words;
  for (const int page : m_pages) {
    for (const SampleWord& word : m_sample.page(page)) {
      countOn(words, word.text, page);
    }
  }
  std::vector<std::uint64_t> labels = atLeast(words, m_fewest, mostLabels);
  Counts pairs;
  for (const int page : m_pages) {
    TextId before = noText;
    for (const SampleWord& word : m_sample.page(page)) {
      const bool isCommon = std::binary_search(labels.begin(), labels.end(), word.text);
      if (isCommon && before != noText) {
        countOn(pairs, pairOf(std::uint64_t{before} + 1, word.text), page);
      }
      before = isCommon ? word.text : noText;
    }
  }
  const std::vector<std::uint64_t> two = atLeast(pairs, m_fewest, mostLabels);
  labels.insert(labels.end(), two.begin(), two.end());
  takeBehind(labels);
}

/// What stands behind labels, page by page.
class BehindLabels {
public:
  BehindLabels(const PageSample& sample, const std::vector<std::uint64_t>& labels,
               std::size_t pages);
  void takePage(std::size_t index, std::span<const SampleWord> words);

  std::vector<ValuePlace> next;
  std::vector<ValuePlace> lines;

private:
  void take(std::uint64_t key, std::size_t index, std::span<const SampleWord> words, std::size_t i);

  const PageSample& m_sample;
  std::unordered_map<std::uint64_t, std::size_t> m_indexOf;
};

BehindLabels::BehindLabels(const PageSample& sample, const std::vector<std::uint64_t>& labels,
                           std::size_t pages)
    : next(labels.size()), m_sample(sample) {
  for (std::size_t i = 0; i < labels.size(); ++i) {
    const std::uint64_t before = labels[i] >> 32U;
    m_indexOf[labels[i]] = i;
    next[i].kind = ValuePlace::Kind::BehindLabel;
    next[i].label = static_cast<TextId>(labels[i]);
    next[i].before = before == 0 ? noText : static_cast<TextId>(before - 1);
    next[i].texts.resize(pages);
  }
  lines = next;
}

void BehindLabels::takePage(std::size_t index, std::span<const SampleWord> words) {
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    take(words[i].text, index, words, i);
    if (i > 0) {
      take(pairOf(std::uint64_t{words[i - 1].text} + 1, words[i].text), index, words, i);
    }
  }
}

void BehindLabels::take(std::uint64_t key, std::size_t index, std::span<const SampleWord> words,
                        std::size_t i) {
  const auto found = m_indexOf.find(key);
  if (found == m_indexOf.end() || !next[found->second].texts[index].isEmpty()) {
    return; // the first on the page counts
  }
  ValuePlace& place = next[found->second];
  const SampleWord& value = words[i + 1];
  if (place.h == 0 && place.v == 0) {
    place.labelH = words[i].h;
    place.labelV = words[i].v;
    startAt(place, value);
  }
  place.labelMoves = place.labelMoves || place.labelH != words[i].h || place.labelV != words[i].v;
  reachTo(place, value);
  place.texts[index] = m_sample.text(value.text).toString();
  QString& line = lines[found->second].texts[index];
  for (std::size_t j = i + 1; j < words.size() && words[j].v == value.v; ++j) {
    line += line.isEmpty() ? QString() : QStringLiteral(" ");
    line += m_sample.text(words[j].text);
  }
}

void Finder::takeBehind(const std::vector<std::uint64_t>& labels) {
  BehindLabels behind(m_sample, labels, m_pages.size());
  for (std::size_t p = 0; p < m_pages.size(); ++p) {
    behind.takePage(p, m_sample.page(m_pages[p]));
  }
  for (std::size_t i = 0; i < labels.size(); ++i) {
    if (behind.lines[i].texts != behind.next[i].texts) {
      ValuePlace line = behind.next[i];
      line.kind = ValuePlace::Kind::LineOfLabel;
      line.texts = std::move(behind.lines[i].texts);
      add(std::move(line));
    }
    add(std::move(behind.next[i]));
  }
}

/// Places at which all pages have a word.
void Finder::atPlaces() {
  Counts counts;
  const auto keyOf = [](const SampleWord& word) {
    return pairOf(static_cast<std::uint32_t>(word.v), static_cast<std::uint32_t>(word.h));
  };
  for (const int page : m_pages) {
    for (const SampleWord& word : m_sample.page(page)) {
      countOn(counts, keyOf(word), page);
    }
  }
  const std::vector<std::uint64_t> keys = atLeast(counts, m_fewest, mostPlaces);
  std::vector<ValuePlace> places(keys.size());
  for (std::size_t p = 0; p < m_pages.size(); ++p) {
    for (const SampleWord& word : m_sample.page(m_pages[p])) {
      const auto found = std::lower_bound(keys.begin(), keys.end(), keyOf(word));
      if (found == keys.end() || *found != keyOf(word)) {
        continue;
      }
      ValuePlace& place = places[static_cast<std::size_t>(found - keys.begin())];
      place.texts.resize(m_pages.size());
      startAt(place, word);
      place.texts[p] = m_sample.text(word.text).toString();
    }
  }
  for (ValuePlace& place : places) {
    add(std::move(place));
  }
}

/// Lines of one word, wherever that begins: values that are set flush right or in the middle.
void Finder::aloneOnLines() {
  Counts counts;
  std::unordered_map<std::uint64_t, ValuePlace> places;
  for (std::size_t p = 0; p < m_pages.size(); ++p) {
    const std::span<const SampleWord> words = m_sample.page(m_pages[p]);
    for (std::size_t i = 0; i < words.size(); ++i) {
      const SampleWord& word = words[i];
      const bool isAlone = (i == 0 || words[i - 1].v != word.v) &&
                           (i + 1 == words.size() || words[i + 1].v != word.v);
      if (!isAlone || word.v < 0) {
        continue;
      }
      ValuePlace& place = places[static_cast<std::uint64_t>(word.v)];
      if (place.texts.empty()) {
        place.texts.resize(m_pages.size());
        startAt(place, word);
      }
      reachTo(place, word);
      place.texts[p] = m_sample.text(word.text).toString();
      countOn(counts, static_cast<std::uint64_t>(word.v), m_pages[p]);
    }
  }
  for (const std::uint64_t key : atLeast(counts, m_fewest, mostPlaces)) {
    if (ValuePlace& place = places[key]; place.h != place.highH) {
      add(std::move(place));
    }
  }
}

bool isDate(const QString& text) {
  static const QRegularExpression date(QStringLiteral("^\\d{1,4}[./-]\\d{1,2}[./-]\\d{2,4}\\.?$"));
  return date.match(text).hasMatch();
}

bool isAmount(const QString& text) {
  static const QRegularExpression amount(
      QStringLiteral("^[-+]?[$€£]?\\d{1,3}([.,' ]?\\d{3})*[.,]\\d{2}[-€]?$"));
  return amount.match(text).hasMatch();
}

/// A row of a table, or a sentence.
bool isRow(const QString& text) {
  constexpr qsizetype mostWords = 6;
  const QStringList words = text.split(u' ');
  return words.size() > mostWords ||
         (words.size() > 1 && std::any_of(words.begin(), words.end(), [](const QString& word) {
            return isDate(word) || isAmount(word);
          }));
}

bool hasDigit(const QString& text) {
  return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
}

/// Some words that begin with capitals, or in a script without them.
bool isProperName(const QString& text) {
  const QStringList words = text.split(u' ');
  return words.size() >= 2 && words.size() <= 5 && !hasDigit(text) &&
         std::all_of(words.begin(), words.end(), [](const QString& word) {
           return !word.isEmpty() &&
                  (word[0].isUpper() || word[0].category() == QChar::Letter_Other);
         });
}

} // namespace

double worthOf(const std::vector<QString>& texts, bool hasLabel, bool endsWithColon) {
  QSet<QString> distinct;
  int filled = 0;
  int digits = 0;
  int dates = 0;
  int amounts = 0;
  int names = 0;
  int tiny = 0;
  int odd = 0;
  qsizetype length = 0;
  for (const QString& text : texts) {
    if (text.isEmpty()) {
      continue;
    }
    ++filled;
    distinct.insert(text);
    length += text.size();
    digits += hasDigit(text) ? 1 : 0;
    dates += isDate(text) ? 1 : 0;
    amounts += isAmount(text) ? 1 : 0;
    names += isProperName(text) ? 1 : 0;
    tiny += text.size() < 2 ? 1 : 0;
    odd += text.contains(u';') || text.size() > 60 || text.contains(u'@') || isRow(text) ? 1 : 0;
  }
  const auto nearlyAll = [filled](int count) { return count * 10 >= filled * 9; };
  if (filled < 2 || distinct.size() < 2 || odd > 0 || dates * 2 > filled || amounts * 2 > filled) {
    return 0;
  }
  double worth = (hasLabel ? 1.0 : 0.0) + (endsWithColon ? 1.0 : 0.0);
  if (nearlyAll(digits)) {
    constexpr double shortNumbers = 3.5; // of figures, chapters and quantities
    worth += static_cast<double>(length) / filled > shortNumbers ? 3 : 2;
  } else if (nearlyAll(names)) {
    worth += 2.5;
  }
  return tiny * 3 > filled ? worth / 4 : worth;
}

std::vector<ValuePlace> findValues(const PageSample& sample, const std::vector<int>& pages,
                                   int mostMissing) {
  return Finder(sample, pages, mostMissing).find();
}

} // namespace folivex
