// ResultRecord: how the work on one source ended, told to a program.
#pragma once

#include "engine/job/RunOutcome.h"

#include <QJsonObject>

namespace folivex {

/// What is known of one source of a command when it is done with.
struct SourceResult {
  QString path;
  int exitCode = 0;                    ///< with which the program would end for this source alone
  const RunOutcome* outcome = nullptr; ///< of the run or plan of this very source; null: no such
  std::optional<platform::FileStamp> source = {}; ///< as it was before it was opened
  QJsonObject mails = {};                         ///< empty when there was nothing to mail
};

/// Of type "result".
QJsonObject resultRecord(const SourceResult& result);

/// Of type "source": the work on one begins, the last of so many.
QJsonObject sourceRecord(const QString& path, int sources);

} // namespace folivex
