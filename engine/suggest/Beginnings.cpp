#include "engine/suggest/Beginnings.h"

#include <QSet>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

namespace folivex {

namespace {

constexpr std::size_t mostBeginnings = 8;

/// Where values stand is seen on some pages as well as on all.
constexpr std::size_t mostPagesOfValues = 250;

/// Of a value that names documents well.
constexpr double goodValue = 3;

bool isDistinct(const ValuePlace& value) {
  const QSet<QString> distinct(value.texts.begin(), value.texts.end());
  return !distinct.contains(QString()) &&
         distinct.size() == static_cast<qsizetype>(value.texts.size());
}

std::vector<int> firstOf(const std::vector<int>& pages) {
  const std::size_t count = std::min(pages.size(), mostPagesOfValues);
  return {pages.begin(), pages.begin() + static_cast<std::ptrdiff_t>(count)};
}

/// Whether the values count the pages of the file.
bool countsPages(const ValuePlace& value, const std::vector<int>& pages) {
  constexpr int highest = 500; // of a number on the first page that counts pages
  std::map<int, std::size_t> offsets;
  for (std::size_t i = 0; i < pages.size(); ++i) {
    bool isNumber = false;
    const int number = value.texts[i].toInt(&isNumber);
    if (isNumber && number - pages[i] <= highest) {
      ++offsets[number - pages[i]];
    }
  }
  return std::any_of(offsets.begin(), offsets.end(),
                     [&](const auto& offset) { return offset.second * 2 > pages.size(); });
}

/// The pages on which the value becomes another, with the texts of those only; none when a text
/// comes back after another one.
std::optional<std::vector<int>> changesOf(ValuePlace& value, const std::vector<int>& pages) {
  std::vector<int> changes;
  std::vector<QString> texts;
  QSet<QString> seen;
  for (std::size_t i = 0; i < pages.size(); ++i) {
    const QString& text = value.texts[i];
    if (text.isEmpty() || (!texts.empty() && texts.back() == text)) {
      continue;
    }
    if (seen.contains(text)) {
      return std::nullopt;
    }
    seen.insert(text);
    changes.push_back(pages[i]);
    texts.push_back(text);
  }
  value.texts = std::move(texts);
  return changes;
}

void sort(std::vector<Beginnings>& all) {
  std::stable_sort(all.begin(), all.end(), [](const Beginnings& a, const Beginnings& b) {
    return std::make_pair(-a.evidence, a.pages) < std::make_pair(-b.evidence, b.pages);
  });
}

class BeginningsFinder {
public:
  BeginningsFinder(const PageSample& sample, const PageNumbers& numbers)
      : m_sample(sample), m_numbers(numbers), m_filled(sample.filledPages()) {}

  std::vector<Beginnings> find();

private:
  Beginnings& at(const std::vector<int>& pages);
  static double best(const std::vector<ValuePlace>& values) {
    return values.empty() ? 0 : values.front().worth;
  }
  void takeRuns();
  void takeBookmarks();
  void takeGroups();
  void findNames(Beginnings& beginnings) const;
  bool areSeparators(const Beginnings& beginnings) const;
  void weigh(Beginnings& beginnings) const;
  bool contradictsNumbers(const Beginnings& beginnings) const;

  const PageSample& m_sample;
  const PageNumbers& m_numbers;
  const std::vector<int>& m_filled;
  std::map<PageSet, Beginnings> m_found;
  double m_bestRun = 0;
};

Beginnings& BeginningsFinder::at(const std::vector<int>& pages) {
  Beginnings& beginnings = m_found[PageSample::setOf(pages)];
  if (beginnings.pages.empty()) {
    beginnings.pages = pages;
    beginnings.onEveryPage = pages.size() == m_filled.size();
  }
  return beginnings;
}

void BeginningsFinder::takeRuns() {
  constexpr int mostRuns = 12;
  const std::vector<int> pages = firstOf(m_filled);
  int tried = 0;
  for (ValuePlace& value : findValues(m_sample, pages, static_cast<int>(pages.size()) / 10)) {
    ValuePlace some = value;
    if (value.kind == ValuePlace::Kind::BesideLabel || countsPages(value, pages) ||
        !changesOf(some, pages) || ++tried > mostRuns) {
      continue;
    }
    value.texts = textsOf(m_sample, value, m_filled);
    if (const auto changes = changesOf(value, m_filled); changes && changes->size() > 1) {
      m_bestRun = std::max(m_bestRun, value.worth);
      at(*changes).runs.push_back(std::move(value));
    }
  }
}

void BeginningsFinder::takeBookmarks() {
  for (const int level : {0, 1}) {
    std::vector<int> pages;
    for (const Bookmark& bookmark : m_sample.bookmarks(level)) {
      pages.push_back(bookmark.page - 1);
    }
    if (pages.size() > 1 && std::is_sorted(pages.begin(), pages.end()) &&
        std::adjacent_find(pages.begin(), pages.end()) == pages.end()) {
      at(pages).byBookmarks = level;
      return;
    }
  }
}

void BeginningsFinder::takeGroups() {
  std::vector<PageSet> wanted = {PageSample::setOf(m_filled)};
  for (const auto& [set, beginnings] : m_found) {
    wanted.push_back(set);
  }
  for (auto& [set, group] : findAnchorGroups(m_sample, wanted)) {
    if (group.pages.size() > 1) {
      Beginnings& beginnings = at(group.pages);
      beginnings.anchors = std::move(group.anchors);
      beginnings.anchorCount = group.anchorCount;
    }
  }
}

bool BeginningsFinder::areSeparators(const Beginnings& beginnings) const {
  constexpr std::size_t mostWords = 15;
  std::size_t words = 0;
  std::size_t most = 0;
  int last = -2;
  for (const int page : beginnings.pages) {
    const std::size_t count = m_sample.page(page).size();
    words += count;
    most = std::max(most, count);
    if (page == last + 1 || page + 1 == m_sample.pageCount()) {
      return false;
    }
    last = page;
  }
  std::size_t all = 0;
  for (const int page : m_filled) {
    all += m_sample.page(page).size();
  }
  const std::size_t others = m_filled.size() - beginnings.pages.size();
  return most <= mostWords && others > 0 &&
         (all - words) / others > 3 * words / beginnings.pages.size();
}

void BeginningsFinder::findNames(Beginnings& beginnings) const {
  const std::vector<int> pages = firstOf(beginnings.pages);
  beginnings.values = findValues(m_sample, pages, 0);
  std::erase_if(beginnings.values, [&](const ValuePlace& value) {
    return !isDistinct(value) || countsPages(value, pages);
  });
}

bool BeginningsFinder::contradictsNumbers(const Beginnings& beginnings) const {
  if (!m_numbers.anew || beginnings.byNumbers) {
    return false;
  }
  std::vector<int> behind = beginnings.pages;
  for (int& page : behind) {
    page += beginnings.separators ? 1 : 0;
  }
  return behind != m_numbers.anew->firstPages;
}

void BeginningsFinder::weigh(Beginnings& beginnings) const {
  double& evidence = beginnings.evidence;
  int& kinds = beginnings.kindsOfEvidence;
  evidence = kinds = 0;
  const auto speaks = [&](bool is, double worth) {
    evidence += is ? worth : 0;
    kinds += is ? 1 : 0;
  };
  // What two pages share may be chance, what ten share is none.
  constexpr double manyPages = 8;
  const double share =
      std::min(1.0, std::log2(static_cast<double>(beginnings.pages.size())) / std::log2(manyPages));
  speaks(beginnings.byNumbers, 5);
  kinds += beginnings.byNumbers ? 1 : 0; // nearly every page agrees
  speaks(beginnings.separators, 4);
  speaks(beginnings.byBookmarks.has_value(), 3);
  speaks(best(beginnings.runs) >= goodValue, 4);
  if (!beginnings.onEveryPage) {
    speaks(best(beginnings.values) >= goodValue, 0.7 * share * best(beginnings.values));
    constexpr double mostOfAnchors = 4;
    speaks(beginnings.anchorCount > 2,
           share * std::min(mostOfAnchors, std::log2(1.0 + beginnings.anchorCount)));
  } else if (best(beginnings.runs) < goodValue && !beginnings.byNumbers) {
    evidence -= 3;
  } else {
    // Every page has something that no other has; a number behind a label is no accident.
    constexpr double labelled = 5;
    speaks(best(beginnings.runs) >= labelled, 2);
  }
  if (contradictsNumbers(beginnings)) {
    evidence -= 4;
  }
  // A value that says more changes elsewhere.
  constexpr double muchMore = 1;
  if (m_bestRun >= std::max(goodValue, best(beginnings.runs) + muchMore)) {
    evidence -= 3;
  }
  if (m_numbers.runThrough) {
    evidence -= 3;
  }
  if (beginnings.pages.front() > 0) {
    evidence -= 1 + 3.0 * beginnings.pages.front() / m_sample.pageCount();
  }
  if (beginnings.pages.size() < 3) {
    evidence -= 1;
  }
}

std::vector<Beginnings> BeginningsFinder::find() {
  takeRuns();
  takeBookmarks();
  if (m_numbers.anew) {
    at(m_numbers.anew->firstPages);
  }
  takeGroups();
  std::vector<Beginnings> all;
  for (auto& [set, beginnings] : m_found) {
    beginnings.separators = !beginnings.onEveryPage && areSeparators(beginnings);
    beginnings.byNumbers = m_numbers.anew && m_numbers.anew->firstPages == beginnings.pages;
    weigh(beginnings);
    all.push_back(std::move(beginnings));
  }
  sort(all);
  all.resize(std::min(all.size(), mostBeginnings));
  for (Beginnings& beginnings : all) {
    findNames(beginnings);
    weigh(beginnings);
  }
  sort(all);
  return all;
}

} // namespace

std::vector<Beginnings> findBeginnings(const PageSample& sample, const PageNumbers& numbers) {
  return BeginningsFinder(sample, numbers).find();
}

} // namespace folivex
