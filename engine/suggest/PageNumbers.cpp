#include "engine/suggest/PageNumbers.h"

#include <algorithm>
#include <map>
#include <unordered_map>

namespace folivex {

namespace {

/// The number of a word like "3", "-3-", "(3)", "3." or the first of "3/7"; 0 when it is none.
int pageNumberOf(QStringView text) {
  constexpr qsizetype longest = 9;
  if (text.size() > longest) {
    return 0;
  }
  if (const qsizetype slash = text.indexOf(u'/'); slash > 0) {
    bool isNumber = false;
    const int total = text.sliced(slash + 1).toInt(&isNumber);
    const int page = isNumber ? text.first(slash).toInt(&isNumber) : 0;
    return isNumber && page <= total ? page : 0;
  }
  const QStringView around = u"-–—()[].,:";
  while (!text.isEmpty() && around.contains(text.front())) {
    text = text.sliced(1);
  }
  while (!text.isEmpty() && around.contains(text.back())) {
    text.chop(1);
  }
  const bool isNumber = !text.isEmpty() && text.size() <= 4 &&
                        std::all_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
  return isNumber ? text.toInt() : 0;
}

/// A place where numbers stand: a line, and there the first or last word, or the one behind a text.
struct Place {
  int v = 0;
  TextId before = noText; ///< noText: `end` tells
  int end = 0;            ///< 1 for the first of the line, 2 for the last
  auto operator<=>(const Place&) const = default;
};

struct Numbered {
  int page;
  int number;
  TextId text;
  TextId before;
};

using Places = std::map<Place, std::vector<Numbered>>;

Places numbersOf(const PageSample& sample) {
  std::unordered_map<TextId, int> numbers;
  Places places;
  for (int page = 0; page < sample.pageCount(); ++page) {
    const std::span<const SampleWord> words = sample.page(page);
    for (std::size_t i = 0; i < words.size(); ++i) {
      const SampleWord& word = words[i];
      const auto [entry, isNew] = numbers.try_emplace(word.text, 0);
      if (isNew) {
        entry->second = pageNumberOf(sample.text(word.text));
      }
      if (entry->second == 0) {
        continue;
      }
      const bool isFirst = beginsLine(words, i);
      const TextId before = isFirst ? noText : words[i - 1].text;
      const Numbered found{page, entry->second, word.text, before};
      const auto add = [&](const Place& place) {
        auto& list = places[place];
        if (list.empty() || list.back().page != page) {
          list.push_back(found);
        }
      };
      add(isFirst ? Place{word.v, noText, 1} : Place{word.v, before, 0});
      if (endsLine(words, i)) {
        add({word.v, noText, 2});
      }
    }
  }
  return places;
}

/// How many pages have the number that counting from the file's beginning gives them.
int countOfFile(const std::vector<Numbered>& list) {
  std::map<int, int> offsets;
  int most = 0;
  for (const Numbered& found : list) {
    most = std::max(most, ++offsets[found.number - found.page]);
  }
  return most;
}

std::optional<AnewNumbers> countsDocuments(const std::vector<Numbered>& list, int filled) {
  constexpr int share = 9; // of ten pages with text
  if (static_cast<int>(list.size()) * 10 < filled * share || list.front().number != 1) {
    return std::nullopt;
  }
  AnewNumbers anew;
  anew.before = list.front().before;
  anew.one = list.front().text;
  int steps = 0;
  for (std::size_t i = 0; i < list.size(); ++i) {
    const Numbered& found = list[i];
    if (found.number == 1) {
      anew.firstPages.push_back(found.page);
      anew.one = found.text == anew.one ? anew.one : noText;
      anew.before = found.before == anew.before ? anew.before : noText;
    } else if (found.number == list[i - 1].number + 1) {
      ++steps;
    } else {
      return std::nullopt;
    }
  }
  return steps > 0 && anew.firstPages.size() > 1 ? std::optional(anew) : std::nullopt;
}

} // namespace

PageNumbers findPageNumbers(const PageSample& sample) {
  const auto filled = static_cast<int>(sample.filledPages().size());
  PageNumbers numbers;
  int counted = 0;
  for (const auto& [place, list] : numbersOf(sample)) {
    counted = std::max(counted, countOfFile(list));
    if (auto anew = countsDocuments(list, filled);
        anew && (!numbers.anew || (numbers.anew->one == noText && anew->one != noText))) {
      numbers.anew = std::move(anew);
    }
  }
  // Pages with a number on the other side of each sheet, and chapters that begin without one, leave
  // few; but a long first document of several counts some pages of the file, too.
  constexpr int fewest = 5;
  const int share = numbers.anew ? 9 : 3;
  numbers.runThrough = counted >= fewest && counted * 10 >= filled * share;
  return numbers;
}

} // namespace folivex
