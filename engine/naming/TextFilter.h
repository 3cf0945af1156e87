// Keeping the characters of a text that meet a condition.
#pragma once

#include <QChar>
#include <QString>
#include <QStringView>

namespace folivex {

/// The characters of `text` for which `isKept` holds, as long as they fit into `capacity` UTF-16
/// units. Half a surrogate pair is no character and goes.
template <typename Condition>
QString keptCharacters(QStringView text, qsizetype capacity, const Condition& isKept) {
  QString kept;
  kept.reserve(qMin(text.size(), capacity));
  for (qsizetype i = 0; i < text.size(); ++i) {
    const QChar unit = text[i];
    if (!unit.isSurrogate()) {
      if (isKept(char32_t{unit.unicode()})) {
        if (kept.size() == capacity) {
          break;
        }
        kept += unit;
      }
      continue;
    }
    if (!unit.isHighSurrogate() || i + 1 == text.size() || !text[i + 1].isLowSurrogate()) {
      continue;
    }
    const QChar low = text[++i];
    if (isKept(QChar::surrogateToUcs4(unit, low))) {
      if (kept.size() + 2 > capacity) {
        break;
      }
      kept += unit;
      kept += low;
    }
  }
  return kept;
}

/// One of < > : ? * " / \ |, which a shared folder takes in no name.
constexpr bool isForbiddenInNames(char32_t character) {
  switch (character) {
  case U'<':
  case U'>':
  case U':':
  case U'?':
  case U'*':
  case U'"':
  case U'/':
  case U'\\':
  case U'|':
    return true;
  default:
    return false;
  }
}

} // namespace folivex
