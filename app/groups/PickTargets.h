// PickTargets: what a word or rectangle picked on a page can be meant for.
#pragma once

#include "app/viewer/WordMeaning.h"

#include <QString>
#include <QStringList>

namespace folivex {

struct SplitSetup;

/// For a list to choose from. The index of a text is the `target` of the functions below.
const QStringList& pickTargetTexts();

/// Sets what the pick is meant for. Returns a sentence that says what came of it.
QString takePick(SplitSetup& setup, int target, const PickedPlace& place);
/// Sets positions; a target without any takes nothing, and says so.
QString takePick(SplitSetup& setup, int target, const PickedArea& area);

} // namespace folivex
