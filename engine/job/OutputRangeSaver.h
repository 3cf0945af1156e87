// OutputRangeSaver: names, writes and records the ranges of one source.
#pragma once

#include "engine/base/Operator.h"
#include "engine/base/RunState.h"
#include "engine/job/SplitPlan.h"
#include "engine/naming/OutputNamer.h"
#include "engine/naming/OutputReservation.h"
#include "engine/output/EmailRecords.h"
#include "engine/plan/RangeSaver.h"
#include "engine/report/Reports.h"
#include "engine/setup/SplitMethod.h"

#include <vector>

namespace folivex {

/// A range that is an output of another part (RunState::part) takes its name and goes no further.
///
/// The way of a closed range: `OFFSETFIRST` pages off its front, a name, a reserved path (which
/// hands it to the writer), a line in both reports, and a record for the e-mail list.
///
/// In the methods that merge consecutive ranges of the same text each further match saves the range
/// again, longer. It is held until the next range or the end shows that it is complete: its last
/// page may be in its name, no address may be missed, and what is written, told and looked at would
/// else grow with the square of the matches.
class OutputRangeSaver : public RangeSaver {
public:
  /// A range, of another part too, its path before it was reserved, and the address that mail will
  /// go to.
  using OnSaved =
      std::function<void(const ReportLine& line, const QString& namedPath, const QString& address)>;

  struct Stages {
    OutputNamer& namer;
    OutputReservation& reservation;
    Reports& reports; ///< not open in a run that writes nothing
    EmailRecords& emails;
    const PageAddresses& addresses;
    OnSaved onSaved; ///< told of every output; may be empty
    bool makesFolders = true;
    /// Asked before each output is handed on; may be empty. When it says no the run is stopped, and
    /// the range stays held.
    OutputReservation::Confirm confirm;
  };

  OutputRangeSaver(const SplitSetup& setup, RunState& state, Stages stages, Operator& person);

  void saveRange(SplitRange& range) override;
  QString cleanRestOfLine(const QString& text) override;

  /// Saves a range that was planned before, as it was planned: nothing is taken off it.
  void savePlanned(const PlannedOutput& planned);

  /// Hands on what is held, unless the run was stopped. To be called when the last range has come.
  void finish();
  /// First page (from 1) of the range that is held; 0 when none is.
  int firstHeldPage() const { return m_held.empty() ? 0 : m_held.front().firstPage + 1; }

private:
  void save(const std::vector<SplitRange>& growth);
  bool isEmptied(const SplitRange& range, int firstPage);
  void saved(const std::vector<SplitRange>& growth, const ReportLine& line,
             const QString& namedPath);
  void tellNameList(NameList::State state);
  void writeReportLines(const std::vector<SplitRange>& growth, const ReportLine& whole);
  void recordEmail(const ReportLine& line);

  const SplitSetup& m_setup;
  RunState& m_state;
  Stages m_stages;
  Operator& m_person;
  SplitMethod m_splitMethod;
  FileNameMethod m_nameMethod;
  bool m_listsGrowth; ///< a range that grew has a line in the reports for each time
  std::vector<SplitRange>
      m_held; ///< one range as it grew, where that is listed; the whole of it last
  NameList::State m_toldOfList = NameList::State::NotAsked;
};

} // namespace folivex
