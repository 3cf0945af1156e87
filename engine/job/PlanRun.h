// PlanRun: what a run over a source would do.
#pragma once

#include "engine/job/PlanFindings.h"

namespace folivex {

class AddressReader;
class NameList;
class SourceWords;
struct RunContext;

/// In `setup`, `fileName` is the source and `outputDir` the folder of its outputs. Owns nothing.
struct PlanParts {
  const SplitSetup& setup;
  const RunContext& job;
  NameList& names;
  AddressReader* addressReader; ///< null when no mail is to be sent
  QString scanned;              ///< whose words are read: the source, or its OCR'd copy
  ClearedFolder cleared;
  bool ignoresDisk = false; ///< planned as if no file and no folder were there
};

/// Adds to `plan` what a run would do, page after page, with the very stages of a run. Nothing is
/// written. RunState::mustEnd() ends it.
void planPages(const PlanParts& parts, SourceWords& words, int pageCount, SplitPlan& plan);

} // namespace folivex
