// SplitMethod: where ranges begin and end.
#pragma once

#include <QString>

#include <array>

namespace folivex {

/// Index into the table of split methods; a setup holds the method's text.
enum class SplitMethod {
  MatchToNextMatch = 0,
  MatchToNextUniqueMatch = 1,
  MatchToNextMatchAtPosition = 2,
  MatchToNextUniqueMatchAtPosition = 3,
  MatchToUntil = 4,
  MatchToUntilAtPosition = 5,
  MatchedPageOnly = 6
};

/// Texts of the seven methods, in index order.
const std::array<QString, 7>& splitMethodTexts();

/// The method of a setup's text, compared exactly; a text that is not in the table gives index 0.
SplitMethod splitMethodOf(const QString& text);

/// One of the two methods in which consecutive ranges of the same text are one.
bool mergesRanges(SplitMethod method);

/// Ranges taken from the source's bookmarks in place of matches.
enum class BookmarkMethod { None, All, RootLevel, SecondLevel };

/// Texts of the three bookmark methods: "Bookmarks", "Bookmarks Root Level", "Bookmarks Level 2".
const std::array<QString, 3>& bookmarkMethodTexts();

/// The bookmark method of a setup's text, None for any other text.
BookmarkMethod bookmarkMethodOf(const QString& text);

} // namespace folivex
