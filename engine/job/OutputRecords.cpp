#include "engine/job/OutputRecords.h"

#include "engine/report/RecordFields.h"

#include <QPair>
#include <QSet>

namespace folivex {

namespace {

using Fate = PlannedOutput::Fate;
/// An output's path and pages.
using Place = QPair<QString, QPair<int, int>>;

QSet<Place> placesOf(const QHash<QString, OutputWriter::Written>& written) {
  QSet<Place> places;
  for (auto file = written.begin(); file != written.end(); ++file) {
    for (const auto& [first, last] : file->pages) {
      places.insert({file.key(), {first, last}});
    }
  }
  return places;
}

/// The same fields for what is there and what is only planned.
QJsonObject outputRecord(const char* type, const PlannedOutput& output) {
  QJsonObject record = recordOf(type);
  setOutput(record, {output.firstPage, output.lastPage, output.matchedText, output.path},
            output.address);
  record[QLatin1StringView("fate")] = fateWord(output.fate);
  return record;
}

} // namespace

void recordPlan(const SplitPlan& plan, Operator& person) {
  for (const PlannedOutput& output : plan.outputs) {
    person.record(outputRecord("planned", output));
  }
}

void OutputRecords::saved(const ReportLine& line, const QString& namedPath,
                          const QString& address) {
  m_saved.push_back(
      {{line.firstPage, line.lastPage, line.matchedText, line.outputPath, Fate::New, address},
       line.outputPath != namedPath});
}

PlannedOutput::Fate OutputRecords::fateOf(const Saved& saved, bool isNew) const {
  if (!isNew) {
    return m_appends ? Fate::Appends : Fate::Replaces;
  }
  return saved.isRenamed ? Fate::Renamed : Fate::New;
}

void OutputRecords::tell(const QHash<QString, OutputWriter::Written>& written,
                         Operator& person) const {
  const QSet<Place> places = placesOf(written);
  QSet<QString> begun;
  for (const Saved& saved : m_saved) {
    PlannedOutput output = saved.output;
    if (!places.contains({output.path, {output.firstPage, output.lastPage}})) {
      continue;
    }
    const OutputWriter::Written& file = *written.constFind(output.path);
    output.fate = fateOf(saved, file.isNew && !begun.contains(output.path));
    begun.insert(output.path);
    QJsonObject record = outputRecord("output", output);
    if (file.stamp.size > 0) {
      setStamp(record, file.stamp);
    }
    person.record(record);
  }
}

} // namespace folivex
