#include "engine/match/MatchText.h"

#include "engine/base/Text.h"

#include <algorithm>

namespace folivex {

namespace {

char16_t foldedLatin(QChar c) {
  const char16_t code = c.unicode();
  return code >= u'A' && code <= u'Z' ? static_cast<char16_t>(code + (u'a' - u'A')) : code;
}

} // namespace

bool equalTexts(QStringView a, QStringView b, Qt::CaseSensitivity sensitivity) {
  if (a.size() != b.size()) {
    return false;
  }
  if (sensitivity == Qt::CaseSensitive) {
    return std::equal(a.begin(), a.end(), b.begin());
  }
  return std::equal(a.begin(), a.end(), b.begin(),
                    [](QChar x, QChar y) { return foldedLatin(x) == foldedLatin(y); });
}

int wordCount(QStringView text) {
  int count = 0;
  bool inWord = false;
  for (const QChar c : text) {
    const bool blank = c == u' ';
    count += !blank && !inWord ? 1 : 0;
    inWord = !blank;
  }
  return count;
}

std::optional<int> wordNumberOf(QStringView searchText) {
  constexpr QStringView form = u"[WORD";
  if (!searchText.startsWith(form)) {
    return std::nullopt;
  }
  return leadingInteger(searchText.sliced(form.size()));
}

} // namespace folivex
