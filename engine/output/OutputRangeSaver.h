// OutputRangeSaver: names, writes and records the ranges of one source.
#pragma once

#include "engine/job/Operator.h"
#include "engine/job/RunState.h"
#include "engine/naming/OutputNamer.h"
#include "engine/naming/OutputReservation.h"
#include "engine/output/EmailRecords.h"
#include "engine/plan/RangeSaver.h"
#include "engine/plan/SplitMethod.h"
#include "engine/report/Reports.h"

namespace folivex {

/// The way of a closed range: `OFFSETFIRST` pages off its front, a name, a reserved path (which
/// hands it to the writer), a line in both reports, and a record for the e-mail list.
class OutputRangeSaver : public RangeSaver {
public:
  /// A range, its path before it was reserved, and the address that mail will go to.
  using OnPlanned =
      std::function<void(const ReportLine& line, const QString& namedPath, const QString& address)>;

  struct Stages {
    OutputNamer& namer;
    OutputReservation& reservation;
    Reports& reports; ///< not open in a run that writes nothing
    EmailRecords& emails;
    const PageAddresses& addresses;
    /// Told of every saved range; may be empty. Where it is
    /// set, the run writes nothing and no folder is made.
    OnPlanned onPlanned;
  };

  OutputRangeSaver(const SplitSetup& setup, RunState& state, Stages stages, Operator& person);

  void saveRange(SplitRange& range) override;
  QString cleanRestOfLine(const QString& text) override;

private:
  bool repeatsPreviousLine(const QString& matchedText) const;
  void writeReportLine(const ReportLine& line);
  void recordEmail(const ReportLine& line);

  const SplitSetup& m_setup;
  RunState& m_state;
  Stages m_stages;
  Operator& m_person;
  SplitMethod m_splitMethod;
  FileNameMethod m_nameMethod;
  bool m_hasPrevious = false;
  QString m_previousText;
};

} // namespace folivex
