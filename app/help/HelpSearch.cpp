#include "app/help/HelpSearch.h"

#include "app/help/HelpPages.h"

#include <QRegularExpression>
#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>

namespace folivex {

namespace {

constexpr qsizetype excerptBefore = 40;
constexpr qsizetype excerptLength = 150;

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

HelpSearch::HelpSearch() {
  for (const HelpPage& page : helpPages()) {
    addPage(QString::fromLatin1(page.name), QString::fromLatin1(page.title));
  }
}

void HelpSearch::addPage(const QString& page, const QString& pageTitle) {
  QTextDocument document;
  document.setHtml(helpHtml(page));
  m_sections.push_back({page, pageTitle, pageTitle, {}});
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    const QString text = block.text().simplified();
    const int level = block.blockFormat().headingLevel();
    if (level >= 2) {
      const QStringList anchors = block.begin().fragment().charFormat().anchorNames();
      const QString place = anchors.isEmpty() ? page : page + u'#' + anchors.front();
      m_sections.push_back({place, pageTitle + QStringLiteral(": ") + text, text, {}});
    } else if (level == 0 && !text.isEmpty()) {
      m_sections.back().text += text + u' ';
    }
  }
}

QStringList HelpSearch::words(const QString& sought) {
  static const QRegularExpression blanks(QStringLiteral("\\s+"));
  return sought.split(blanks, Qt::SkipEmptyParts);
}

std::vector<HelpHit> HelpSearch::find(const QString& sought) const {
  const QStringList wanted = words(sought);
  std::vector<HelpHit> inHeading;
  std::vector<HelpHit> inText;
  if (wanted.isEmpty()) {
    return {};
  }
  for (const Section& section : m_sections) {
    const bool isHeading = holdsAll(section.heading, wanted);
    if (isHeading || holdsAll(section.heading + u' ' + section.text, wanted)) {
      (isHeading ? inHeading : inText)
          .push_back({section.place, section.title, excerptOf(section.text, wanted)});
    }
  }
  inHeading.insert(inHeading.end(), inText.begin(), inText.end());
  return inHeading;
}

} // namespace folivex
