#include "engine/job/SplitPlan.h"

#include <algorithm>

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

QLatin1StringView fateWord(PlannedOutput::Fate fate) {
  constexpr const char* words[] = {"new", "replaces", "appends", "renamed", "givenUp"};
  return QLatin1StringView(words[static_cast<std::size_t>(fate)]);
}

namespace {

QString rowText(const PlannedOutput& output) {
  const QString fate = fateText(output.fate);
  return QStringLiteral("pages %1-%2 to %3%4")
      .arg(output.firstPage)
      .arg(output.lastPage)
      .arg(output.path, fate.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(fate));
}

} // namespace

QString planDifference(const SplitPlan& shown, const SplitPlan& later) {
  const bool ignoresPaths = shown.namesHoldTime && later.namesHoldTime;
  const auto isSame = [&](const PlannedOutput& a, const PlannedOutput& b) {
    return a.firstPage == b.firstPage && a.lastPage == b.lastPage && a.fate == b.fate &&
           (ignoresPaths || a.path == b.path);
  };
  const auto [was, is] = std::ranges::mismatch(shown.outputs, later.outputs, isSame);
  const bool wasThere = was != shown.outputs.end();
  const bool isThere = is != later.outputs.end();
  if (wasThere && isThere) {
    return QStringLiteral("Shown: %1. Now: %2.").arg(rowText(*was), rowText(*is));
  }
  if (wasThere || isThere) {
    return QStringLiteral("Shown: %1 output(s). Now: %2.")
        .arg(shown.outputs.size())
        .arg(later.outputs.size());
  }
  return {};
}

} // namespace folivex
