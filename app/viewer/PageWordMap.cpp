#include "app/viewer/PageWordMap.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace folivex {

namespace {

/// How far beside a word's box a point still means the word, points.
constexpr double reach = 1.5;

int wholePoint(double value) {
  constexpr double most = 1e9;
  return static_cast<int>(std::clamp(value, 1.0, most));
}

} // namespace

PositionRange rangeOf(const QRectF& rectangle, bool swapAxes) {
  const QRectF r = rectangle.normalized();
  PositionRange range{wholePoint(std::floor(r.left())), wholePoint(std::ceil(r.right())),
                      wholePoint(std::floor(r.top())), wholePoint(std::ceil(r.bottom()))};
  if (swapAxes) {
    std::swap(range.hFrom, range.vFrom);
    std::swap(range.hTo, range.vTo);
  }
  return range;
}

int PageWordMap::wordAt(QPointF point) const {
  int found = -1;
  double smallest = 0;
  for (int i = 0; i < count(); ++i) {
    const QRectF& box = at(i).box;
    const double area = box.width() * box.height();
    if (box.adjusted(-reach, -reach, reach, reach).contains(point) &&
        (found < 0 || area < smallest)) {
      found = i;
      smallest = area;
    }
  }
  return found;
}

int PageWordMap::nearestInLine(int someOfLine, double middle) const {
  int nearest = someOfLine;
  const auto distance = [&](int i) { return std::abs(at(i).box.center().x() - middle); };
  for (int i = 0; i < count(); ++i) {
    if (at(i).line == at(someOfLine).line && distance(i) < distance(nearest)) {
      nearest = i;
    }
  }
  return nearest;
}

int PageWordMap::step(int from, WordStep step) const {
  if (from < 0 || from >= count()) {
    return m_words.empty() ? -1 : 0;
  }
  switch (step) {
  case WordStep::Left:
    return std::max(from - 1, 0);
  case WordStep::Right:
    return std::min(from + 1, count() - 1);
  case WordStep::Up:
  case WordStep::Down:
    break;
  }
  const int way = step == WordStep::Up ? -1 : 1;
  int other = from;
  while (other >= 0 && other < count() && at(other).line == at(from).line) {
    other += way;
  }
  const bool isThere = other >= 0 && other < count();
  return isThere ? nearestInLine(other, at(from).box.center().x()) : from;
}

std::vector<int> PageWordMap::wordsIn(const PositionRange& range) const {
  std::vector<int> found;
  for (int i = 0; i < count(); ++i) {
    const ViewedWord& word = at(i);
    if (range.hFrom <= word.h && word.h <= range.hTo && range.vFrom <= word.v &&
        word.v <= range.vTo) {
      found.push_back(i);
    }
  }
  return found;
}

std::vector<std::vector<int>> PageWordMap::wordsWith(const QString& text) const {
  const QString sought = text.simplified();
  std::vector<std::vector<int>> found;
  if (sought.isEmpty()) {
    return found;
  }
  QString page;
  std::vector<qsizetype> ends; // of each word in `page`
  for (const ViewedWord& word : m_words) {
    page += word.text;
    ends.push_back(page.size());
    page += u' ';
  }
  qsizetype at = page.indexOf(sought, 0, Qt::CaseInsensitive);
  for (; at >= 0; at = page.indexOf(sought, at + sought.size(), Qt::CaseInsensitive)) {
    const auto first = std::ranges::upper_bound(ends, at);
    const auto last = std::ranges::lower_bound(first, ends.end(), at + sought.size());
    std::vector<int>& words = found.emplace_back();
    for (auto word = first; word <= last && word != ends.end(); ++word) {
      words.push_back(static_cast<int>(word - ends.begin()));
    }
  }
  return found;
}

std::vector<int> PageWordMap::wordsOfMatch(const QString& text, int h, int v) const {
  const QStringList parts = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
  const auto isPart = [&](int index, qsizetype part) {
    return at(index).text.compare(parts[part], Qt::CaseInsensitive) == 0;
  };
  int last = -1;
  for (int i = 0; i < count(); ++i) {
    // Of words at one position the one with the match's text is meant.
    const bool isHere = at(i).h == h && at(i).v == v;
    if (isHere && (last < 0 || (!parts.isEmpty() && isPart(i, parts.size() - 1)))) {
      last = i;
    }
  }
  std::vector<int> found;
  if (last < 0) {
    return found;
  }
  found.push_back(last);
  qsizetype part = parts.size() - 1;
  if (part <= 0 || !isPart(last, part)) {
    return found;
  }
  for (int i = last - 1; i >= 0 && --part >= 0 && isPart(i, part); --i) {
    found.insert(found.begin(), i);
  }
  return found;
}

} // namespace folivex
