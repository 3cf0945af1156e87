#include "engine/report/RecordFields.h"

#include "platform/RawText.h"

#include <utility>

namespace folivex {

namespace {

using Fate = PageAccount::Fate;

constexpr std::pair<Fate, const char*> fateKeys[] = {
    {Fate::Written, "inFiles"},   {Fate::InNone, "leftOver"},   {Fate::Elsewhere, "elsewhere"},
    {Fate::HandedOn, "handedOn"}, {Fate::Replaced, "replaced"}, {Fate::Stopped, "stopped"},
    {Fate::Failed, "failed"}};

} // namespace

QJsonObject recordOf(const char* type) {
  return {{QStringLiteral("type"), QLatin1StringView(type)}};
}

void setPath(QJsonObject& record, const QString& path) {
  setRecordText(record, QStringLiteral("path"), platform::absoluteRawPath(path));
}

void setStamp(QJsonObject& record, const platform::FileStamp& stamp) {
  constexpr qint64 nanoseconds = 1'000'000'000;
  record[QLatin1StringView("size")] = static_cast<qint64>(stamp.size);
  record[QLatin1StringView("modified")] = static_cast<qint64>(stamp.written / nanoseconds);
  record[QLatin1StringView("modifiedNanoseconds")] =
      static_cast<qint64>(stamp.written % nanoseconds);
}

void setOutput(QJsonObject& record, const ReportLine& line, const QString& address) {
  setPath(record, line.outputPath);
  record[QLatin1StringView("firstPage")] = line.firstPage;
  record[QLatin1StringView("lastPage")] = line.lastPage;
  record[QLatin1StringView("matchedText")] = recordText(line.matchedText);
  if (!address.isEmpty()) {
    record[QLatin1StringView("address")] = recordText(address);
  }
}

QJsonObject pagesRecord(const PageAccount& account) {
  QJsonObject pages{{QStringLiteral("total"), account.pageCount()}};
  for (const auto& [fate, key] : fateKeys) {
    if (fate == Fate::Elsewhere && account.count(fate) == 0) {
      continue; // of a run that makes all outputs
    }
    QJsonArray ranges;
    for (const auto& [first, last] : account.runsOf(fate)) {
      ranges.append(QJsonArray{first, last});
    }
    pages[QLatin1StringView(key)] = QJsonObject{{QStringLiteral("count"), account.count(fate)},
                                                {QStringLiteral("ranges"), std::move(ranges)}};
  }
  return pages;
}

} // namespace folivex
