#include "engine/naming/NameTemplate.h"

#include "engine/base/Text.h"
#include "engine/naming/NameCleaner.h"
#include "engine/naming/TextFilter.h"

namespace folivex {

namespace {

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

} // namespace

NameTemplate::NameTemplate(const QString& text) {
  QString typed = text;
  cutText(typed, nameCapacity::affix);
  m_text = keptCharacters(typed, nameCapacity::affix, isKeptOfTyped);
  m_asksForFolder = folivex::asksForFolder(m_text);
}

QString NameTemplate::expanded(const NameTokenValues& values) const {
  if (!m_text.contains(u'[')) {
    return m_text;
  }
  QString text = withTokensReplaced(m_text, values);
  cutText(text, nameCapacity::affix);
  return text;
}

} // namespace folivex
