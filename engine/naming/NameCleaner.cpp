#include "engine/naming/NameCleaner.h"

#include "engine/base/Text.h"
#include "engine/naming/TextFilter.h"
#include "engine/setup/SplitSetup.h"

#include <algorithm>

namespace folivex {

namespace {

constexpr QStringView firstDigitFilter = u"[num]";
constexpr QStringView firstDigitFromFilter = u"[num>char";
constexpr QStringView lengthFilter = u"[char>";

bool isPrintable(char32_t character) {
  switch (QChar::category(character)) {
  case QChar::Separator_Line:
  case QChar::Separator_Paragraph:
    return false;
  default:
    return QChar::isPrint(character);
  }
}

/// The upper half of the 8-bit code pages comes into names whole, printable or not.
bool isUpperLatin(char32_t character) {
  return character >= 0x80 && character <= 0xFF;
}

bool isDigit(QChar character) {
  return character >= u'0' && character <= u'9';
}

/// Position of the first digit at `from` or behind it; the text's length when there is none.
qsizetype firstDigit(const QString& text, qsizetype from) {
  const auto begin = text.cbegin() + std::clamp<qsizetype>(from, 0, text.size());
  return std::find_if(begin, text.cend(), isDigit) - text.cbegin();
}

} // namespace

NameCleaner::NameCleaner(const SplitSetup& setup)
    : m_removeTexts(setup.otherSettingsRemoveText.split(u'|', Qt::SkipEmptyParts)) {
  QString remove = setup.reportRemoveChars;
  cutText(remove, nameCapacity::removeChars);
  for (const char32_t character : remove.toUcs4()) {
    m_removeCharacters.insert(character);
  }
  readFilter(setup.anyCharOfWord);
}

void NameCleaner::readFilter(const QString& text) {
  m_filterText = text;
  cutText(m_filterText, nameCapacity::filter);
  const QStringView filter = m_filterText;
  if (filter.isEmpty()) {
    m_filter = Filter::None;
  } else if (filter == firstDigitFilter) {
    m_filter = Filter::FirstDigit;
  } else if (filter.startsWith(firstDigitFromFilter)) {
    m_filter = Filter::FirstDigitFrom;
    m_filterNumber = leadingInteger(filter.sliced(firstDigitFromFilter.size()));
  } else if (filter.startsWith(lengthFilter)) {
    m_filter = Filter::Length;
    m_filterNumber = leadingInteger(filter.sliced(lengthFilter.size()));
  } else {
    m_filter = Filter::Word;
  }
}

QString NameCleaner::matchText(const QString& text) const {
  QString rest = text.left(nameCapacity::foundText);
  for (const QString& piece : m_removeTexts) {
    rest.replace(piece, QString());
  }
  QString result = cleaned(rest, nameCapacity::matchText);
  cutText(result, filterPosition(result));
  return result;
}

QString NameCleaner::restOfLine(const QString& text) const {
  QString result = cleaned(text, nameCapacity::restOfLine);
  cutText(result, filterPosition(result));
  return result;
}

QString NameCleaner::word(const QString& text) const {
  return cleaned(text, nameCapacity::matchText);
}

QString NameCleaner::cleaned(const QString& text, qsizetype capacity) const {
  const QStringView considered = QStringView(text).left(nameCapacity::foundText);
  return keptCharacters(considered, capacity, [this](char32_t character) {
    return (isUpperLatin(character) || isPrintable(character)) && !isForbiddenInNames(character) &&
           (m_removeCharacters.isEmpty() || !m_removeCharacters.contains(character));
  });
}

qsizetype NameCleaner::filterPosition(const QString& text) const {
  const auto wordStart = [&] {
    const qsizetype found = text.indexOf(m_filterText);
    return found < 0 ? text.size() : found;
  };
  switch (m_filter) {
  case Filter::None:
    break;
  case Filter::Word:
    return wordStart();
  case Filter::FirstDigit:
    return std::min(firstDigit(text, 0), wordStart());
  case Filter::FirstDigitFrom:
    return std::min(firstDigit(text, m_filterNumber), wordStart());
  case Filter::Length:
    return std::clamp<qsizetype>(m_filterNumber, 0, text.size());
  }
  return text.size();
}

} // namespace folivex
