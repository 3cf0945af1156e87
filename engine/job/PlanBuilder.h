// PlanBuilder: makes a plan of what a run would write.
#pragma once

#include "engine/job/SplitPlan.h"
#include "engine/naming/OutputReservation.h"

#include <functional>

namespace folivex {

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
  void remove(const QString& path) override;
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

} // namespace folivex
