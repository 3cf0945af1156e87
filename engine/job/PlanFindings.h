// PlanFindings: what a person should know of a plan before it is run.
#pragma once

#include "engine/job/SplitPlan.h"
#include "engine/setup/SplitSetup.h"

namespace folivex {

/// Files that are cleared away before the first output.
struct ClearedFolder {
  QString path;     ///< empty for none
  QStringList kept; ///< stay, though they lie there
};

/// What a run meets on the disk, and which pages and outputs are lost to one another: one line for
/// each, in plain words.
std::vector<Finding> planFindings(const SplitSetup& setup, const SplitPlan& plan,
                                  const ClearedFolder& cleared);

} // namespace folivex
