// Keeping the characters of a text that meet a condition.
#pragma once

#include <QChar>
#include <QString>
#include <QStringView>

#include <string_view>

namespace folivex {

/// The characters of `text` for which `isKept` holds, as long as they fit into `capacity` UTF-16
/// units. Half a surrogate pair is no character and goes.
template <typename Condition>
QString keptCharacters(QStringView text, qsizetype capacity, const Condition& isKept) {
  QString kept;
  kept.reserve(qMin(text.size(), capacity));
  for (qsizetype i = 0, units = 1; i < text.size(); i += units) {
    const bool isPair =
        text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
    units = isPair ? 2 : 1;
    const char32_t character =
        isPair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : char32_t{text[i].unicode()};
    if (QChar::isSurrogate(character) || !isKept(character)) {
      continue;
    }
    if (kept.size() + units > capacity) {
      break;
    }
    kept += text.sliced(i, units);
  }
  return kept;
}

/// One of < > : ? * " / \ |, which a shared folder takes in no name.
constexpr bool isForbiddenInNames(char32_t character) {
  return std::u32string_view(U"<>:?*\"/\\|").find(character) != std::u32string_view::npos;
}

} // namespace folivex
