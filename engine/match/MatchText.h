// How search texts are compared, and read as numbers.
#pragma once

#include <QString>
#include <QStringView>

namespace folivex {

/// Equal as wholes. Case-insensitive means A-Z alone: other letters must be the same.
bool equalTexts(QStringView a, QStringView b, Qt::CaseSensitivity sensitivity);

/// Leading blanks, a sign, digits; what follows is ignored and no digit gives 0. A number too large
/// for an int gives the nearest one.
int leadingInteger(QStringView text);

/// Number of blank-separated words.
int wordCount(QStringView text);

/// Shortens `text` to at most `capacity` characters, never through a surrogate pair.
void cutText(QString& text, qsizetype capacity);

} // namespace folivex
