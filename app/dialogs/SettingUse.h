// SettingUse: which settings mean something beside the others.
#pragma once

#include <QSet>
#include <QString>

namespace folivex {

struct SplitSetup;

/// Keys of the settings that have no effect as the others stand: their controls are disabled. Their
/// values stay, and come back into effect with the choice that made them idle.
QSet<QString> idleSettings(const SplitSetup& setup);

/// Keys of the settings that say something else than they do before any setup was read.
QSet<QString> ownSettings(const SplitSetup& setup);

/// The search is made at a position: `MATCHPOSH` and `MATCHPOSV` count.
bool matchesAtPosition(const SplitSetup& setup);

/// Ranges come from words on pages, not from bookmarks.
bool matchesWords(const SplitSetup& setup);

/// Ranges end at until words.
bool endsAtUntilWords(const SplitSetup& setup);

} // namespace folivex
