// SplitPlan: what a run would do, before it does it.
#pragma once

#include "engine/base/RunFinding.h"
#include "engine/output/PageAccount.h"

#include <QDateTime>
#include <QString>

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

  bool operator==(const PlannedOutput&) const = default;
};

/// In plain words; empty for Fate::New.
QString fateText(PlannedOutput::Fate fate);

/// The same for programs: "new", "replaces", "appends", "renamed", "givenUp".
QLatin1StringView fateWord(PlannedOutput::Fate fate);

/// A word of a page that makes a document or its name.
struct PlanMark {
  enum class Kind {
    Begins, ///< a document begins with it
    Ends,   ///< the until text, which ends one
    Names   ///< it goes into the name of an output
  };

  int page = 0; ///< from 1
  QString text; ///< of several words that match together all of them, at the place of the last
  int h = 0;    ///< where it counts as standing, as a search at a position is typed
  int v = 0;
  Kind kind = Kind::Begins;

  bool operator==(const PlanMark&) const = default;
};

struct SplitPlan {
  std::vector<PlannedOutput> outputs;
  QString problem;             ///< why nothing can be planned, empty when all is well
  std::vector<Finding> notes;  ///< what a person should know
  std::vector<PlanMark> marks; ///< in page order; of a page with hundreds of them the first ones
  PageAccount account;
  int fileCount = 0; ///< files that the outputs would make or grow
  QDateTime madeAt;  ///< what names that show a date or a time are made of
  bool namesHoldTime = false;
};

/// Empty, or a sentence about the first output in which the later plan differs from the one that
/// was shown. Where names show the time, they may differ in it.
QString planDifference(const SplitPlan& shown, const SplitPlan& later);

} // namespace folivex
