// The pages of the help against each other and against the program that they explain.
#include "app/help/HelpPages.h"
#include "app/CommandLine.h"
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
  QStringList links, anchors, pictures;
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
    const bool isHeading = block.blockFormat().headingLevel() > 0;
    section = isHeading ? QString() : section;
    for (auto at = block.begin(); !at.atEnd(); ++at) {
      const QTextCharFormat format = at.fragment().charFormat();
      shown.links += format.anchorHref();
      shown.anchors += format.anchorNames();
      section = format.anchorNames().isEmpty() ? section : format.anchorNames().constLast();
      shown.pictures += format.isImageFormat() ? format.toImageFormat().name() : QString();
    }
    shown.textBelow[section] += isHeading ? QString() : block.text();
  }
  shown.links.removeAll(QString());
  shown.pictures.removeAll(QString());
  return shown;
}

const QMap<QString, ShownPage>& allPages() {
  static const QMap<QString, ShownPage> pages = [] {
    QMap<QString, ShownPage> made;
    for (const QString& page : helpPages()) {
      made[page] = shownPage(page);
    }
    return made;
  }();
  return pages;
}

bool isPlace(const QString& place) {
  const auto page = allPages().constFind(place.section(".html", 0, 0));
  return page != allPages().constEnd() &&
         (!place.contains(u'#') || page->anchors.contains(place.section(u'#', 1)));
}

TEST(HelpPages, EveryLinkPictureAndTopicLeadsSomewhere) {
  QStringList places;
  for (auto page = allPages().begin(); page != allPages().end(); ++page) {
    EXPECT_GT(page->text.size(), 200) << page.key().toStdString();
    EXPECT_EQ(QStringList(page->anchors).removeDuplicates(), 0) << page.key().toStdString();
    for (const QString& link : page->links) {
      places += (link.startsWith(u'#') ? page.key() + ".html" : QString()) + link;
    }
    for (const HelpSection& section : helpSections(page.key())) {
      places += section.place;
    }
    for (const QString& picture : page->pictures) {
      EXPECT_FALSE(QImage(":/help/" + picture).isNull()) << picture.toStdString();
    }
  }
  for (const QString& topic : helpTopics()) {
    places += helpPlace(topic);
  }
  for (const QString& place : places) {
    EXPECT_TRUE(isPlace(place)) << place.toStdString();
  }
  for (const QFileInfo& picture : QDir(":/help").entryInfoList({"*.png"})) {
    EXPECT_LT(picture.size(), 120 * 1024) << picture.fileName().toStdString();
  }
  // Those that the windows ask for: a page renamed would leave them without one.
  for (const QString& topic :
       QString("first-split find-words positions ranges names tokens output reports "
               "external-command ocr batch email email-settings email-list viewer plan messages "
               "command-line recipes updates source search report-options other-settings "
               "split-command main-window problem-report")
           .split(u' ')) {
    EXPECT_TRUE(helpTopics().contains(topic)) << topic.toStdString();
  }
  EXPECT_EQ(helpPlace("nobody knows this"), "index.html");
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
  const auto expectOn = [](const char* page, const QString& text) {
    EXPECT_TRUE(allPages().value(page).text.contains(text)) << page << text.toStdString();
  };
  for (const auto& text : splitMethodTexts()) {
    expectOn("ranges", text);
  }
  for (const auto& text : fileNameMethodTexts()) {
    expectOn("names", text);
  }
  for (const NameToken& token : nameTokens()) {
    const QString text = QString::fromLatin1(token.text).section(u',', 0, 0);
    expectOn("tokens", text.startsWith("[POS") ? "[POS" : text);
  }
  static const QRegularExpression code("(?<= )(-?\\d+)  +[a-zA-Z]");
  const QString usage = usageText().section("Exit codes", 1);
  int codes = 0;
  for (auto found = code.globalMatch(usage); found.hasNext(); ++codes) {
    expectOn("command-line", u'\n' + found.next().captured(1) + u'\n');
  }
  EXPECT_GT(codes, 8);
}

} // namespace
} // namespace folivex::test
