#include "updates/VersionNumber.h"

#include <QRegularExpression>

#include <algorithm>

namespace folivex {

namespace {

/// Numbers by value and before words, as in 1 < 2 < 10 < alpha < beta.
std::strong_ordering compareParts(const QString& a, const QString& b) {
  bool isNumberA = false;
  bool isNumberB = false;
  const qulonglong numberA = a.toULongLong(&isNumberA);
  const qulonglong numberB = b.toULongLong(&isNumberB);
  if (isNumberA && isNumberB) {
    return numberA <=> numberB;
  }
  return isNumberA != isNumberB ? isNumberB <=> isNumberA : QString::compare(a, b) <=> 0;
}

} // namespace

std::optional<VersionNumber> VersionNumber::read(const QString& text) {
  static const QRegularExpression pattern(
      QStringLiteral("\\Av?([0-9]{1,9}(?:\\.[0-9]{1,9}){0,3})(?:-([0-9A-Za-z-]+(?:\\.[0-9A-Za-z-]+)"
                     "*))?(?:\\+[0-9A-Za-z.-]*)?\\z"));
  constexpr qsizetype mostCharacters = 64;
  const QRegularExpressionMatch match = pattern.match(text.left(mostCharacters + 1));
  if (text.size() > mostCharacters || !match.hasMatch()) {
    return std::nullopt;
  }
  VersionNumber version;
  version.m_numbers = QVersionNumber::fromString(match.captured(1)).normalized();
  version.m_preRelease = match.captured(2).split(u'.', Qt::SkipEmptyParts);
  return version;
}

std::strong_ordering VersionNumber::operator<=>(const VersionNumber& other) const {
  const int byNumbers = QVersionNumber::compare(m_numbers, other.m_numbers);
  if (byNumbers != 0) {
    return byNumbers <=> 0;
  }
  if (m_preRelease.isEmpty() != other.m_preRelease.isEmpty()) {
    return m_preRelease.isEmpty() <=> other.m_preRelease.isEmpty();
  }
  return std::lexicographical_compare_three_way(m_preRelease.begin(), m_preRelease.end(),
                                                other.m_preRelease.begin(),
                                                other.m_preRelease.end(), compareParts);
}

} // namespace folivex
