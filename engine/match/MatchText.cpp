#include "engine/match/MatchText.h"

#include <algorithm>
#include <limits>

namespace folivex {

namespace {

char16_t foldedLatin(QChar c) {
  const char16_t code = c.unicode();
  return code >= u'A' && code <= u'Z' ? static_cast<char16_t>(code + (u'a' - u'A')) : code;
}

bool isBlank(QChar c) {
  return c == u' ' || (c >= u'\t' && c <= u'\r');
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

int leadingInteger(QStringView text) {
  constexpr qint64 largest = std::numeric_limits<int>::max();
  const QChar* at = std::find_if_not(text.begin(), text.end(), isBlank);
  const bool negative = at != text.end() && *at == u'-';
  if (at != text.end() && (*at == u'-' || *at == u'+')) {
    ++at;
  }
  qint64 value = 0;
  for (; at != text.end() && *at >= u'0' && *at <= u'9'; ++at) {
    value = std::min(value * 10 + (at->unicode() - u'0'), largest + 1);
  }
  return static_cast<int>(negative ? -value : std::min(value, largest));
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

void cutText(QString& text, qsizetype capacity) {
  if (text.size() <= capacity) {
    return;
  }
  const bool splitsPair = capacity > 0 && text.at(capacity - 1).isHighSurrogate();
  text.truncate(splitsPair ? capacity - 1 : capacity);
}

} // namespace folivex
