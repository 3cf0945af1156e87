// FinishedRun: a split run that has ended, as far as mail is concerned.
#pragma once

#include "mail/EmailList.h"

namespace folivex {

class EmailRecords;
struct SplitSetup;

struct FinishedRun {
  QString source; ///< full path of the PDF that was split
  std::vector<AddressedOutput> outputs;
};

FinishedRun finishedRun(const QString& source, const EmailRecords& records);

/// Where the outputs of `source` lie.
QString outputFolderOf(const SplitSetup& setup, const QString& source);

} // namespace folivex
