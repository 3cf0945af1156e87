// SplitRun: a run over one source, and the plan of one.
#pragma once

#include "engine/job/RunOutcome.h"
#include "engine/job/SplitPlan.h"

namespace folivex {

class AddressReader;
class BatchScope;
class Reports;
class SourceFile;
struct JobContext;

/// What both need beside the setup, in which `fileName` is the source and `outputDir` the folder of
/// its outputs. Owns nothing.
struct SplitRunParts {
  const SplitSetup& setup;
  const JobContext& job;
  BatchScope& batch;
  AddressReader* addressReader; ///< null when no mail is to be sent
  RunOutcome& outcome;
};

/// Writes the outputs of a source and their lines into `reports`, which are open. `file` was opened
/// for splitting and has `pageCount` pages; with none there is nothing to write. What fails is told
/// and recorded in RunState::error; a failed output does not end the run.
void splitSource(const SplitRunParts& parts, SourceFile& file, int pageCount, Reports& reports);

/// What splitSource() would do; `isGone` tells of a file that is there now whether the run would
/// have removed it before its first output. Nothing is written.
SplitPlan planSource(const SplitRunParts& parts, std::function<bool(const QString& path)> isGone);

} // namespace folivex
