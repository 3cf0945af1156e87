#include "engine/naming/NameTemplate.h"

#include "engine/base/Text.h"
#include "engine/naming/NameCleaner.h"
#include "engine/naming/TextFilter.h"
#include "platform/Paths.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace folivex {

namespace {

// Page text is put in last, when all tokens are known: until then one of these two stands for it.
// They are no characters, and NameTemplate takes them out of what the operator typed.
constexpr QChar matchTextMark = char16_t{0xFDD0};
constexpr QChar pageWordMark = char16_t{0xFDD1};

constexpr QStringView folderToken = u"[EXTRACTTEXTDIR]";
constexpr QStringView positionToken = u"[POS";

bool isBetween(char32_t character, char32_t low, char32_t high) {
  return character >= low && character <= high;
}

/// What the operator typed is kept but for what hides or breaks a name.
bool isKeptOfTyped(char32_t character) {
  const bool isControl =
      character < 0x20 || isBetween(character, 0x7F, 0x9F) || isBetween(character, 0x2028, 0x2029);
  const bool turnsText =
      isBetween(character, 0x202A, 0x202E) || isBetween(character, 0x2066, 0x2069);
  const bool separates = character == U'/' || character == U'\\';
  return !isControl && !turnsText && !QChar::isNonCharacter(character) &&
         (separates || !isForbiddenInNames(character));
}

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

void replaceToken(QString& text, QStringView token, const QString& value) {
  text.replace(token.data(), token.size(), value.constData(), value.size());
}

void replaceTextTokens(QString& text, const NameTokenValues& values) {
  replaceToken(text, u"[FILETITLE]", values.title);
  replaceToken(text, u"[EXTRACTTEXT]", QString(matchTextMark));
  replaceToken(text, folderToken, QString(matchTextMark));
}

void replacePageTokens(QString& text, const NameTokenValues& values) {
  constexpr int pageDigits = 6;
  const qint64 start = values.pageOffset + values.firstPage;
  replaceToken(text, u"[PAGESTART]", number(start, pageDigits));
  replaceToken(text, u"[PAGEEND]", number(values.lastPage, pageDigits));
  replaceToken(text, u"[PAGESTARTNOMASK]", number(start, 1));
  replaceToken(text, u"[PAGEENDNOMASK]", number(values.lastPage, 1));
  replaceToken(text, u"[PAGES]", number(values.lastPage - values.firstPage + 1, pageDigits));
  replaceToken(text, u"[TOTALPAGES]", number(values.totalPages, pageDigits));
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

void replaceTimeTokens(QString& text, const NameTokenValues& values) {
  // "[YY]" alone is no reason to look at the clock and stays as it is.
  constexpr std::array<QStringView, 8> askForTime = {u"[MM]", u"[DD]", u"[YYYY]", u"[M]",
                                                     u"[D]",  u"[hh]", u"[mm]",   u"[ss]"};
  if (std::none_of(askForTime.begin(), askForTime.end(),
                   [&text](QStringView token) { return text.contains(token); })) {
    return;
  }
  const QDateTime now = values.now();
  const QDate date = now.date();
  const QTime time = now.time();
  replaceToken(text, u"[MM]", number(date.month(), 2));
  replaceToken(text, u"[DD]", number(date.day(), 2));
  replaceToken(text, u"[YY]", number(date.year(), 2));
  replaceToken(text, u"[YYYY]", number(date.year(), 4));
  replaceToken(text, u"[M]", number(date.month(), 1));
  replaceToken(text, u"[D]", number(date.day(), 1));
  replaceToken(text, u"[hh]", number(time.hour(), 2));
  replaceToken(text, u"[mm]", number(time.minute(), 2));
  replaceToken(text, u"[ss]", number(time.second(), 2));
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

} // namespace

NameTemplate::NameTemplate(const QString& text) {
  QString typed = text;
  cutText(typed, nameCapacity::affix);
  m_text = keptCharacters(typed, nameCapacity::affix, isKeptOfTyped);
  m_asksForFolder = m_text.contains(folderToken);
}

QString NameTemplate::expanded(const NameTokenValues& values) const {
  if (!m_text.contains(u'[')) {
    return m_text;
  }
  QString text = m_text;
  replaceTextTokens(text, values);
  replacePageTokens(text, values);
  const QStringList words = replacePositionTokens(text, values);
  replaceTimeTokens(text, values);
  text = withPageText(text, values.matchText, words);
  cutText(text, nameCapacity::affix);
  return text;
}

} // namespace folivex
