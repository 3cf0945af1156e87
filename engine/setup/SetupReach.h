// SetupReach: what a setup does beyond writing PDFs and reports.
#pragma once

#include "engine/setup/SplitSetup.h"

#include <QStringList>

namespace folivex {

/// A sentence for each of: another program is started, files are deleted, mails are sent. They
/// quote the setup, cut where a value is too long to be read. Empty for a setup that only splits.
QStringList reachOf(const SplitSetup& setup);

/// Switches all of that off. What it was set to stays, for a person who switches it on again.
void restrain(SplitSetup& setup);

} // namespace folivex
