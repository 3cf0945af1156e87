// HelpPages: the pages of the help, and what is opened by which topic.
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace folivex {

/// A heading of a page with what stands below it, up to the next heading.
struct HelpSection {
  QString place;   ///< a link to it: "page.html", or "page.html#anchor" inside the page
  QString heading; ///< plain text; of a page's first section its title
  int level = 1;   ///< of the heading
  QString html;    ///< what stands below
};

/// Names of the pages, in the order of the contents.
const QStringList& helpPages();

/// The page's HTML; empty when there is no such page.
QString helpHtml(const QString& page);

/// The sections of a page, in their order.
std::vector<HelpSection> helpSections(const QString& page);

/// What a window may ask for; each leads to a place that is there.
QStringList helpTopics();

/// The place of a topic. A topic that nobody knows leads to the first page, since a person who
/// asked for help must not be left without any.
QString helpPlace(const QString& topic);

} // namespace folivex
