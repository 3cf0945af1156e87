// Candidates: setups that may split a file, as its words suggest them.
#pragma once

#include "engine/suggest/Candidate.h"
#include "engine/suggest/PageSample.h"

namespace folivex {

/// In the order in which they are worth planning. What a proposal does not decide is as in `base`.
std::vector<Candidate> findCandidates(const PageSample& sample, const SplitSetup& base);

} // namespace folivex
