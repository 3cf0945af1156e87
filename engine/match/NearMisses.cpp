#include "engine/match/NearMisses.h"

#include "engine/match/MatchText.h"
#include "engine/setup/SplitMethod.h"
#include "engine/setup/SplitSetup.h"
#include "engine/words/WordSource.h"

#include <algorithm>
#include <tuple>

namespace folivex {

namespace {

constexpr std::size_t capacity = 32;
/// A text may lie in more pieces on the page than it has words; this many more are looked at.
constexpr std::size_t extraPieces = 4;
constexpr std::size_t largestWindow = 64;

bool isSign(QChar c) {
  return !c.isLetterOrNumber() && !c.isMark() && !c.isSurrogate();
}

auto rankOf(const NearMiss& miss) {
  // What stands at the right place is nearer than the right text elsewhere.
  return std::tuple(miss.elsewhere, miss.difference, miss.distance);
}

bool isSameFinding(const NearMiss& a, const NearMiss& b) {
  // Every page has its own places; only where the place was asked for do they tell words apart.
  const bool samePlace = !a.elsewhere || (a.h == b.h && a.v == b.v);
  return a.difference == b.difference && a.elsewhere == b.elsewhere && samePlace &&
         a.text == b.text;
}

} // namespace

QString NearMiss::sentence() const {
  static constexpr const char* differences[] = {
      "would match, but does not stand at the position asked for",
      "differs from the text only in blanks that were typed into the setup",
      "differs from the text in upper and lower case", "differs from the text in punctuation",
      "has the letters of the text, but is divided into words differently"}; // by Difference
  QString what = QString::fromLatin1(differences[static_cast<std::size_t>(difference)]);
  if (elsewhere && difference != Difference::Position) {
    what += QStringLiteral(", and does not stand at the position asked for");
  }
  const QString times = count > 1 ? QStringLiteral(" (%1 times in all)").arg(count) : QString();
  // The page's text goes in last, so that nothing in it is taken for a place holder.
  return QStringLiteral("Page %1, h %2, v %3: \"%4\" ").arg(page).arg(h).arg(v).arg(text) + what +
         times + u'.';
}

NearMisses NearMisses::forSearchText(const SplitSetup& setup) {
  std::optional<PositionRule> position;
  if (splitTraitsOf(setup.pageExtract).atPosition) {
    position.emplace(setup.matchPosH, setup.matchPosV);
  }
  if (wordNumberOf(setup.findString)) {
    return {QString(), setup, std::nullopt};
  }
  return {setup.findString, setup, position};
}

NearMisses::NearMisses(const QString& text, const SplitSetup& setup,
                       std::optional<PositionRule> position)
    : m_searchText(text), m_sensitivity(setup.ignoreCase ? Qt::CaseInsensitive : Qt::CaseSensitive),
      m_position(position), m_searchWords(wordCount(text)), m_placer(setup.rotated) {
  m_lettersOnly = !std::all_of(text.begin(), text.end(), isSign);
  m_searchKey = keyOf(text);
  m_window.resize(std::min(largestWindow, static_cast<std::size_t>(m_searchWords) + extraPieces));
}

QString NearMisses::keyOf(QStringView text) const {
  QString key;
  key.reserve(text.size());
  for (const QChar c : text) {
    if (m_lettersOnly ? !isSign(c) : !c.isSpace()) {
      key += c.toCaseFolded();
    }
  }
  return key;
}

void NearMisses::scanPage(int pageIndex, WordSource& source) {
  m_placer.beginPage();
  m_seen = 0;
  source.filePages(pageIndex + 1, pageIndex + 1);
  const int count = source.numWords();
  source.doReverseSort();
  for (int i = 0; i < count; ++i) {
    if (const PageWord word = source.word(i); !word.text.isEmpty()) {
      look(pageIndex, m_placer.place(word));
    }
  }
}

const NearMisses::SeenWord& NearMisses::seenWord(std::size_t age) const {
  return m_window[(m_seen - 1 - age) % m_window.size()];
}

void NearMisses::look(int pageIndex, const PlacedWord& word) {
  m_window[m_seen % m_window.size()] = {word.text.toString(), keyOf(word.text), word.h, word.v};
  ++m_seen;
  if (m_searchText.isEmpty()) {
    if (m_position) {
      consider(pageIndex, NearMiss::Difference::Position, word.text.toString());
    }
    return;
  }
  const std::optional<std::size_t> words = wordsOfSearchText();
  if (!words) {
    return;
  }
  QString found;
  for (std::size_t age = *words; age-- > 0;) {
    found += seenWord(age).text;
    if (age > 0) {
      found += u' ';
    }
  }
  if (const auto differs = difference(found, static_cast<int>(*words))) {
    consider(pageIndex, *differs, found);
  }
}

/// How many of the last words together are the search text but for case and punctuation; read
/// backwards, since nearly every word already fails as the text's end.
std::optional<std::size_t> NearMisses::wordsOfSearchText() const {
  if (m_searchKey.isEmpty() || seenWord(0).key.isEmpty()) {
    return std::nullopt;
  }
  QStringView rest = m_searchKey;
  const std::size_t reach = std::min(m_seen, m_window.size());
  for (std::size_t age = 0; age < reach; ++age) {
    const QString& key = seenWord(age).key;
    if (!rest.endsWith(key)) {
      return std::nullopt;
    }
    rest.chop(key.size());
    if (rest.isEmpty()) {
      return age + 1;
    }
  }
  return std::nullopt;
}

/// None when the words are the text itself, at a place that is right or not asked for.
std::optional<NearMiss::Difference> NearMisses::difference(const QString& found, int words) const {
  if (equalTexts(found, m_searchText, m_sensitivity)) {
    const SeenWord& last = seenWord(0);
    if (!m_position || m_position->holds(last.h, last.v, last.text.size())) {
      return std::nullopt;
    }
    return NearMiss::Difference::Position;
  }
  if (equalTexts(found, m_searchText.simplified(), m_sensitivity)) {
    return NearMiss::Difference::Blanks;
  }
  if (words != m_searchWords) {
    return NearMiss::Difference::Division;
  }
  if (found.compare(m_searchText, Qt::CaseInsensitive) == 0) {
    return NearMiss::Difference::LetterCase;
  }
  return NearMiss::Difference::Punctuation;
}

void NearMisses::consider(int pageIndex, NearMiss::Difference difference, const QString& found) {
  const SeenWord& last = seenWord(0);
  NearMiss miss;
  miss.difference = difference;
  miss.elsewhere = m_position && !m_position->holds(last.h, last.v, last.text.size());
  if (m_searchText.isEmpty() && !miss.elsewhere) {
    return;
  }
  miss.text = found;
  miss.page = miss.lastPage = pageIndex + 1;
  miss.h = last.h;
  miss.v = last.v;
  miss.distance = miss.elsewhere ? m_position->distance(last.h, last.v) : 0;
  keep(miss);
}

void NearMisses::keep(const NearMiss& miss) {
  const auto same = std::find_if(m_kept.begin(), m_kept.end(),
                                 [&](const NearMiss& other) { return isSameFinding(miss, other); });
  if (same != m_kept.end()) {
    ++same->count;
    same->pages += same->lastPage != miss.page ? 1 : 0;
    same->lastPage = miss.page;
    return;
  }
  if (m_kept.size() < capacity) {
    m_kept.push_back(miss);
    return;
  }
  const auto farther = [](const NearMiss& a, const NearMiss& b) { return rankOf(a) < rankOf(b); };
  const auto worst = std::max_element(m_kept.begin(), m_kept.end(), farther);
  if (rankOf(miss) < rankOf(*worst)) {
    *worst = miss;
  }
}

std::vector<NearMiss> NearMisses::best(std::size_t atMost) const {
  std::vector<NearMiss> found = m_kept;
  std::stable_sort(found.begin(), found.end(), [](const NearMiss& a, const NearMiss& b) {
    return std::tuple(rankOf(a), -a.count, a.page) < std::tuple(rankOf(b), -b.count, b.page);
  });
  found.resize(std::min(found.size(), atMost));
  return found;
}

QStringList NearMisses::sentences(std::size_t atMost) const {
  QStringList lines;
  for (const NearMiss& miss : best(atMost)) {
    lines.append(miss.sentence());
  }
  return lines;
}

} // namespace folivex
