// LibraryVersions: which libraries the program works with just now.
#pragma once

#include "app/help/ProblemReport.h"

namespace folivex {

/// The program's own three libraries, as they tell themselves; for a report of a problem.
std::vector<LibraryVersion> libraryVersions();

} // namespace folivex
