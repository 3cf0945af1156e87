// PlanPrinter: a plan as text for a terminal or as CSV for a spreadsheet.
#pragma once

#include "engine/job/SplitPlan.h"

namespace folivex {

/// How "--plan" wants the plan of a split shown.
enum class PlanOutput { None, Table, Csv };

/// One line an output with its pages, text, file and what happens to the file, lines ending in LF.
/// As a table the columns are aligned and the account of the pages stands below; as CSV (see
/// csvField()) there is a header line and nothing else.
QString planText(const SplitPlan& plan, PlanOutput form);

} // namespace folivex
