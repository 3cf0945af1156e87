#include "app/RunSummary.h"

#include <array>

namespace folivex {

namespace {

using Fate = PageAccount::Fate;

QString counted(int count, const char* one, const char* many) {
  return QStringLiteral("%1 %2").arg(count).arg(QLatin1String(count == 1 ? one : many));
}

QString filesText(int files) {
  return counted(files, "file", "files");
}

struct FateRow {
  Fate fate;
  bool isLoss;
  const char* one;
  const char* many;
  const char* advice;
};

constexpr std::array fateRows = {
    FateRow{Fate::Failed, true, "page could not be written", "pages could not be written", ""},
    FateRow{
        Fate::Replaced, true, "page was lost to a later file of the same name",
        "pages were lost to later files of the same name",
        " Choose a name that tells the documents apart, or let files that exist grow (Append)."},
    FateRow{Fate::Stopped, true, "page was not written, since the run was stopped",
            "pages were not written, since the run was stopped", ""},
    FateRow{Fate::HandedOn, false, "page was handed to the split command, which left no file",
            "pages were handed to the split command, which left no file for them", ""},
    FateRow{Fate::InNone, false, "page is in no document", "pages are in no document", ""},
};

QString headlineOf(const RunEnd& end, bool hasLoss) {
  const PageAccount& account = end.account;
  if (end.isStopped) {
    return QStringLiteral("Stopped, with %1 written.").arg(filesText(end.files));
  }
  if (end.isListOnly && account.pageCount() > 0 && !end.hasFailed) {
    return QStringLiteral("The list of outputs was written.");
  }
  if (end.files == 0) {
    return account.count(Fate::HandedOn) > 0
               ? QStringLiteral("The split command was given the pages.")
               : QStringLiteral("Nothing was written.");
  }
  if (hasLoss || end.hasFailed) {
    return QStringLiteral("%1 written, but not everything went well.").arg(filesText(end.files));
  }
  return QStringLiteral("%1 written.").arg(filesText(end.files));
}

} // namespace

QString durationText(qint64 elapsedMs) {
  constexpr qint64 msPerSecond = 1000;
  constexpr qint64 perMinute = 60;
  const qint64 seconds = (elapsedMs + msPerSecond / 2) / msPerSecond;
  if (seconds == 0) {
    return QStringLiteral("less than a second");
  }
  if (seconds < perMinute) {
    return QStringLiteral("%1 s").arg(seconds);
  }
  const qint64 minutes = seconds / perMinute;
  return minutes < perMinute
             ? QStringLiteral("%1 min %2 s").arg(minutes).arg(seconds % perMinute)
             : QStringLiteral("%1 h %2 min").arg(minutes / perMinute).arg(minutes % perMinute);
}

RunSummary summaryOf(const RunEnd& end) {
  RunSummary summary;
  const PageAccount& account = end.account;
  const bool writes = !end.isListOnly;
  bool hasLoss = false;
  if (account.pageCount() > 0) {
    const QString took = QStringLiteral("It took %1.").arg(durationText(end.elapsedMs));
    summary.facts += writes ? QStringLiteral("%1 of %2 are in a file. %3")
                                  .arg(account.inOutputs())
                                  .arg(counted(account.pageCount(), "page", "pages"), took)
                            : took;
  }
  for (const FateRow& row : fateRows) {
    const int count = writes ? account.count(row.fate) : 0;
    if (count > 0) {
      const QString pages =
          end.sources > 1 ? QString() : QStringLiteral(": ") + account.pagesOf(row.fate);
      summary.facts += QStringLiteral("%1%2.%3").arg(counted(count, row.one, row.many), pages,
                                                     QLatin1String(row.advice));
      hasLoss = hasLoss || row.isLoss;
    }
  }
  if (end.mails > 0) {
    summary.facts +=
        QStringLiteral("%1 waiting to be sent.").arg(counted(end.mails, "mail is", "mails are"));
  }
  const bool isEmpty = writes && end.files == 0 && account.count(Fate::HandedOn) == 0;
  summary.headline = headlineOf(end, hasLoss);
  summary.isWarning = hasLoss || end.hasFailed || end.isStopped || isEmpty;
  return summary;
}

} // namespace folivex
