#include "engine/naming/FileSystemRules.h"

namespace folivex {

namespace {

/// Marks belong to the letter before them.
bool isMark(char32_t character) {
  switch (QChar::category(character)) {
  case QChar::Mark_NonSpacing:
  case QChar::Mark_SpacingCombining:
  case QChar::Mark_Enclosing:
    return true;
  default:
    return false;
  }
}

} // namespace

FileSystemRules FileSystemRules::ofThisSystem() {
  FileSystemRules rules;
#if defined(Q_OS_WIN)
  rules.unit = Unit::Utf16Units;
  rules.pathLimit = 259;
  rules.caseSensitivity = Qt::CaseInsensitive;
#elif defined(Q_OS_DARWIN)
  rules.pathLimit = 1023;
  rules.caseSensitivity = Qt::CaseInsensitive;
#endif
  return rules;
}

qsizetype FileSystemRules::length(QStringView text) const {
  if (unit == Unit::Utf16Units) {
    return text.size();
  }
  qsizetype bytes = 0;
  for (const QChar character : text) {
    // A surrogate is half of a character of four bytes.
    const char16_t code = character.unicode();
    bytes += code < 0x80 ? 1 : code < 0x800 || character.isSurrogate() ? 2 : 3;
  }
  return bytes;
}

QString FileSystemRules::comparable(const QString& path) const {
  return caseSensitivity == Qt::CaseSensitive ? path : path.toCaseFolded();
}

QString FileSystemRules::fitted(const QString& text, qsizetype limit) const {
  if (length(text) <= limit) {
    return text;
  }
  qsizetype end = 0;      // of what is known to fit
  qsizetype boundary = 0; // last place in it where the text may end
  qsizetype used = 0;
  while (end < text.size()) {
    const bool isPair = text[end].isHighSurrogate() && end + 1 < text.size();
    const qsizetype units = isPair ? 2 : 1;
    const char32_t character =
        isPair ? QChar::surrogateToUcs4(text[end], text[end + 1]) : text[end].unicode();
    if (!isMark(character)) {
      boundary = end;
    }
    used += length(QStringView(text).sliced(end, units));
    if (used > limit) {
      break;
    }
    end += units;
  }
  // A letter with more accents than fit: half of it is better than no name.
  return text.first(boundary > 0 ? boundary : end);
}

} // namespace folivex
