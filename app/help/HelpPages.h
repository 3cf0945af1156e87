// HelpPages: the pages of the help, what they are called and what is opened by which topic.
#pragma once

#include <QString>
#include <QStringList>

#include <span>
#include <vector>

namespace folivex {

/// A page of the help. `name` is its file's name without ".html".
struct HelpPage {
  const char* name;
  const char* title;
};

/// A heading inside a page, which a link and the contents tree lead to.
struct HelpSection {
  QString anchor;
  QString title;
};

/// In the order of the contents.
std::span<const HelpPage> helpPages();

/// What a window may ask for; each leads to a place that is there.
QStringList helpTopics();

/// The place of a topic: "page" or "page#anchor". A topic that nobody knows leads to the first
/// page, since a person who asked for help must not be left without any.
QString helpPlace(const QString& topic);

/// Where the resource of a page lies, for QTextBrowser: "qrc:/help/page.html".
QString helpAddress(const QString& place);

/// The page's HTML; empty when there is no such page.
QString helpHtml(const QString& page);

/// The headings of the second level of a page, in their order.
std::vector<HelpSection> helpSections(const QString& page);

} // namespace folivex
