// NameTokens: the tokens that a prefix or postfix may hold, for a person to choose from.
#pragma once

#include <QString>

#include <span>

namespace folivex {

struct NameToken {
  const char* text;    ///< as it stands in the field
  const char* meaning; ///< for a menu
};

/// In the order of a menu.
std::span<const NameToken> nameTokens();

/// Empty, or what is odd about the tokens of a prefix or postfix.
QString tokenHint(const QString& affix);

} // namespace folivex
