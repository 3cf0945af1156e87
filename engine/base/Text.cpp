#include "engine/base/Text.h"

#include <algorithm>
#include <limits>

namespace folivex {

namespace {

bool isBlank(QChar c) {
  return c == u' ' || (c >= u'\t' && c <= u'\r');
}

} // namespace

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

IntRange leadingRange(QStringView text) {
  IntRange range;
  range.low = range.high = leadingInteger(text);
  // The first character may be the sign of the low value.
  if (const qsizetype dash = text.indexOf(u'-', 1); dash > 0) {
    range.high = leadingInteger(text.sliced(dash + 1));
  }
  return range;
}

void cutText(QString& text, qsizetype capacity) {
  if (text.size() <= capacity) {
    return;
  }
  const bool splitsPair = capacity > 0 && text.at(capacity - 1).isHighSurrogate();
  text.truncate(splitsPair ? capacity - 1 : capacity);
}

QString csvField(QString text) {
  static constexpr QStringView formulaStarts = u"=+-@";
  static constexpr QStringView needQuotes = u"\",\r\n";
  const auto isIn = [](QStringView set) { return [set](QChar c) { return set.contains(c); }; };
  if (!text.isEmpty() && isIn(formulaStarts)(text.front())) {
    text.prepend(u'\'');
  }
  if (std::any_of(text.cbegin(), text.cend(), isIn(needQuotes))) {
    text = u'"' + text.replace(u'"', QLatin1String("\"\"")) + u'"';
  }
  return text;
}

} // namespace folivex
