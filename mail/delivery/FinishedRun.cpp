#include "mail/delivery/FinishedRun.h"

#include "engine/output/EmailRecords.h"
#include "platform/Paths.h"

namespace folivex {

FinishedRun finishedRun(const QString& source, const EmailRecords& records) {
  FinishedRun run;
  run.source = platform::withoutTrailingBlanks(source);
  run.outputs.reserve(records.all().size());
  for (const EmailRecord& record : records.all()) {
    run.outputs.push_back({record.outputPath, record.firstPage, record.lastPage, record.matchedText,
                           record.addresses.address, record.addresses.further, record.identity,
                           record.addressesDiffer, record.holdsEarlierPages});
  }
  return run;
}

} // namespace folivex
