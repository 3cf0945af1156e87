#include "engine/job/PlanBuilder.h"

#include <utility>

namespace folivex {

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

void PlanBuilder::remove(const QString& /*path*/) {}

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

} // namespace folivex
