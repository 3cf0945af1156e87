// JobDriver: prepares a run, runs it and tells how it ended.
#pragma once

#include "engine/job/BatchRun.h"
#include "engine/job/BatchScope.h"
#include "engine/job/JobContext.h"
#include "engine/job/RunOutcome.h"
#include "engine/job/SplitPlan.h"
#include "engine/output/PageAddresses.h"
#include "engine/setup/SetupStore.h"

#include <functional>
#include <memory>

namespace folivex {

class MatchObserver;
struct SavedPlan;

/// Runs jobs with the settings of a SetupStore, one at a time, on the caller's thread. The person
/// is kept alive by Operator::handlePendingEvents() at every step; Stop() may be called from there.
class JobDriver {
public:
  using Libraries = JobContext::Libraries;

  JobDriver(SetupStore& store, Libraries libraries, Operator& person);

  /// Processes the file named in `FILENAME`. Everything that a person should know is told; the
  /// result is RunError::None, or the code that an unattended program ends with.
  ///
  /// With a plan that was shown, of the same settings, the run is held to it: names that show the
  /// time have the plan's, and the first output that differs in pages, path or fate is asked about
  /// before it is written. "No" stops there.
  RunError StartProcessing(const SplitPlan* expected = nullptr);

  /// For runs with `EMAILENABLE`.
  using AddressReaderMaker = folivex::AddressReaderMaker;
  void setAddressReaderMaker(AddressReaderMaker maker) { m_addressReader = std::move(maker); }

  /// Pages of the file that a setup names; 0 when it cannot be read, and `problem` says why.
  int PageCount(const SplitSetup& setup, QString& problem) const;

  /// What StartProcessing() would do. Nothing is written, deleted, numbered or saved; the pages are
  /// read, named and reserved by the same code.
  SplitPlan Plan();

  /// Makes the copy with recognised words that a run with `OCRFIRST` would make of the file named
  /// in `FILENAME`, and leaves it for runs and plans to come. Returns whether it is there; if not,
  /// the reason is told.
  bool Recognise();

  /// After a run or plan that found nothing, tells the words that come nearest to what was looked
  /// for, the nearest first. Reads the file named in `FILENAME` once more.
  void explainNoMatch();

  /// Walks the matches of the file named in `FILENAME` without writing anything.
  void ShowMatches(MatchObserver& observer);

  /// Writes the words of one page (from 1) of the file named in `FILENAME` with their positions,
  /// and opens the listing.
  void ListPagePositions(int page);

  /// Processes every row in use, in automation mode. `onProcessed`, which may be empty, is told of
  /// each source that has outputs, while emails() are still its own. The file that the settings
  /// name is afterwards that of before.
  BatchResult ProcessBatch(BatchRows& rows,
                           const std::function<void(const QString& source)>& onProcessed = {});

  /// Several sources are processed as one piece of work, until endBatch():
  /// `OTHERSETTINGSREMOVEFILES` then clears an output folder before the first of them only, and
  /// none of the sources with it, and the list of names goes on from source to source. A folder
  /// that was cleared is kept from other runs until the end. Of each source the outputs of `part`
  /// are made, the others only planned. With a file of a plan (see SavedPlan) they are not even
  /// planned: what it says is made.
  void beginBatch(const QStringList& sources, const PagePart& part = {},
                  const QString& planFile = {}) {
    m_batch.begin(sources);
    m_state.part = part;
    m_planFile = planFile;
    m_totals = RunTotals();
  }
  void endBatch() {
    m_batch.end();
    m_state.part = PagePart();
    m_planFile.clear();
  }
  /// A source of the batch was split by an earlier process: its outputs in this folder stay.
  void keepFolder(const QString& folder) { m_batch.keepFolder(folder); }

  /// Asks the run to end at the next page.
  void Stop();

  /// The program was started with arguments: a failure ends it.
  void setCommandLine(bool on) { m_state.commandLine = on; }
  /// No message boxes: what they would say is told as notes.
  void setAutomation(bool on) { m_state.automation = on; }

  const RunState& state() const { return m_state; }
  /// What the run or the plan that ended last came to.
  const RunOutcome& outcome() const { return m_outcome; }
  const PageAccount& account() const { return m_outcome.account; }
  /// Of the batch that is on or ended last, or of a later run.
  const RunTotals& totals() const { return m_totals; }
  const EmailRecords& emails() const { return m_outcome.emails; }

private:
  SplitSetup begin();
  QString contradictionOf(const SplitSetup& setup) const;
  std::unique_ptr<AddressReader> addressReaderFor(const SplitSetup& setup) const;
  QString folderToClear() const;
  bool lockFolder(const SplitSetup& setup);
  void clearFolder(const SplitSetup& setup);
  void addToTotals(const QString& source);
  void runLocked(const SplitSetup& setup, const SplitPlan* expected, const SavedPlan& saved);
  bool saveDefaultSetup();
  RowResult processRow(const QString& path,
                       const std::function<void(const QString& source)>& onProcessed);

  SetupStore& m_store;
  RunState m_state;
  JobContext m_job;
  RunOutcome m_outcome;
  RunTotals m_totals;
  BatchScope m_batch;
  AddressReaderMaker m_addressReader;
  QString m_planFile;
  bool m_folderWritable;
  bool m_isList = false;        ///< a list is processed: its rows go on without saved settings
  bool m_isUnsavedTold = false; ///< once a list
};

} // namespace folivex
