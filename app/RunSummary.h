// RunSummary: how a run ended, in a person's words.
#pragma once

#include "engine/output/PageAccount.h"

#include <QStringList>

namespace folivex {

/// What is known of a run, or of runs of several sources, that is over.
struct RunEnd {
  QStringList told;     ///< closing messages, word for word
  QStringList findings; ///< what was noted along the way
  int sources = 1;
  PageAccount account;     ///< without pages when nothing was read
  int files = 0;           ///< that were made or grew
  bool isListOnly = false; ///< a list was written in place of PDFs
  bool isStopped = false;
  bool hasFailed = false; ///< whatever the reason is; `told` or `findings` say it
  qint64 elapsedMs = 0;
  QString folder; ///< of the outputs; empty: there is none to see
  QString report; ///< to read; empty: none was written
  int mails = 0;  ///< waiting to be sent
};

struct RunSummary {
  QString headline;
  QStringList facts; ///< one sentence each
  /// Something is not as the person may think: pages that were given up, replaced or failed, or
  /// nothing written.
  bool isWarning = false;
};

RunSummary summaryOf(const RunEnd& end);

/// "3 s", "2 min 5 s", "1 h 4 min"
QString durationText(qint64 elapsedMs);

} // namespace folivex
