#include "app/help/HelpPages.h"

#include <QFile>
#include <QRegularExpression>
#include <QTextDocumentFragment>

#include <algorithm>
#include <array>

namespace folivex {

namespace {

constexpr std::array pages = {
    HelpPage{"index", "Folivex"},
    HelpPage{"first-split", "A first split in three steps"},
    HelpPage{"recipes", "Recipes"},
    HelpPage{"source", "Which file"},
    HelpPage{"find-words", "Which words"},
    HelpPage{"positions", "Where on the page"},
    HelpPage{"ranges", "How pages make a document"},
    HelpPage{"names", "How outputs are named"},
    HelpPage{"tokens", "Tokens in names"},
    HelpPage{"output", "Where outputs go"},
    HelpPage{"plan", "See the plan first"},
    HelpPage{"viewer", "The page"},
    HelpPage{"reports", "Reports and file options"},
    HelpPage{"other-settings", "Other settings"},
    HelpPage{"external-command", "Another program for splitting"},
    HelpPage{"ocr", "Scanned pages"},
    HelpPage{"batch", "Many files: the batch list"},
    HelpPage{"email", "Mailing the outputs"},
    HelpPage{"email-settings", "E-mail settings"},
    HelpPage{"email-list", "The list of mails"},
    HelpPage{"messages", "What messages mean"},
    HelpPage{"command-line", "The command line"},
    HelpPage{"files", "The files it reads and writes"},
    HelpPage{"updates", "Newer versions"},
    HelpPage{"problem-report", "Reporting a problem"},
};

struct Alias {
  const char* topic;
  const char* place;
};

/// What windows call a subject that the contents call otherwise.
constexpr std::array aliases = {
    Alias{"main-window", "index"},
    Alias{"search", "find-words"},
    Alias{"report-options", "reports"},
    Alias{"split-command", "external-command"},
    Alias{"page-number", "viewer#page-number"},
};

} // namespace

std::span<const HelpPage> helpPages() {
  return pages;
}

QStringList helpTopics() {
  QStringList topics;
  for (const HelpPage& page : pages) {
    topics += QString::fromLatin1(page.name);
  }
  for (const Alias& alias : aliases) {
    topics += QString::fromLatin1(alias.topic);
  }
  return topics;
}

QString helpPlace(const QString& topic) {
  for (const Alias& alias : aliases) {
    if (topic == QLatin1String(alias.topic)) {
      return QString::fromLatin1(alias.place);
    }
  }
  const bool isPage = std::any_of(pages.begin(), pages.end(), [&](const HelpPage& page) {
    return topic == QLatin1String(page.name);
  });
  return isPage ? topic : QString::fromLatin1(pages.front().name);
}

QString helpAddress(const QString& place) {
  const qsizetype hash = place.indexOf(u'#');
  const QString anchor = hash < 0 ? QString() : place.sliced(hash);
  return QStringLiteral("qrc:/help/") + place.first(hash < 0 ? place.size() : hash) +
         QStringLiteral(".html") + anchor;
}

QString helpHtml(const QString& page) {
  QFile file(QStringLiteral(":/help/%1.html").arg(page));
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

std::vector<HelpSection> helpSections(const QString& page) {
  static const QRegularExpression heading(QStringLiteral("<h2 id=\"([^\"]+)\">(.*?)</h2>"),
                                          QRegularExpression::DotMatchesEverythingOption);
  std::vector<HelpSection> sections;
  for (auto found = heading.globalMatch(helpHtml(page)); found.hasNext();) {
    const QRegularExpressionMatch match = found.next();
    sections.push_back(
        {match.captured(1), QTextDocumentFragment::fromHtml(match.captured(2)).toPlainText()});
  }
  return sections;
}

} // namespace folivex
