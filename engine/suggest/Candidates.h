// Candidates: setups that may split a file, as its words suggest them.
#pragma once

#include "engine/suggest/Candidate.h"
#include "engine/suggest/PageSample.h"

namespace folivex {

/// In the order in which they are worth planning. What a proposal does not decide is as in `base`.
std::vector<Candidate> findCandidates(const PageSample& sample, const SplitSetup& base);

/// Where each document has an e-mail address, the search for it goes into the setup, and the reason
/// says so. Mail is not switched on.
void fillMailSearch(const PageSample& sample, Candidate& candidate);

} // namespace folivex
