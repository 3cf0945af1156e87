#include "engine/job/PlanRun.h"

#include "engine/job/JobContext.h"
#include "engine/job/OutputFolder.h"
#include "engine/job/RangePipeline.h"
#include "engine/match/MarkTaker.h"
#include "engine/report/Reports.h"

#include <algorithm>
#include <utility>

namespace folivex {

namespace {

/// Collects the outputs of a run that writes nothing. It answers for the disk, so that nothing is
/// deleted, and takes the outputs in place of the writer.
class PlanBuilder : public OutputPlaces, public OutputList {
public:
  PlanBuilder(SplitPlan& plan, const PlanParts& parts);

  bool exists(const QString& path) override;
  bool isProtected(const QString& path) override;
  void output(const ReservedOutput& reserved) override;
  void replaced(const ReservedOutput& lost) override;
  void elsewhere(const ReservedOutput& output) override;
  void occupied(const ReservedOutput& output) override;

  /// A range was saved: `namedPath` is the path before it was reserved.
  void saved(const PlannedOutput& output, const QString& namedPath);

  /// When all are saved: the outputs of other parts, which give up no names to these, go.
  void keepPart(const PagePart& part);

private:
  SplitPlan& m_plan;
  OutputReservation::WhenTaken m_whenTaken;
  DiskOutputPlaces m_disk;
  const ClearedFolder& m_cleared;
  bool m_ignoresDisk;
  QSet<QString> m_occupied;
  QHash<QString, std::size_t> m_lastOfPath; ///< row that a path was planned in last
};

PlanBuilder::PlanBuilder(SplitPlan& plan, const PlanParts& parts)
    : m_plan(plan), m_whenTaken{parts.setup.alwaysOverwrite, parts.setup.alwaysAppend},
      m_disk({parts.setup.fileName, parts.scanned}), m_cleared(parts.cleared),
      m_ignoresDisk(parts.ignoresDisk) {}

bool PlanBuilder::exists(const QString& path) {
  return !m_ignoresDisk && m_disk.exists(path) &&
         (m_cleared.path.isEmpty() || !isClearedWithFolder(m_cleared.path, m_cleared.kept, path));
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

void PlanBuilder::elsewhere(const ReservedOutput& output) {
  m_plan.account.elsewhere(output.firstPage, output.lastPage);
}

void PlanBuilder::occupied(const ReservedOutput& output) {
  m_plan.account.failed(output.firstPage, output.lastPage);
  m_plan.notes.push_back({RunFinding::OutputFailed,
                          QStringLiteral("%1: pages %2-%3 cannot be written: there is a file of "
                                         "this name, and a part of a source takes no other")
                              .arg(output.path)
                              .arg(output.firstPage)
                              .arg(output.lastPage),
                          {{output.firstPage, output.lastPage}}});
  m_occupied.insert(output.path);
}

void PlanBuilder::keepPart(const PagePart& part) {
  if (part.isAll()) {
    return;
  }
  std::erase_if(m_plan.outputs, [&](const PlannedOutput& output) {
    return !part.contains(output.firstPage) || m_occupied.contains(output.path);
  });
  m_plan.fileCount =
      static_cast<int>(std::ranges::count_if(m_plan.outputs, [](const PlannedOutput& output) {
        return output.fate != PlannedOutput::Fate::GivenUp;
      }));
}

/// Words that match everywhere would fill the memory and show nothing.
constexpr int mostMarksOfPage = 200;

class MarkCollector : public MarkTaker {
public:
  explicit MarkCollector(std::vector<PlanMark>& marks) : m_marks(marks) {}

  void begins(int pageIndex, QStringView text, const PlacedWord& last) override {
    add(pageIndex, text, last, PlanMark::Kind::Begins);
    m_documentBegins = m_marks.size();
  }
  void ends(int pageIndex, QStringView text, const PlacedWord& last) override {
    add(pageIndex, text, last, PlanMark::Kind::Ends);
  }
  void names(int pageIndex, const PlacedWord& word, bool anew) override;

private:
  void add(int pageIndex, QStringView text, const PlacedWord& at, PlanMark::Kind kind);

  std::vector<PlanMark>& m_marks;
  std::size_t m_documentBegins = 0; ///< the first mark behind the open document's beginning
  int m_page = 0;
  int m_ofPage = 0; ///< marks of that page
};

void MarkCollector::names(int pageIndex, const PlacedWord& word, bool anew) {
  if (anew) {
    const auto begin = m_marks.begin() + static_cast<std::ptrdiff_t>(m_documentBegins);
    m_marks.erase(
        std::remove_if(begin, m_marks.end(),
                       [](const PlanMark& mark) { return mark.kind == PlanMark::Kind::Names; }),
        m_marks.end());
  }
  add(pageIndex, word.text, word, PlanMark::Kind::Names);
}

void MarkCollector::add(int pageIndex, QStringView text, const PlacedWord& at,
                        PlanMark::Kind kind) {
  const int page = pageIndex + 1;
  m_ofPage = page == m_page ? m_ofPage + 1 : 1;
  m_page = page;
  if (m_ofPage <= mostMarksOfPage) {
    m_marks.push_back({page, text.toString(), at.h, at.v, kind});
  }
}

} // namespace

void planPages(const PlanParts& parts, SourceWords& words, int pageCount, SplitPlan& plan) {
  const SplitSetup& setup = parts.setup;
  plan.account.start(pageCount);
  plan.madeAt = QDateTime::currentDateTime();
  if (const QString finding = fileNameMethodFinding(setup); !finding.isEmpty()) {
    plan.notes.push_back({RunFinding::Settings, finding});
  }
  PlanBuilder builder(plan, parts);
  MarkCollector marks(plan.marks);
  Reports noReports;
  EmailRecords noEmails;
  RangePipeline pipeline(
      setup, parts.job, {setup.fileName, pageCount, words},
      {builder,
       builder,
       parts.names,
       noReports,
       noEmails,
       parts.addressReader,
       [&builder](const ReportLine& line, const QString& namedPath, const QString& address) {
         builder.saved({line.firstPage, line.lastPage, line.matchedText, line.outputPath,
                        PlannedOutput::Fate::New, address},
                       namedPath);
       },
       {},
       &marks,
       [&plan] {
         plan.namesHoldTime = true;
         return plan.madeAt;
       },
       false});
  pipeline.run();
  builder.keepPart(parts.job.state.part);
  const auto add = [&plan](const std::vector<Finding>& found) {
    plan.notes.insert(plan.notes.end(), found.begin(), found.end());
  };
  add(pipeline.findings().all());
  for (const QString& finding : parts.names.takeFindings()) {
    plan.notes.push_back({RunFinding::Names, finding});
  }
  if (!parts.ignoresDisk) {
    add(planFindings(setup, plan, parts.cleared));
  }
}

} // namespace folivex
