#include "engine/suggest/ValueWorth.h"

#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace folivex {

namespace {

bool isDate(const QString& text) {
  static const QRegularExpression date(QStringLiteral("^\\d{1,4}[./-]\\d{1,2}[./-]\\d{2,4}\\.?$"));
  return date.match(text).hasMatch();
}

bool isAmount(const QString& text) {
  static const QRegularExpression amount(
      QStringLiteral("^[-+]?[$€£]?\\d{1,3}([.,' ]?\\d{3})*[.,]\\d{2}[-€]?$"));
  return amount.match(text).hasMatch();
}

/// A row of a table, or a sentence.
bool isRow(const QString& text) {
  constexpr qsizetype mostWords = 6;
  const QStringList words = text.split(u' ');
  return words.size() > mostWords ||
         (words.size() > 1 && std::any_of(words.begin(), words.end(), [](const QString& word) {
            return isDate(word) || isAmount(word);
          }));
}

bool cannotName(const QString& text) {
  constexpr qsizetype longest = 60;
  return text.contains(u';') || text.size() > longest || text.contains(u'@') || isRow(text);
}

/// Words with digits and words without, as a street and a house have.
bool isMixed(const QString& text) {
  const QStringList words = text.split(u' ');
  return hasDigit(text) && !std::all_of(words.begin(), words.end(), hasDigit);
}

/// Some words that begin with capitals, or in a script without them.
bool isProperName(const QString& text) {
  const QStringList words = text.split(u' ');
  return words.size() >= 2 && words.size() <= 5 && !hasDigit(text) &&
         std::all_of(words.begin(), words.end(), [](const QString& word) {
           return !word.isEmpty() &&
                  (word[0].isUpper() || word[0].category() == QChar::Letter_Other);
         });
}

} // namespace

bool hasDigit(QStringView text) {
  return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
}

QString commonLabel(const std::vector<QString>& texts) {
  const qsizetype colon = texts.front().indexOf(u':');
  const QString label = texts.front().left(colon + 1);
  const bool isCommon = colon > 0 && !hasDigit(label) &&
                        std::all_of(texts.begin(), texts.end(), [&](const QString& text) {
                          return text.startsWith(label) && text.size() > label.size();
                        });
  return isCommon ? label : QString();
}

double worthOf(const std::vector<QString>& texts, const TextSurroundings& around) {
  constexpr std::size_t fewTexts = 100;
  std::vector<QString> filled;
  std::copy_if(texts.begin(), texts.end(), std::back_inserter(filled),
               [](const QString& text) { return !text.isEmpty(); });
  const std::size_t all = filled.size();
  const auto count = [&](auto is) {
    return static_cast<std::size_t>(std::count_if(filled.begin(), filled.end(), is));
  };
  if (all < 2 || QSet<QString>(filled.begin(), filled.end()).size() < 2 || count(cannotName) > 0 ||
      count(isDate) * 2 > all || count(isAmount) * 2 > all) {
    return 0;
  }
  const std::size_t digits = count(hasDigit);
  const auto areNearlyAll = [all](std::size_t some) { return some * 10 >= all * 9; };
  double worth = (around.hasLabel ? 1.0 : 0.0) + (around.endsWithColon ? 1.0 : 0.0);
  if (count(isMixed) * 4 > all) {
    worth += 1.5;
  } else if (areNearlyAll(digits) && digits < all && all < fewTexts) {
    worth -= 0.2; // the one that is none is not the number that was meant
  } else if (areNearlyAll(digits)) {
    constexpr double shortNumbers = 3.5; // of figures, chapters and quantities
    double letters = 0;
    for (const QString& text : filled) {
      letters += static_cast<double>(text.size());
    }
    const bool areShort = letters <= shortNumbers * static_cast<double>(all);
    worth += !areShort ? 3 : around.isPart ? 1.7 : 2.2;
  } else if (areNearlyAll(count(isProperName))) {
    worth += 2.5;
  } else {
    worth /= 2; // just words
  }
  return count([](const QString& text) { return text.size() < 2; }) * 3 > all ? worth / 4 : worth;
}

} // namespace folivex
