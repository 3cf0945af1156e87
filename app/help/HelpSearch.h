// HelpSearch: finds words in all pages of the help.
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace folivex {

struct HelpHit {
  QString place;   ///< of the heading above the words: see HelpSection
  QString title;   ///< "page: heading"
  QString excerpt; ///< plain text around the first of the words
};

/// The words that a text in the search field asks for.
QStringList helpWords(const QString& sought);

/// The sections that hold every one of the words, in any case and place; those whose heading holds
/// them come first, then the order of the contents. No word: nothing is found. The first search
/// reads all pages.
std::vector<HelpHit> findInHelp(const QStringList& words);

} // namespace folivex
