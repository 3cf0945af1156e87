// SplitPlan: what a run would do, before it does it.
#pragma once

#include "engine/naming/OutputReservation.h"
#include "engine/output/PageAccount.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace folivex {

/// One range that a run would save. Pages count from 1, inclusive.
struct PlannedOutput {
  enum class Fate {
    New,      ///< a new file
    Replaces, ///< a file that is there now is overwritten
    Appends,  ///< its pages go to the end of a file that is there, or that the run made before
    Renamed,  ///< its name was taken: "_partNNN" was added
    GivenUp   ///< a later range of the same name takes its place
  };

  int firstPage = 0;
  int lastPage = 0;
  QString matchedText;
  QString path;
  Fate fate = Fate::New;
  QString address = {}; ///< that mail will go to, when mail is sent; empty: none on its pages
};

/// In plain words; empty for Fate::New.
QString fateText(PlannedOutput::Fate fate);

struct SplitPlan {
  std::vector<PlannedOutput> outputs;
  QString problem;   ///< why nothing can be planned, empty when all is well
  QStringList notes; ///< findings a person should know
  PageAccount account;
  int fileCount = 0; ///< files that the outputs would make or grow
};

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
