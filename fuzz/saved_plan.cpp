// Any bytes as the file of a plan: what may be carried out stays in its folder and its pages.
#include "engine/job/SavedPlan.h"
#include "engine/setup/SplitSetup.h"
#include "fuzz/Targets.h"

#include <QFileInfo>

#include <algorithm>

namespace fuzzing {

void runSavedPlan(const QByteArray& input) {
  const QString path = workPath(QStringLiteral("plan"));
  writeWorkFile(path, input);
  folivex::SplitSetup setup;
  setup.fileName = QStringLiteral("/in/a.pdf");
  setup.outputDir = QStringLiteral("/out");
  setup.alwaysOverwrite = input.size() % 2 == 0;
  const folivex::SavedPlan plan = folivex::SavedPlan::load(path, setup);
  if (!plan.problem.isEmpty()) {
    return;
  }
  require(plan.pageCount > 0);
  require(std::ranges::all_of(plan.outputs, [&plan](const folivex::PlannedOutput& output) {
    return output.firstPage >= 1 && output.firstPage <= output.lastPage &&
           output.lastPage <= plan.pageCount && output.path.endsWith(u".pdf") &&
           QFileInfo(output.path).absoluteFilePath().startsWith(u"/out/") &&
           !output.path.contains(u"/../");
  }));
}

} // namespace fuzzing
