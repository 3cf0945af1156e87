// RunOutcome: what a run came to, and how that is told.
#pragma once

#include "engine/output/EmailRecords.h"
#include "engine/output/PageAccount.h"
#include "engine/setup/SplitSetup.h"

namespace folivex {

struct JobContext;

/// Beside the counts of RunState.
struct RunOutcome {
  PageAccount account;
  EmailRecords emails; ///< of the outputs that were written
  int writtenFiles = 0;
  bool outputsFailed = false;
};

/// What two messages say about a search without a match.
QString searchHint();

/// The closing message of a run, which may ask whether to open `report`, and where its pages went.
void tellRunEnd(const RunOutcome& outcome, const SplitSetup& setup, const QString& report,
                const JobContext& job);

} // namespace folivex
