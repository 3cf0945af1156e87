// SplitRun: a run over one source.
#pragma once

#include "engine/job/RunOutcome.h"
#include "engine/job/SplitPlan.h"
#include "engine/setup/SplitSetup.h"

namespace folivex {

class AddressReader;
class BatchScope;
class Reports;
class SourceFile;
struct JobContext;

/// What it needs beside the setup, in which `fileName` is the source and `outputDir` the folder of
/// its outputs. Owns nothing.
struct SplitRunParts {
  const SplitSetup& setup;
  const JobContext& job;
  BatchScope& batch;
  AddressReader* addressReader; ///< null when no mail is to be sent
  RunOutcome& outcome;
  const SplitPlan* expected; ///< that the run is held to; may be null
  /// Planned by an earlier run, to be made without looking for them; may be null.
  const std::vector<PlannedOutput>* planned;
};

/// Writes the outputs of a source and their lines into `reports`, which are open. `file` was opened
/// for splitting and has `pageCount` pages; with none there is nothing to write. What fails is told
/// and recorded in RunState::error; a failed output does not end the run.
void splitSource(const SplitRunParts& parts, SourceFile& file, int pageCount, Reports& reports);

} // namespace folivex
