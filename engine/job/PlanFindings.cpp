#include "engine/job/PlanFindings.h"

#include "engine/job/OutputFolder.h"

#include <algorithm>

namespace folivex {

namespace {

using Fate = PlannedOutput::Fate;

struct FateFinding {
  Fate fate;
  RunFinding kind;
  const char* text; ///< with the number of outputs
};

constexpr FateFinding fateFindings[] = {
    {Fate::GivenUp, RunFinding::OutputsGivenUp,
     "%1 output(s) share a name with a later one, which replaces them: name the "
     "outputs by something that differs"},
    {Fate::Replaces, RunFinding::FilesReplaced, "%1 file(s) that are there now are replaced"},
    {Fate::Appends, RunFinding::OutputsAppended,
     "%1 output(s) go to the end of a file that is there, or that is made before"},
    {Fate::Renamed, RunFinding::OutputsRenamed,
     "%1 output(s) have a name that is taken: a number is added"}};

} // namespace

std::vector<Finding> planFindings(const SplitSetup& setup, const SplitPlan& plan,
                                  const ClearedFolder& cleared) {
  std::vector<Finding> found;
  if (const QString finding = outputFolderFinding(setup.outputDir); !finding.isEmpty()) {
    found.push_back({RunFinding::OutputFolder, finding});
  }
  if (const int files = filesClearedWithFolder(cleared.path, cleared.kept); files > 0) {
    found.push_back(
        {RunFinding::FilesCleared, QStringLiteral("%1: %2 file(s) that are there are removed first")
                                       .arg(cleared.path)
                                       .arg(files)});
  }
  for (const FateFinding& finding : fateFindings) {
    const auto count = std::ranges::count(plan.outputs, finding.fate, &PlannedOutput::fate);
    if (count > 0) {
      found.push_back({finding.kind, QString::fromLatin1(finding.text).arg(count)});
    }
  }
  if (const int pages = plan.account.leftOver(); pages > 0 && !plan.outputs.empty()) {
    found.push_back({RunFinding::PagesLeft,
                     QStringLiteral("%1 page(s) are in no output: %2")
                         .arg(pages)
                         .arg(plan.account.leftOverPages()),
                     plan.account.runsOf(PageAccount::Fate::InNone)});
  }
  return found;
}

} // namespace folivex
