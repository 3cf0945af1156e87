// EmailSettingsCheck: what is wrong with the e-mail settings, before anything is sent.
#pragma once

#include "engine/setup/SettingFinding.h"

namespace folivex {

struct SplitSetup;

/// Milliseconds; one that is longer is cut.
inline constexpr int longestPause = 3'600'000;

/// In the order of the settings dialog; empty when all is well. Names no password.
SettingFindings checkEmailSettings(const SplitSetup& setup);

/// The From address as it is checked and used: a blank that was pasted along is none of it.
QString senderOf(const SplitSetup& setup);

} // namespace folivex
