// SettingWords: what settings come to, in a sentence for a person.
#pragma once

#include <QString>

namespace folivex {

struct SplitSetup;

/// What the chosen split method does.
QString splitMethodWords(const SplitSetup& setup);
/// What outputs are named after.
QString nameMethodWords(const SplitSetup& setup);

// What is set in a dialog of its own.
QString mailWords(const SplitSetup& setup);
QString reportWords(const SplitSetup& setup);
QString otherWords(const SplitSetup& setup);
QString commandWords(const SplitSetup& setup);

} // namespace folivex
