// RangePipeline: the stages behind the page loop, put together for one source.
#pragma once

#include "engine/job/OutputRangeSaver.h"
#include "engine/job/SourceRun.h"
#include "engine/naming/OutputNamer.h"
#include "engine/naming/OutputReservation.h"

namespace folivex {

/// Matching, planning, naming, reserving and saving for one open source. Where the outputs go is
/// the caller's choice: to the disk, or into a plan.
class RangePipeline {
public:
  struct Source {
    QString path; ///< what the outputs are named after
    int pageCount = 0;
    SourceWords& words; ///< of the source, or of its OCR'd copy
  };
  struct Ends {
    OutputPlaces& places;
    OutputList& list;
    NameList& names; ///< goes on where it stands
    Reports& reports;
    EmailRecords& emails;
    AddressReader* addressReader; ///< null when no mail is to be sent
    OutputRangeSaver::OnSaved onSaved = {};
    OutputReservation::Confirm confirm = {};
    MarkTaker* marks = nullptr;
    NameClock clock = [] { return QDateTime::currentDateTime(); };
    bool makesFolders = true;
  };

  /// Takes no ownership; all must outlive the pipeline.
  RangePipeline(const SplitSetup& setup, const RunContext& job, const Source& source,
                const Ends& ends);

  /// Walks the pages and hands on what waits for the end.
  void run();

  /// The same of what was planned before: no page is read but for addresses.
  void run(const std::vector<PlannedOutput>& planned);

  /// After a run that was stopped: the first page (from 1) that no finished range can hold; else 0.
  int firstUnfinishedPage() const;

  const Findings& findings() const { return m_run.findings(); }

private:
  void finish();

  int m_pageCount;
  RunState& m_state;
  Operator& m_person;
  OutputList& m_list;
  PageAddresses m_addresses;
  OutputReservation m_reservation;
  OutputNamer m_namer;
  OutputRangeSaver m_saver;
  SourceRun m_run;
  int m_firstUnsaved = 0; ///< of what was planned, where the run was stopped; else 0
};

} // namespace folivex
