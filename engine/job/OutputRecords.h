// OutputRecords: the outputs of a run, told to a program when they are there.
#pragma once

#include "engine/job/SplitPlan.h"
#include "engine/output/OutputWriter.h"
#include "engine/report/Reports.h"

#include <vector>

namespace folivex {

/// One record of type "planned" for each output.
void recordPlan(const SplitPlan& plan, Operator& person);

/// One record of type "output" for each range of a file. Keeps what was saved until its fate is
/// known. Only used where somebody reads along: it grows with the outputs.
class OutputRecords {
public:
  explicit OutputRecords(bool appends) : m_appends(appends) {}

  /// `namedPath` is the path before it was reserved.
  void saved(const ReportLine& line, const QString& namedPath, const QString& address);

  /// Tells what is in a file now, in the order in which it was saved.
  void tell(const QHash<QString, OutputWriter::Written>& written, Operator& person) const;

private:
  struct Saved {
    PlannedOutput output;
    bool isRenamed;
  };
  PlannedOutput::Fate fateOf(const Saved& saved, bool isNew) const;

  bool m_appends;
  std::vector<Saved> m_saved;
};

} // namespace folivex
