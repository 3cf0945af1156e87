// SplitMethod: where ranges begin and end.
#pragma once

#include <QStringList>

#include <optional>

namespace folivex {

/// Index into the table of split methods; a setup holds the method's text (`PAGEEXTRACT`).
enum class SplitMethod {
  MatchToNextMatch = 0,
  MatchToNextUniqueMatch = 1,
  MatchToNextMatchAtPosition = 2,
  MatchToNextUniqueMatchAtPosition = 3,
  MatchToUntil = 4,
  MatchToUntilAtPosition = 5,
  MatchedPageOnly = 6,
  Bookmarks = 7,
  RootBookmarks = 8,
  SecondLevelBookmarks = 9
};

/// What tells the methods apart.
struct SplitMethodTraits {
  QString text;
  bool atPosition = false;       ///< a word counts at its position only
  bool untilWord = false;        ///< a word of its own ends the range
  bool unique = false;           ///< consecutive ranges of the same text are one
  bool onePage = false;          ///< the page of the match is the range
  bool fromBookmarks = false;    ///< in place of matches
  std::optional<int> level = {}; ///< of the bookmarks that count, from 0; none: all of them
};

const SplitMethodTraits& traitsOf(SplitMethod method);
/// Those of a setup's text.
const SplitMethodTraits& splitTraitsOf(const QString& text);

/// Texts of the methods, in index order.
const QStringList& splitMethodTexts();

/// The method of a setup's text, compared exactly; a text that is not in the table gives index 0.
SplitMethod splitMethodOf(const QString& text);

} // namespace folivex
