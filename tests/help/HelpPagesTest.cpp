// The pages of the help against each other and against the program that they explain.
#include "app/help/HelpPages.h"
#include "app/Usage.h"
#include "engine/naming/NameTokens.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SetupFields.h"
#include "engine/setup/SplitMethod.h"
#include "tests/support/Programs.h"

#include <QImage>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextDocument>

namespace folivex::test {
namespace {

/// A page as QTextBrowser shows it.
struct ShownPage {
  QStringList links;
  QStringList anchors;
  QStringList pictures;
  QString text;
  QHash<QString, QString> textBelow; ///< of each anchor, up to the next heading
};

ShownPage shownPage(const QString& name) {
  QTextDocument document;
  document.setHtml(helpHtml(name));
  ShownPage shown;
  shown.text = document.toPlainText();
  QString section;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    if (block.blockFormat().headingLevel() > 0) {
      section.clear();
    }
    for (auto at = block.begin(); !at.atEnd(); ++at) {
      const QTextCharFormat format = at.fragment().charFormat();
      if (!format.anchorHref().isEmpty()) {
        shown.links += format.anchorHref();
      }
      for (const QString& anchor : format.anchorNames()) {
        shown.anchors += anchor;
        section = anchor;
      }
      if (format.isImageFormat()) {
        shown.pictures += format.toImageFormat().name();
      }
    }
    if (block.blockFormat().headingLevel() == 0) {
      shown.textBelow[section] += block.text();
    }
  }
  return shown;
}

const QHash<QString, ShownPage>& allPages() {
  static const QHash<QString, ShownPage> pages = [] {
    QHash<QString, ShownPage> made;
    for (const HelpPage& page : helpPages()) {
      const QString name = QString::fromLatin1(page.name);
      made[name] = shownPage(name);
    }
    return made;
  }();
  return pages;
}

bool isPlace(const QString& place) {
  const auto page = allPages().constFind(place.section(u'#', 0, 0));
  return page != allPages().constEnd() &&
         (!place.contains(u'#') || page->anchors.contains(place.section(u'#', 1)));
}

TEST(HelpPages, EveryLinkPictureAndTopicLeadsSomewhere) {
  for (auto page = allPages().begin(); page != allPages().end(); ++page) {
    SCOPED_TRACE(page.key().toStdString());
    EXPECT_GT(page->text.size(), 200);
    EXPECT_EQ(QSet<QString>(page->anchors.begin(), page->anchors.end()).size(),
              page->anchors.size());
    for (const QString& link : page->links) {
      QString place = link;
      place.remove(QStringLiteral(".html"));
      if (place.startsWith(u'#')) {
        place.prepend(page.key());
      }
      EXPECT_TRUE(isPlace(place)) << link.toStdString();
    }
    for (const QString& picture : page->pictures) {
      const QString file = QStringLiteral(":/help/") + picture;
      EXPECT_FALSE(QImage(file).isNull()) << picture.toStdString();
    }
    for (const HelpSection& section : helpSections(page.key())) {
      EXPECT_TRUE(isPlace(page.key() + u'#' + section.anchor)) << section.anchor.toStdString();
    }
  }
  for (const QFileInfo& picture : QDir(QStringLiteral(":/help")).entryInfoList({"*.png"})) {
    EXPECT_LT(picture.size(), 120 * 1024) << picture.fileName().toStdString();
  }
  for (const QString& topic : helpTopics()) {
    EXPECT_TRUE(isPlace(helpPlace(topic))) << topic.toStdString();
  }
}

/// What the windows ask for, written down here a second time: a page renamed would leave them
/// without one.
TEST(HelpPages, HasWhatTheWindowsAskFor) {
  for (const char* topic :
       {"first-split", "find-words",    "positions",      "ranges",           "names",
        "tokens",      "output",        "reports",        "external-command", "ocr",
        "batch",       "email",         "email-settings", "email-list",       "viewer",
        "plan",        "messages",      "command-line",   "recipes",          "updates",
        "source",      "search",        "report-options", "other-settings",   "split-command",
        "main-window", "problem-report"}) {
    EXPECT_TRUE(helpTopics().contains(QLatin1String(topic))) << topic;
  }
  EXPECT_EQ(helpPlace(QStringLiteral("nobody knows this")), QStringLiteral("index"));
}

TEST(HelpPages, ExplainsEverySettingOnce) {
  for (const SetupField& field : setupFields()) {
    int places = 0;
    for (const ShownPage& page : allPages()) {
      if (page.anchors.contains(field.key)) {
        ++places;
        EXPECT_GT(page.textBelow.value(field.key).size(), 20) << field.key.data();
      }
    }
    EXPECT_EQ(places, 1) << field.key.data();
  }
}

TEST(HelpPages, NamesEveryMethodTokenAndExitCode) {
  const auto page = [](const char* name) { return allPages().value(QLatin1String(name)).text; };
  for (const auto& text : splitMethodTexts()) {
    EXPECT_TRUE(page("ranges").contains(text)) << text.toStdString();
  }
  for (const auto& text : fileNameMethodTexts()) {
    EXPECT_TRUE(page("names").contains(text)) << text.toStdString();
  }
  for (const NameToken& token : nameTokens()) {
    const QString text = QString::fromLatin1(token.text).section(u',', 0, 0);
    EXPECT_TRUE(page("tokens").contains(
        text.startsWith(QLatin1String("[POS")) ? QStringLiteral("[POS") : text))
        << token.text;
  }
  static const QRegularExpression code(QStringLiteral("(?<= )(-?\\d+)  [a-zA-Z]"));
  const QStringList cells = page("command-line").split(u'\n');
  const QString usage = usageText().section(QStringLiteral("Exit codes"), 1);
  int codes = 0;
  for (auto found = code.globalMatch(usage); found.hasNext(); ++codes) {
    const QString number = found.next().captured(1);
    EXPECT_TRUE(cells.contains(number)) << number.toStdString();
  }
  EXPECT_GT(codes, 8);
}

} // namespace
} // namespace folivex::test
