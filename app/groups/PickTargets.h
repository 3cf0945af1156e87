// PickTargets: what a word or rectangle picked on a page can be meant for.
#pragma once

#include <QString>
#include <QStringList>

namespace folivex {

struct SplitSetup;

/// A word picked on a page. h and v as a search counts them, lookupH and lookupV as a token of a
/// name does.
struct PickedPlace {
  QString text;
  int h = 0;
  int v = 0;
  int lookupH = 0;
  int lookupV = 0;
};

/// A rectangle drawn on a page; both ends included.
struct PickedArea {
  int hFrom = 0;
  int hTo = 0;
  int vFrom = 0;
  int vTo = 0;
};

/// For a list to choose from. The index of a text is the `target` of the functions below.
const QStringList& pickTargetTexts();

/// Sets what the pick is meant for. Returns a sentence that says what came of it.
QString takePick(SplitSetup& setup, int target, const PickedPlace& place);
/// Sets positions; a target without any takes nothing, and says so.
QString takePick(SplitSetup& setup, int target, const PickedArea& area);

} // namespace folivex
