// VersionNumber: "4.10.0-beta.2", read and compared.
#pragma once

#include <QString>
#include <QStringList>
#include <QVersionNumber>

#include <compare>
#include <optional>

namespace folivex {

/// A version of the program. Numbers that are not written are 0 ("4.1" is "4.1.0"); a pre-release
/// is older than its release; what follows "+" does not count.
class VersionNumber {
public:
  /// Nothing when the text is no version: 1 to 4 numbers, then perhaps "-" and a pre-release. A "v"
  /// in front is allowed.
  static std::optional<VersionNumber> read(const QString& text);

  std::strong_ordering operator<=>(const VersionNumber& other) const;
  bool operator==(const VersionNumber& other) const { return std::is_eq(*this <=> other); }

private:
  QVersionNumber m_numbers;
  QStringList m_preRelease; ///< its parts between dots; empty: a release
};

} // namespace folivex
