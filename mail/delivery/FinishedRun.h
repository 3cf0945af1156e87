// FinishedRun: a split run that has ended, as far as mail is concerned.
#pragma once

#include "mail/EmailList.h"

namespace folivex {

class EmailRecords;

struct FinishedRun {
  QString source; ///< full path of the PDF that was split
  std::vector<AddressedOutput> outputs;
};

FinishedRun finishedRun(const QString& source, const EmailRecords& records);

} // namespace folivex
