// How search texts are compared, and read as numbers.
#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace folivex {

/// Equal as wholes. Case-insensitive means A-Z alone: other letters must be the same.
bool equalTexts(QStringView a, QStringView b, Qt::CaseSensitivity sensitivity);

/// Leading blanks, a sign, digits; what follows is ignored and no digit gives 0. A number too large
/// for an int gives the nearest one.
int leadingInteger(QStringView text);

/// Number of blank-separated words.
int wordCount(QStringView text);

/// The number of a word-number search such as "[WORD4]" (from 1; what is no number gives 0, which
/// no word has); none for any other search text.
std::optional<int> wordNumberOf(QStringView searchText);

/// Shortens `text` to at most `capacity` characters, never through a surrogate pair.
void cutText(QString& text, qsizetype capacity);

} // namespace folivex
