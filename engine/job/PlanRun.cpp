#include "engine/job/BatchScope.h"
#include "engine/job/JobContext.h"
#include "engine/job/RangePipeline.h"
#include "engine/job/SourceFile.h"
#include "engine/job/SplitRun.h"
#include "engine/report/Reports.h"

#include <utility>

namespace folivex {

namespace {

/// Collects the outputs of a run that writes nothing. It answers for the disk, so that nothing is
/// deleted, and takes the outputs in place of the writer.
class PlanBuilder : public OutputPlaces, public OutputList {
public:
  /// `isGone` tells of a file that is there now whether the run would have removed it before its
  /// first output.
  PlanBuilder(SplitPlan& plan, OutputReservation::WhenTaken whenTaken,
              const QStringList& protectedFiles, std::function<bool(const QString& path)> isGone);

  bool exists(const QString& path) override;
  bool isProtected(const QString& path) override;
  void output(const ReservedOutput& reserved) override;
  void replaced(const ReservedOutput& lost) override;

  /// A range was saved: `namedPath` is the path before it was reserved.
  void saved(const PlannedOutput& output, const QString& namedPath);

private:
  SplitPlan& m_plan;
  OutputReservation::WhenTaken m_whenTaken;
  DiskOutputPlaces m_disk;
  std::function<bool(const QString&)> m_isGone;
  QHash<QString, std::size_t> m_lastOfPath; ///< row that a path was planned in last
};

PlanBuilder::PlanBuilder(SplitPlan& plan, OutputReservation::WhenTaken whenTaken,
                         const QStringList& protectedFiles,
                         std::function<bool(const QString&)> isGone)
    : m_plan(plan), m_whenTaken(whenTaken), m_disk(protectedFiles), m_isGone(std::move(isGone)) {}

bool PlanBuilder::exists(const QString& path) {
  return m_disk.exists(path) && !m_isGone(path);
}

bool PlanBuilder::isProtected(const QString& path) {
  return m_disk.isProtected(path);
}

void PlanBuilder::output(const ReservedOutput& reserved) {
  if (!reserved.path.isEmpty()) {
    m_plan.account.written(reserved.firstPage, reserved.lastPage);
  }
}

void PlanBuilder::replaced(const ReservedOutput& lost) {
  m_plan.account.replaced(lost.firstPage, lost.lastPage);
}

void PlanBuilder::saved(const PlannedOutput& output, const QString& namedPath) {
  PlannedOutput planned = output;
  const auto earlier = m_lastOfPath.constFind(planned.path);
  const bool again = earlier != m_lastOfPath.constEnd();
  if (again && m_whenTaken.append) {
    planned.fate = PlannedOutput::Fate::Appends;
  } else if (again) {
    PlannedOutput& lost = m_plan.outputs[*earlier];
    planned.fate = lost.fate;
    lost.fate = PlannedOutput::Fate::GivenUp;
  } else if (planned.path != namedPath) {
    planned.fate = PlannedOutput::Fate::Renamed;
  } else if (exists(planned.path)) {
    planned.fate =
        m_whenTaken.append ? PlannedOutput::Fate::Appends : PlannedOutput::Fate::Replaces;
  }
  if (!again) {
    ++m_plan.fileCount;
  }
  m_lastOfPath.insert(planned.path, m_plan.outputs.size());
  m_plan.outputs.push_back(planned);
}

} // namespace

SplitPlan planSource(const SplitRunParts& parts, std::function<bool(const QString& path)> isGone) {
  const auto& [setup, job, batch, addressReader, outcome] = parts;
  SplitPlan plan;
  SourceFile file(job);
  const int pageCount = file.openForSplitting(setup);
  if (pageCount == 0) {
    plan.problem = file.problem();
    job.state.error = RunError::Unreadable;
    return plan;
  }
  plan.account.start(pageCount);
  PlanBuilder builder(plan, {setup.alwaysOverwrite, setup.alwaysAppend},
                      {setup.fileName, file.scanned()}, std::move(isGone));
  Reports noReports;
  RangePipeline pipeline(
      setup, job, {setup.fileName, file.scanned(), pageCount},
      {builder, builder, batch.names(setup.reportUseFileList), noReports, outcome.emails,
       addressReader,
       [&builder](const ReportLine& line, const QString& namedPath, const QString& address) {
         builder.saved({line.firstPage, line.lastPage, line.matchedText, line.outputPath,
                        PlannedOutput::Fate::New, address},
                       namedPath);
       }});
  pipeline.run();
  plan.notes = pipeline.findings().lines();
  plan.notes += batch.names(setup.reportUseFileList).takeFindings();
  batch.namesTaken();
  return plan;
}

} // namespace folivex
