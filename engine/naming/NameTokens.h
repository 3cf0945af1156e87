// NameTokens: the tokens that a prefix or postfix may hold.
#pragma once

#include "engine/base/Text.h"

#include <QDateTime>

#include <functional>
#include <span>

namespace folivex {

/// Asked at most once for each name, and only when the name shows a date or a time: the local one.
using NameClock = std::function<QDateTime()>;

/// What the tokens of one name stand for.
struct NameTokenValues {
  QString title;         ///< "[FILETITLE]"
  QString matchText;     ///< cleaned: "[EXTRACTTEXT]", "[EXTRACTTEXTDIR]"
  qint64 firstPage = 1;  ///< first page as planned, from 1
  qint64 lastPage = 1;   ///< from 1
  qint64 pageOffset = 0; ///< added to the start page tokens alone
  qint64 totalPages = 0; ///< pages of the source
  std::function<QString(IntRange h, IntRange v)> wordAt; ///< cleaned word: "[POS..]"
  NameClock now;
};

struct NameToken {
  /// Where its text comes from.
  enum class Kind {
    Name,     ///< what is known of the output
    Position, ///< the word that stands at the position behind "[POS"
    Time,     ///< the clock
    LateTime  ///< the clock, where a token of the kind Time has asked for it
  };

  const char* text;    ///< as it stands in the field
  const char* meaning; ///< for a menu
  Kind kind;
  /// `now` counts for the two kinds of time alone. Null for a position.
  QString (*value)(const NameTokenValues& values, const QDateTime& now);
};

/// In the order of a menu, in which they are replaced too.
std::span<const NameToken> nameTokens();

/// The text with every token replaced.
QString withTokensReplaced(const QString& text, const NameTokenValues& values);

/// Asks for a folder of the name "[EXTRACTTEXTDIR]" stands for.
bool asksForFolder(const QString& text);

/// Empty, or what is odd about the tokens of a prefix or postfix.
QString tokenHint(const QString& affix);

} // namespace folivex
