// Page numbers, runs of them joined.
#pragma once

#include "engine/base/Text.h"

#include <QString>

#include <vector>

namespace folivex {

/// Of page numbers in ascending order the runs of neighbours.
std::vector<IntRange> pageRuns(const std::vector<int>& pages);

/// "3, 7-9 and 12 more": page numbers in ascending order, runs joined, at most eight spans shown.
QString pageSpans(const std::vector<int>& pages);

} // namespace folivex
