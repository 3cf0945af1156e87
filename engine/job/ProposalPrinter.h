// ProposalPrinter: proposed setups, for a person or for a program that reads along.
#pragma once

#include "engine/base/Operator.h"
#include "engine/job/SetupProposals.h"

namespace folivex {

/// Tells all of them, the best first: as records of type "proposal", or as text. `setupFile` is
/// where the best was written, empty when it was not.
void tellProposals(const std::vector<SetupProposal>& proposals, const QString& setupFile,
                   Operator& person);

} // namespace folivex
