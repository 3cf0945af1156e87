#include "updates/VersionNumber.h"

#include <QRegularExpression>

#include <algorithm>

namespace folivex {

namespace {

constexpr std::size_t mostNumbers = 4;

std::strong_ordering compareTexts(const QString& a, const QString& b) {
  return QString::compare(a, b) <=> 0;
}

/// Numbers by value and before words, as in 1 < 2 < 10 < alpha < beta.
std::strong_ordering compareParts(const QString& a, const QString& b) {
  bool isNumberA = false;
  bool isNumberB = false;
  const qulonglong numberA = a.toULongLong(&isNumberA);
  const qulonglong numberB = b.toULongLong(&isNumberB);
  if (isNumberA && isNumberB) {
    return numberA <=> numberB;
  }
  return isNumberA != isNumberB ? isNumberB <=> isNumberA : compareTexts(a, b);
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
  for (const QString& number : match.captured(1).split(u'.')) {
    version.m_numbers.push_back(number.toInt());
  }
  version.m_numbers.resize(mostNumbers);
  version.m_preRelease = match.captured(2).split(u'.', Qt::SkipEmptyParts);
  return version;
}

std::strong_ordering VersionNumber::operator<=>(const VersionNumber& other) const {
  if (const auto byNumbers = m_numbers <=> other.m_numbers; std::is_neq(byNumbers)) {
    return byNumbers;
  }
  if (m_preRelease.isEmpty() != other.m_preRelease.isEmpty()) {
    return m_preRelease.isEmpty() <=> other.m_preRelease.isEmpty();
  }
  const qsizetype common = std::min(m_preRelease.size(), other.m_preRelease.size());
  for (qsizetype i = 0; i < common; i++) {
    if (const auto byPart = compareParts(m_preRelease[i], other.m_preRelease[i]);
        std::is_neq(byPart)) {
      return byPart;
    }
  }
  return m_preRelease.size() <=> other.m_preRelease.size();
}

} // namespace folivex
