// NearMisses: why nothing matched.
#pragma once

#include "engine/match/PositionRule.h"
#include "engine/match/WordPlacer.h"

#include <QString>
#include <QStringList>

#include <cstddef>
#include <optional>
#include <vector>

namespace folivex {

class WordSource;
struct SplitSetup;

/// Words that nearly are the text that was looked for.
struct NearMiss {
  /// The nearest first.
  enum class Difference {
    Position,    ///< the text is right, its place is not
    Blanks,      ///< the search text holds blanks that no page has
    LetterCase,  ///< upper and lower case
    Punctuation, ///< signs that are no letter and no digit, and perhaps case
    Division     ///< the same letters, divided into words differently
  };

  Difference difference = Difference::Position;
  bool elsewhere = false; ///< does not stand where the setup asks for, whatever else differs
  QString text;           ///< as it stands on the page
  int page = 1;           ///< page number of the first one, from 1
  int h = 0;              ///< its place as it would be typed to match it (a text's last word)
  int v = 0;
  int pages = 1;       ///< on how many pages it was seen
  int lastPage = 1;    ///< the last of them
  int count = 1;       ///< how often it was seen; where the place counts, at this place
  qint64 distance = 0; ///< points from the place asked for, 0 where no place is

  /// One line in plain English.
  QString sentence() const;
};

/// Looks once more over pages on which a search found nothing. Words that do match are no near
/// misses. Holds a fixed number of findings, however long the document is; the time is that of a
/// glance at each word. A word-number search has no text of its own and so no near misses.
class NearMisses {
public:
  /// For the search text of a setup, and its position where the split method asks for one.
  static NearMisses forSearchText(const SplitSetup& setup);

  /// Reads the page (index from 0) and looks at its words.
  void scanPage(int pageIndex, WordSource& source);

  /// The best findings, nearest first.
  std::vector<NearMiss> best(std::size_t atMost = 5) const;
  /// The same as lines for a person.
  QStringList sentences(std::size_t atMost = 5) const;

private:
  /// A word of the page at hand, and what it is but for case and punctuation.
  struct SeenWord {
    QString text;
    QString key;
    int h = 0;
    int v = 0;
  };

  NearMisses(const QString& text, const SplitSetup& setup, std::optional<PositionRule> position);

  QString keyOf(QStringView text) const;
  const SeenWord& seenWord(std::size_t age) const;
  void look(int pageIndex, const PlacedWord& word);
  std::optional<std::size_t> wordsOfSearchText() const;
  std::optional<NearMiss::Difference> difference(const QString& found, int words) const;
  void consider(int pageIndex, NearMiss::Difference difference, const QString& found);
  void keep(const NearMiss& miss);

  QString m_searchText;
  Qt::CaseSensitivity m_sensitivity;
  std::optional<PositionRule> m_position;
  int m_searchWords = 0;
  bool m_lettersOnly = true;
  QString m_searchKey;
  WordPlacer m_placer;

  std::vector<SeenWord> m_window; ///< ring of the page's last words
  std::size_t m_seen = 0;         ///< words seen on the page
  std::vector<NearMiss> m_kept;
};

} // namespace folivex
