// RunOutcome: what a run came to, and how that is told.
#pragma once

#include "engine/output/EmailRecords.h"
#include "engine/output/PageAccount.h"
#include "engine/report/ReportPaths.h"
#include "engine/setup/SplitSetup.h"
#include "platform/FileStamp.h"

#include <optional>

namespace folivex {

struct JobContext;

/// Beside the counts of RunState.
struct RunOutcome {
  PageAccount account;
  EmailRecords emails; ///< of the outputs that were written
  int writtenFiles = 0;
  bool outputsFailed = false;
  std::optional<platform::FileStamp> source; ///< as it was before it was opened
  ReportPaths reports;                       ///< that were opened
  QString fileList;                          ///< that was written in place of outputs
};

/// What the runs of a batch came to together, or one that stands alone.
struct RunTotals {
  int sources = 0;
  QString lastSource;
  PageAccount account; ///< of several sources: see PageAccount::add()
  int files = 0;
  bool hasFailed = false; ///< whatever it was: something was told
};

/// What two messages say about a search without a match.
QString searchHint();

/// The closing message of a run, which may ask whether to open `report`, and where its pages went.
void tellRunEnd(const RunOutcome& outcome, const SplitSetup& setup, const QString& report,
                const JobContext& job);

} // namespace folivex
