// ProposalRecord: a proposed setup, told to a program.
#pragma once

#include "engine/job/SetupProposals.h"

#include <QJsonObject>

namespace folivex {

/// Of type "proposal". `rank` counts from 1, the best; `setupFile` is where it was written, empty
/// when it was not.
QJsonObject proposalRecord(int rank, const SetupProposal& proposal, const QString& setupFile);

} // namespace folivex
