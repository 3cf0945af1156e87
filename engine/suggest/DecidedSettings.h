// DecidedSettings: the settings that a proposal decides: ranges, names, and where addresses stand.
#pragma once

namespace folivex {

struct SplitSetup;

/// The setup with nothing said about ranges and names.
SplitSetup withoutRules(SplitSetup setup);

/// What a proposal decides comes into the setup, all else there stays.
void takeRules(const SplitSetup& proposed, SplitSetup& setup);

} // namespace folivex
