// SetupProposals: setups that the program proposes for a file.
#pragma once

#include "engine/setup/SplitSetup.h"

#include <QString>

#include <functional>
#include <vector>

namespace folivex {

class WordTable;

struct SetupProposal {
  SplitSetup setup;
  QString reason; ///< one sentence for a person
  // What its plan comes to.
  int documents = 0;
  int pagesLeft = 0;  ///< that stand in no document
  int collisions = 0; ///< documents whose name another one has, too
  bool sure = false;  ///< nothing speaks against it; else a person should look at the plan
};

/// At most three, the best first; none when nothing was found. Each was planned by what plans a
/// run. All pages of the table must be there. The same table and settings give the same answer.
/// What does not decide about ranges and names is as in `base`, which names the file. Gives up, and
/// returns none, when `isWanted` says no.
std::vector<SetupProposal> proposeSetups(const WordTable& table, const SplitSetup& base,
                                         const std::function<bool()>& isWanted);

/// What the proposal decides comes into the setup, all else there stays.
void takeProposal(const SetupProposal& proposal, SplitSetup& setup);

/// Counts again what the plan of the proposal's setup comes to.
void countPlan(const WordTable& table, SetupProposal& proposal,
               const std::function<bool()>& isWanted);

} // namespace folivex
