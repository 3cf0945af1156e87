// PageValues: finds the values of pages.
#pragma once

#include "engine/suggest/ValuePlace.h"

namespace folivex {

/// The values of these pages, the worthiest first, a few dozen at most. `mostMissing`: how many of
/// the pages may lack one.
std::vector<ValuePlace> findValues(const PageSample& sample, const std::vector<int>& pages,
                                   int mostMissing);

/// The texts of a value that was found on some pages, on these.
std::vector<QString> textsOf(const PageSample& sample, const ValuePlace& value,
                             const std::vector<int>& pages);

} // namespace folivex
