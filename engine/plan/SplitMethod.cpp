#include "engine/plan/SplitMethod.h"

#include <algorithm>

namespace folivex {

const std::array<QString, 7>& splitMethodTexts() {
  static const std::array<QString, 7> texts = {
      QStringLiteral("From match to next match"),
      QStringLiteral("From match to next unique match"),
      QStringLiteral("From match to next match using position h,v"),
      QStringLiteral("From match to next unique match using position h,v"),
      QStringLiteral("From match to until match"),
      QStringLiteral("From match to until match using position h,v"),
      QStringLiteral("Matched page only")};
  return texts;
}

SplitMethod splitMethodOf(const QString& text) {
  const auto& texts = splitMethodTexts();
  const auto* const found = std::find(texts.begin(), texts.end(), text);
  return found == texts.end() ? SplitMethod::MatchToNextMatch
                              : static_cast<SplitMethod>(found - texts.begin());
}

bool mergesRanges(SplitMethod method) {
  return method == SplitMethod::MatchToNextUniqueMatch ||
         method == SplitMethod::MatchToNextUniqueMatchAtPosition;
}

const std::array<QString, 3>& bookmarkMethodTexts() {
  static const std::array<QString, 3> texts = {QStringLiteral("Bookmarks"),
                                               QStringLiteral("Bookmarks Root Level"),
                                               QStringLiteral("Bookmarks Level 2")};
  return texts;
}

BookmarkMethod bookmarkMethodOf(const QString& text) {
  const auto& texts = bookmarkMethodTexts();
  for (std::size_t i = 0; i < texts.size(); ++i) {
    if (texts[i] == text) {
      return static_cast<BookmarkMethod>(i + 1);
    }
  }
  return BookmarkMethod::None;
}

} // namespace folivex
