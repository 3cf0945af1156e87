#include "engine/naming/NameTokens.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <array>

namespace folivex {

namespace {

using enum NameToken::Kind;
using V = const NameTokenValues&;
using T = const QDateTime&;

// Page text is put in last, when all tokens are known: until then one of these two stands for it.
// They are no characters, and NameTemplate takes them out of what the operator typed.
constexpr QChar matchTextMark = char16_t{0xFDD0};
constexpr QChar pageWordMark = char16_t{0xFDD1};

constexpr char folderToken[] = "[EXTRACTTEXTDIR]";
constexpr QStringView positionToken = u"[POS";

/// "%.Nd": at least `digits` digits, whatever the sign.
QString number(qint64 value, int digits) {
  QString text = QString::number(value);
  const bool isNegative = value < 0;
  const qsizetype missing = digits - (text.size() - (isNegative ? 1 : 0));
  if (missing <= 0) {
    return text;
  }
  return text.left(isNegative ? 1 : 0) + QString(missing, u'0') + text.sliced(isNegative ? 1 : 0);
}

// clang-format off
constexpr std::array tokens = {
    NameToken{"[FILETITLE]", "name of the source", Name, [](V v, T) { return v.title; }},
    NameToken{"[EXTRACTTEXT]", "text that was found", Name, [](V, T) { return QString(matchTextMark); }},
    NameToken{folderToken, "text that was found, as a folder", Name, [](V, T) { return QString(matchTextMark); }},
    NameToken{"[PAGESTART]", "first page, six digits", Name, [](V v, T) { return number(v.pageOffset + v.firstPage, 6); }},
    NameToken{"[PAGEEND]", "last page, six digits", Name, [](V v, T) { return number(v.lastPage, 6); }},
    NameToken{"[PAGESTARTNOMASK]", "first page", Name, [](V v, T) { return number(v.pageOffset + v.firstPage, 1); }},
    NameToken{"[PAGEENDNOMASK]", "last page", Name, [](V v, T) { return number(v.lastPage, 1); }},
    NameToken{"[PAGES]", "number of pages, six digits", Name, [](V v, T) { return number(v.lastPage - v.firstPage + 1, 6); }},
    NameToken{"[TOTALPAGES]", "pages of the source, six digits", Name, [](V v, T) { return number(v.totalPages, 6); }},
    NameToken{"[POS100,400]", "word at a position h,v", Position, nullptr},
    NameToken{"[YYYY]", "year", Time, [](V, T t) { return number(t.date().year(), 4); }},
    NameToken{"[YY]", "year, beside another date token", LateTime, [](V, T t) { return number(t.date().year(), 2); }},
    NameToken{"[MM]", "month, two digits", Time, [](V, T t) { return number(t.date().month(), 2); }},
    NameToken{"[M]", "month", Time, [](V, T t) { return number(t.date().month(), 1); }},
    NameToken{"[DD]", "day, two digits", Time, [](V, T t) { return number(t.date().day(), 2); }},
    NameToken{"[D]", "day", Time, [](V, T t) { return number(t.date().day(), 1); }},
    NameToken{"[hh]", "hour", Time, [](V, T t) { return number(t.time().hour(), 2); }},
    NameToken{"[mm]", "minute", Time, [](V, T t) { return number(t.time().minute(), 2); }},
    NameToken{"[ss]", "second", Time, [](V, T t) { return number(t.time().second(), 2); }},
};
// clang-format on

bool isTimeKind(const NameToken& token) {
  return token.kind == Time || token.kind == LateTime;
}

void replace(QString& text, const NameToken& token, V values, T now) {
  text.replace(QLatin1StringView(token.text), token.value(values, now));
}

/// Marks the position tokens and returns their words in the order of the marks.
QStringList replacePositionTokens(QString& text, const NameTokenValues& values) {
  QStringList words;
  qsizetype begin = 0;
  while ((begin = text.indexOf(positionToken, begin)) >= 0) {
    const qsizetype end = text.indexOf(u']', begin);
    if (end < 0) {
      break;
    }
    const qsizetype inside = begin + positionToken.size();
    const QString position = text.sliced(inside, end - inside);
    words += values.wordAt(leadingRange(position.section(u',', 0, 0)),
                           leadingRange(position.section(u',', 1, 1)));
    text.replace(begin, end + 1 - begin, pageWordMark);
  }
  return words;
}

/// `words` answers the page word marks that are in the text, in their order.
QString withPageText(const QString& text, const QString& matchText, const QStringList& words) {
  QString result;
  qsizetype word = 0;
  for (const QChar character : text) {
    if (character == matchTextMark) {
      result += matchText;
    } else if (character == pageWordMark) {
      result += words.value(word++);
    } else {
      result += character;
    }
  }
  return result;
}

bool isToken(const QString& text) {
  static const QRegularExpression position(QStringLiteral("^\\[POS\\d+(-\\d+)?,\\d+(-\\d+)?\\]$"));
  return position.match(text).hasMatch() ||
         std::ranges::any_of(
             tokens, [&](const NameToken& token) { return text == QLatin1StringView(token.text); });
}

bool asksForTime(const QString& text) {
  return std::ranges::any_of(tokens, [&](const NameToken& token) {
    return token.kind == Time && text.contains(QLatin1StringView(token.text));
  });
}

} // namespace

std::span<const NameToken> nameTokens() {
  return tokens;
}

QString withTokensReplaced(const QString& typed, const NameTokenValues& values) {
  QString text = typed;
  for (const NameToken& token : tokens) {
    if (token.kind == Name) {
      replace(text, token, values, {});
    }
  }
  const QStringList words = replacePositionTokens(text, values);
  if (asksForTime(text)) {
    const QDateTime now = values.now();
    for (const NameToken& token : tokens) {
      if (isTimeKind(token)) {
        replace(text, token, values, now);
      }
    }
  }
  return withPageText(text, values.matchText, words);
}

bool asksForFolder(const QString& text) {
  return text.contains(QLatin1StringView(folderToken));
}

QString tokenHint(const QString& affix) {
  static const QRegularExpression bracketed(QStringLiteral("\\[[^\\[\\]]*\\]"));
  bool hasShortYear = false;
  for (auto found = bracketed.globalMatch(affix); found.hasNext();) {
    const QString token = found.next().captured();
    if (!isToken(token)) {
      return QStringLiteral("%1 is no token: it stays in the name as it is.").arg(token);
    }
    hasShortYear = hasShortYear || token == QLatin1String("[YY]");
  }
  return hasShortYear && !asksForTime(affix)
             ? QStringLiteral("[YY] is replaced only beside another date token.")
             : QString();
}

} // namespace folivex
