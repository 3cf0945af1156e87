#include "engine/job/SplitPlan.h"

namespace folivex {

QString fateText(PlannedOutput::Fate fate) {
  switch (fate) {
  case PlannedOutput::Fate::New:
    break;
  case PlannedOutput::Fate::Replaces:
    return QStringLiteral("replaces a file");
  case PlannedOutput::Fate::Appends:
    return QStringLiteral("is appended");
  case PlannedOutput::Fate::Renamed:
    return QStringLiteral("name taken, number added");
  case PlannedOutput::Fate::GivenUp:
    return QStringLiteral("given up for a later one of the same name");
  }
  return {};
}

} // namespace folivex
