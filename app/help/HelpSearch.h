// HelpSearch: finds words in all pages of the help.
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace folivex {

struct HelpHit {
  QString place;   ///< page and the anchor of the heading above the words: see helpPlace()
  QString title;   ///< "page: heading"
  QString excerpt; ///< plain text around the first of the words
};

/// The text of every page in sections: what stands between two headings.
class HelpSearch {
public:
  HelpSearch();

  /// The sections that hold every word of `sought`, in any case and place; those whose heading
  /// holds them come first, then the order of the contents. Nothing is sought: nothing is found.
  std::vector<HelpHit> find(const QString& sought) const;

  /// The words that a text in the search field asks for.
  static QStringList words(const QString& sought);

private:
  struct Section {
    QString place;
    QString title;
    QString heading;
    QString text;
  };

  void addPage(const QString& page, const QString& pageTitle);

  std::vector<Section> m_sections;
};

} // namespace folivex
