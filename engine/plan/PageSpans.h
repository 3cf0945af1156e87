// Page numbers as a person reads them.
#pragma once

#include <QString>

#include <vector>

namespace folivex {

/// "3, 7-9 and 12 more": page numbers in ascending order, runs joined, at most eight spans shown.
QString pageSpans(const std::vector<int>& pages);

} // namespace folivex
