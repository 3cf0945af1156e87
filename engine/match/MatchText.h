// How search texts are compared.
#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace folivex {

/// Equal as wholes. Case-insensitive means A-Z alone: other letters must be the same.
bool equalTexts(QStringView a, QStringView b, Qt::CaseSensitivity sensitivity);

/// Number of blank-separated words.
int wordCount(QStringView text);

/// The number of a word-number search such as "[WORD4]" (from 1; what is no number gives 0, which
/// no word has); none for any other search text.
std::optional<int> wordNumberOf(QStringView searchText);

} // namespace folivex
