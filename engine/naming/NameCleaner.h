// NameCleaner: which characters of a found text come into a file name.
#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

namespace folivex {

struct SplitSetup;

/// Capacities of the texts that a name is made of, in UTF-16 units. Longer text is cut, never in
/// the middle of a surrogate pair.
namespace nameCapacity {
inline constexpr qsizetype foundText = 16'384; ///< of any text before it is cleaned
inline constexpr qsizetype matchText = 255;
inline constexpr qsizetype restOfLine = 1024;
inline constexpr qsizetype affix = 256;
inline constexpr qsizetype removeChars = 256;
inline constexpr qsizetype filter = 256;
} // namespace nameCapacity

/// Cleans found text by a setup: takes out the texts to remove, the characters that no name may
/// hold, and what stands behind the place where the extract filter cuts.
class NameCleaner {
public:
  explicit NameCleaner(const SplitSetup& setup);

  /// The matched text of a range, at most 255 characters.
  QString matchText(const QString& text) const;

  /// The rest of a line, at most 1024 characters.
  QString restOfLine(const QString& text) const;

  /// Text that is neither filtered nor searched for texts to remove: a word by its position, a line
  /// of the name list. At most 255 characters.
  QString word(const QString& text) const;

private:
  enum class Filter { None, Word, FirstDigit, FirstDigitFrom, Length };

  void readFilter(const QString& text);
  QString cleaned(const QString& text, qsizetype capacity) const;
  qsizetype filterPosition(const QString& text) const;

  QStringList m_removeTexts;
  QSet<char32_t> m_removeCharacters;
  Filter m_filter = Filter::None;
  QString m_filterText;
  int m_filterNumber = 0;
};

} // namespace folivex
