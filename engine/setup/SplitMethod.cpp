#include "engine/setup/SplitMethod.h"

#include <algorithm>
#include <array>

namespace folivex {

namespace {

const std::array<SplitMethodTraits, 10>& methods() {
  static const std::array<SplitMethodTraits, 10> table = {{
      {.text = QStringLiteral("From match to next match")},
      {.text = QStringLiteral("From match to next unique match"), .unique = true},
      {.text = QStringLiteral("From match to next match using position h,v"), .atPosition = true},
      {.text = QStringLiteral("From match to next unique match using position h,v"),
       .atPosition = true,
       .unique = true},
      {.text = QStringLiteral("From match to until match"), .untilWord = true},
      {.text = QStringLiteral("From match to until match using position h,v"),
       .atPosition = true,
       .untilWord = true},
      {.text = QStringLiteral("Matched page only"), .onePage = true},
      {.text = QStringLiteral("Bookmarks"), .fromBookmarks = true},
      {.text = QStringLiteral("Bookmarks Root Level"), .fromBookmarks = true, .level = 0},
      {.text = QStringLiteral("Bookmarks Level 2"), .fromBookmarks = true, .level = 1},
  }};
  return table;
}

} // namespace

const SplitMethodTraits& traitsOf(SplitMethod method) {
  return methods().at(static_cast<std::size_t>(method));
}

const SplitMethodTraits& splitTraitsOf(const QString& text) {
  return traitsOf(splitMethodOf(text));
}

const QStringList& splitMethodTexts() {
  static const QStringList texts = [] {
    QStringList list;
    for (const SplitMethodTraits& method : methods()) {
      list += method.text;
    }
    return list;
  }();
  return texts;
}

SplitMethod splitMethodOf(const QString& text) {
  const qsizetype index = splitMethodTexts().indexOf(text);
  return static_cast<SplitMethod>(std::max<qsizetype>(index, 0));
}

} // namespace folivex
