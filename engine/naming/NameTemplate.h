// NameTemplate: a prefix or postfix with its tokens.
#pragma once

#include "engine/naming/NameTokens.h"

#include <QString>

namespace folivex {

/// One affix of a name. Tokens stand in the text that the operator typed (and in the source's
/// title, when that serves as affix); what replaces them is never searched for tokens again.
class NameTemplate {
public:
  NameTemplate() = default;
  /// Cut at 256 characters. Characters that no shared folder takes (: * ? " < > | and controls) are
  /// left out; "\" and "/" separate folders.
  explicit NameTemplate(const QString& text);

  const QString& text() const { return m_text; }

  /// "[EXTRACTTEXTDIR]" is in it.
  bool asksForFolder() const { return m_asksForFolder; }

  /// The text with every token replaced, at most 256 characters.
  QString expanded(const NameTokenValues& values) const;

private:
  QString m_text;
  bool m_asksForFolder = false;
};

} // namespace folivex
