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
  place.v = place.highV = value.v;
}

void reachTo(ValuePlace& place, const SampleWord& value) {
  place.valueMoves = place.valueMoves || place.v != value.v;
  place.v = std::min(place.v, value.v);
  place.highV = std::max(place.highV, value.v);
  place.h = std::min(place.h, value.h);
  place.highH = std::max(place.highH, value.h);
  place.rawH = std::min(place.rawH, value.rawH);
  place.highRawH = std::max(place.highRawH, value.rawH);
}

bool hasDigit(const QString& text) {
  return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
}

/// "4711 0815 42"
bool areNumbersOfWords(const std::vector<QString>& texts) {
  const qsizetype words = texts.front().count(u' ');
  return words > 0 && std::all_of(texts.begin(), texts.end(), [words](const QString& text) {
           return text.count(u' ') == words && std::all_of(text.begin(), text.end(), [](QChar c) {
                    return c.isDigit() || c == u' ';
                  });
         });
}

/// Points by which words of a line may stand above or below each other in recognised text.
constexpr int unevenPrint = 3;

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
  if (place.hasLabel() && hasDigit(m_sample.text(place.label).toString())) {
    return; // a label says what the value is
  }
  const bool endsWithColon = place.hasLabel() && m_sample.text(place.label).endsWith(u':');
  place.worth = worthOf(place.texts, place.hasLabel() || place.head != noText, endsWithColon);
  if (place.isLine()) {
    // One word is found again more surely than a line, but a part of a number is none.
    place.worth += areNumbersOfWords(place.texts) ? 0.5 : -0.5;
  }
  if (place.highStep - place.lowStep > unevenPrint) {
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

constexpr double widestStep = 14; // of a headline

/// How far a word reaches to the next one, for each of its letters and the blank.
double stepOf(const PageSample& sample, const SampleWord& word, const SampleWord& next) {
  return (next.h - word.h) / (1.0 + static_cast<double>(sample.text(word.text).size()));
}

/// Words of the line, up to a gap that no blank has. `gap` gets the h of what stands behind it.
QString lineFrom(const PageSample& sample, std::span<const SampleWord> words, int& gap) {
  constexpr double narrowestStep = 9;
  constexpr double widening = 2.5;
  std::size_t count = words.empty() ? 0 : 1;
  double least = widestStep;
  for (; count < words.size() && words[count].v == words[0].v; ++count) {
    least = std::min(least, std::max(1.0, stepOf(sample, words[count - 1], words[count])));
  }
  QString line;
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) {
      const double step = stepOf(sample, words[i - 1], words[i]);
      if (step > widestStep || (step > narrowestStep && step > widening * least)) {
        gap = gap == 0 ? words[i].h : std::min(gap, words[i].h);
        break;
      }
      line += QStringLiteral(" ");
    }
    line += sample.text(words[i].text);
  }
  return line;
}

/// What stands behind labels, page by page.
class BehindLabels {
public:
  BehindLabels(const PageSample& sample, const std::vector<std::uint64_t>& labels,
               std::size_t pages);
  void takePage(std::size_t index, std::span<const SampleWord> words);

  std::vector<ValuePlace> next;
  std::vector<ValuePlace> lines;
  std::vector<ValuePlace> beside;

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
  lines = beside = next;
}

const SampleWord* nextToTheRight(std::span<const SampleWord> words, std::size_t of) {
  const SampleWord& label = words[of];
  const SampleWord* found = nullptr;
  const auto look = [&](const SampleWord& word) {
    if (word.rawH > label.rawH && (found == nullptr || word.rawH < found->rawH)) {
      found = &word;
    }
  };
  for (std::size_t i = of; i-- > 0 && words[i].v >= label.v - unevenPrint;) {
    look(words[i]);
  }
  for (std::size_t i = of + 1; i < words.size() && words[i].v <= label.v + unevenPrint; ++i) {
    look(words[i]);
  }
  return found;
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
    place.lowStep = place.highStep = value.v - words[i].v;
  }
  place.lowStep = std::min(place.lowStep, value.v - words[i].v);
  place.highStep = std::max(place.highStep, value.v - words[i].v);
  place.labelMoves = place.labelMoves || place.labelH != words[i].h || place.labelV != words[i].v;
  reachTo(place, value);
  place.texts[index] = m_sample.text(value.text).toString();
  if (const SampleWord* const right = nextToTheRight(words, i)) {
    ValuePlace& other = beside[found->second];
    if (other.h == 0 && other.v == 0) {
      startAt(other, *right);
    }
    reachTo(other, *right);
    other.texts[index] = m_sample.text(right->text).toString();
  }
  ValuePlace& line = lines[found->second];
  line.texts[index] = lineFrom(m_sample, words.subspan(i + 1), line.lineEndsBefore);
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
      line.lineEndsBefore = behind.lines[i].lineEndsBefore;
      add(std::move(line));
    }
    if (behind.beside[i].texts != behind.next[i].texts) {
      behind.beside[i].kind = ValuePlace::Kind::BesideLabel;
      add(std::move(behind.beside[i]));
    }
    add(std::move(behind.next[i]));
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
  std::vector<ValuePlace> lines(keys.size());
  for (std::size_t p = 0; p < m_pages.size(); ++p) {
    const std::span<const SampleWord> words = m_sample.page(m_pages[p]);
    for (std::size_t i = 0; i < words.size(); ++i) {
      const SampleWord& word = words[i];
      const auto found = std::lower_bound(keys.begin(), keys.end(), keyOf(word));
      if (found == keys.end() || *found != keyOf(word)) {
        continue;
      }
      const auto index = static_cast<std::size_t>(found - keys.begin());
      ValuePlace& place = places[index];
      const TextId head = headOf(words, i);
      place.head = place.texts.empty() || place.head == head ? head : noText;
      place.texts.resize(m_pages.size());
      startAt(place, word);
      place.texts[p] = m_sample.text(word.text).toString();
      const bool continues =
          i > 0 && words[i - 1].v == word.v && stepOf(m_sample, words[i - 1], word) <= widestStep;
      if (continues) {
        continue; // no line begins in the middle of one
      }
      ValuePlace& line = lines[index];
      line.texts.resize(m_pages.size());
      line.texts[p] = lineFrom(m_sample, words.subspan(i), line.lineEndsBefore);
    }
  }
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (!lines[i].texts.empty() && lines[i].texts != places[i].texts) {
      ValuePlace line = places[i];
      line.kind = ValuePlace::Kind::LineAtPlace;
      line.texts = std::move(lines[i].texts);
      line.lineEndsBefore = lines[i].lineEndsBefore;
      add(std::move(line));
    }
    add(std::move(places[i]));
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

/// Words with digits and words without, as a street and a house have.
bool isMixed(const QString& text) {
  const QStringList words = text.split(u' ');
  return !std::all_of(words.begin(), words.end(), hasDigit);
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
  constexpr int fewTexts = 100;
  QSet<QString> distinct;
  int filled = 0;
  int digits = 0;
  int dates = 0;
  int amounts = 0;
  int names = 0;
  int tiny = 0;
  int odd = 0;
  int mixed = 0;
  qsizetype length = 0;
  for (const QString& text : texts) {
    if (text.isEmpty()) {
      continue;
    }
    ++filled;
    distinct.insert(text);
    length += text.size();
    digits += hasDigit(text) ? 1 : 0;
    mixed += hasDigit(text) && isMixed(text) ? 1 : 0;
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
  if (mixed * 4 > filled) {
    worth += 1.5;
  } else if (nearlyAll(digits) && digits < filled && filled < fewTexts) {
    worth -= 0.2; // the one that is none is not the number that was meant
  } else if (nearlyAll(digits)) {
    constexpr double shortNumbers = 3.5; // of figures, chapters and quantities
    worth += static_cast<double>(length) / filled > shortNumbers ? 3 : 2.2;
  } else if (nearlyAll(names)) {
    worth += 2.5;
  } else {
    worth /= 2; // just words
  }
  return tiny * 3 > filled ? worth / 4 : worth;
}

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
      if (word.v == value.v && word.h >= value.h && word.h <= value.highH) {
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
