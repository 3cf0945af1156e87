#include "app/help/HelpSearch.h"

#include "app/help/HelpPages.h"

#include <QTextDocumentFragment>

#include <algorithm>

namespace folivex {

namespace {

constexpr qsizetype excerptBefore = 40;
constexpr qsizetype excerptLength = 150;

struct Section {
  HelpHit hit; ///< without an excerpt
  QString heading;
  QString text; ///< plain
};

std::vector<Section> readAll() {
  std::vector<Section> all;
  for (const QString& page : helpPages()) {
    QString title;
    for (const HelpSection& section : helpSections(page)) {
      const QString below = QTextDocumentFragment::fromHtml(section.html).toPlainText();
      title = section.level == 1 ? section.heading : title;
      all.push_back({{section.place,
                      section.level == 1 ? title : title + QStringLiteral(": ") + section.heading,
                      {}},
                     section.heading,
                     below.simplified()});
    }
  }
  return all;
}

bool holdsAll(const QString& text, const QStringList& words) {
  return std::all_of(words.begin(), words.end(),
                     [&](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
}

/// Cut at blanks where there are some near.
QString excerptOf(const QString& text, const QStringList& words) {
  qsizetype first = text.size();
  for (const QString& word : words) {
    if (const qsizetype at = text.indexOf(word, 0, Qt::CaseInsensitive); at >= 0) {
      first = std::min(first, at);
    }
  }
  const qsizetype wanted = first == text.size() ? 0 : std::max<qsizetype>(first - excerptBefore, 0);
  const qsizetype from = wanted == 0 ? 0 : text.indexOf(u' ', wanted) + 1;
  const qsizetype end = text.indexOf(u' ', std::min(from + excerptLength, text.size()));
  const QString cut = text.sliced(from, (end < 0 ? text.size() : end) - from);
  return (from > 0 ? QStringLiteral("... ") : QString()) + cut +
         (end < 0 ? QString() : QStringLiteral(" ..."));
}

} // namespace

QStringList helpWords(const QString& sought) {
  return sought.simplified().split(u' ', Qt::SkipEmptyParts);
}

std::vector<HelpHit> findInHelp(const QStringList& words) {
  static const std::vector<Section> sections = readAll();
  std::vector<HelpHit> hits;
  std::size_t inHeading = 0;
  for (const Section& section : sections) {
    if (words.isEmpty() || !holdsAll(section.heading + u' ' + section.text, words)) {
      continue;
    }
    const bool isHeading = holdsAll(section.heading, words);
    const auto place =
        isHeading ? hits.begin() + static_cast<std::ptrdiff_t>(inHeading++) : hits.end();
    hits.insert(place, section.hit)->excerpt = excerptOf(section.text, words);
  }
  return hits;
}

} // namespace folivex
