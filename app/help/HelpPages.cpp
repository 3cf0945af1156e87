#include "app/help/HelpPages.h"

#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QTextDocumentFragment>

namespace folivex {

namespace {

/// What windows call a subject that the contents call otherwise.
const QMap<QString, QString>& aliases() {
  static const QMap<QString, QString> places = {
      {QStringLiteral("main-window"), QStringLiteral("index.html")},
      {QStringLiteral("search"), QStringLiteral("find-words.html")},
      {QStringLiteral("report-options"), QStringLiteral("reports.html")},
      {QStringLiteral("split-command"), QStringLiteral("external-command.html")},
      {QStringLiteral("page-number"), QStringLiteral("viewer.html#page-number")}};
  return places;
}

} // namespace

const QStringList& helpPages() {
  static const QStringList pages =
      QStringLiteral(
          "index first-split suggest recipes source find-words positions ranges names tokens "
          "output plan viewer reports other-settings external-command ocr batch email "
          "email-settings email-list messages command-line files updates problem-report")
          .split(u' ');
  return pages;
}

QString helpHtml(const QString& page) {
  QFile file(QStringLiteral(":/help/%1.html").arg(page));
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

std::vector<HelpSection> helpSections(const QString& page) {
  static const QRegularExpression section(
      QStringLiteral("<h([1-3])(?: id=\"([^\"]+)\")?>(.*?)</h[1-3]>(.*?)(?=<h[1-3]|$)"),
      QRegularExpression::DotMatchesEverythingOption);
  std::vector<HelpSection> sections;
  for (auto found = section.globalMatch(helpHtml(page)); found.hasNext();) {
    const QRegularExpressionMatch match = found.next();
    const QString anchor = match.captured(2);
    sections.push_back(
        {page + QStringLiteral(".html") + (anchor.isEmpty() ? anchor : u'#' + anchor),
         QTextDocumentFragment::fromHtml(match.captured(3)).toPlainText(),
         match.captured(1).toInt(), match.captured(4)});
  }
  return sections;
}

QStringList helpTopics() {
  return helpPages() + aliases().keys();
}

QString helpPlace(const QString& topic) {
  const QString page = helpPages().contains(topic) ? topic : helpPages().front();
  return aliases().value(topic, page + QStringLiteral(".html"));
}

} // namespace folivex
