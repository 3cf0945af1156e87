// SetupChecks: what is wrong with the settings before anything is done with them. Numbers that are
// none are found by SetupBinding: they never reach a setup.
#pragma once

#include "engine/setup/SettingFinding.h"

#include <QStringList>

namespace folivex {

struct SplitSetup;

/// What the settings of the main window are about to be used for.
enum class SetupPurpose {
  Editing, ///< nothing yet: the disk is not asked
  Viewing, ///< pages of the source
  Reading, ///< a search that writes nothing
  Splitting,
  SplittingList ///< the sources come from the batch list
};

/// In the order of the window. Only settings that are in use are looked at.
SettingFindings checkSplitSettings(const SplitSetup& setup, SetupPurpose purpose);

// The settings of one dialog each.
SettingFindings checkReportOptions(const SplitSetup& setup);
SettingFindings checkOtherSettings(const SplitSetup& setup);
SettingFindings checkExternalCommand(const SplitSetup& setup);
/// While sending is switched off nothing here is a problem, only a hint.
SettingFindings checkEmailDialog(const SplitSetup& setup);

/// Hints at those of `keys` whose values would be lost in a setup file.
SettingFindings lostInFile(const SplitSetup& setup, const QStringList& keys);

} // namespace folivex
