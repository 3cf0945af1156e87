#include "app/dialogs/NameTokens.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace folivex {

namespace {

constexpr std::array tokens = {
    NameToken{"[FILETITLE]", "name of the source"},
    NameToken{"[EXTRACTTEXT]", "text that was found"},
    NameToken{"[EXTRACTTEXTDIR]", "text that was found, as a folder"},
    NameToken{"[PAGESTART]", "first page, six digits"},
    NameToken{"[PAGEEND]", "last page, six digits"},
    NameToken{"[PAGESTARTNOMASK]", "first page"},
    NameToken{"[PAGEENDNOMASK]", "last page"},
    NameToken{"[PAGES]", "number of pages, six digits"},
    NameToken{"[TOTALPAGES]", "pages of the source, six digits"},
    NameToken{"[POS100,400]", "word at a position h,v"},
    NameToken{"[YYYY]", "year"},
    NameToken{"[YY]", "year, beside another date token"},
    NameToken{"[MM]", "month, two digits"},
    NameToken{"[M]", "month"},
    NameToken{"[DD]", "day, two digits"},
    NameToken{"[D]", "day"},
    NameToken{"[hh]", "hour"},
    NameToken{"[mm]", "minute"},
    NameToken{"[ss]", "second"},
};

bool isToken(const QString& text) {
  static const QRegularExpression position(QStringLiteral("^\\[POS\\d+(-\\d+)?,\\d+(-\\d+)?\\]$"));
  return position.match(text).hasMatch() ||
         std::any_of(tokens.begin(), tokens.end(),
                     [&](const NameToken& token) { return text == QLatin1String(token.text); });
}

bool isDateToken(const QString& text) {
  static const QRegularExpression date(QStringLiteral("^\\[(YYYY|MM?|DD?|hh|mm|ss)\\]$"));
  return date.match(text).hasMatch();
}

} // namespace

std::span<const NameToken> nameTokens() {
  return tokens;
}

QString tokenHint(const QString& affix) {
  static const QRegularExpression bracketed(QStringLiteral("\\[[^\\[\\]]*\\]"));
  bool hasShortYear = false;
  bool hasOtherDate = false;
  for (auto found = bracketed.globalMatch(affix); found.hasNext();) {
    const QString token = found.next().captured();
    if (!isToken(token)) {
      return QStringLiteral("%1 is no token: it stays in the name as it is.").arg(token);
    }
    hasShortYear = hasShortYear || token == QLatin1String("[YY]");
    hasOtherDate = hasOtherDate || isDateToken(token);
  }
  return hasShortYear && !hasOtherDate
             ? QStringLiteral("[YY] is replaced only beside another date token.")
             : QString();
}

} // namespace folivex
