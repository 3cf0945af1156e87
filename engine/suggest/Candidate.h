// Candidate: a setup that may split a file into its documents.
#pragma once

#include "engine/setup/SplitSetup.h"

#include <QString>

#include <vector>

namespace folivex {

/// A setup, and what its plan must be for the setup to mean what it was made for.
struct Candidate {
  SplitSetup setup;
  std::vector<int> firstPages; ///< of the documents, from 0
  std::vector<QString> names;  ///< of the documents; empty when they are only numbered
  int leading = 0;             ///< pages before the first document
  int sheets = 0;              ///< pages that are separators
  // One sentence, with the number of documents between the two.
  QString reason;
  QString furtherReason;
  double worth = 0;       ///< likelier ones have more
  bool mayBeSure = false; ///< enough speaks for it, when the plan is as it must be
  int family = 0;         ///< of one family only the first whose plan is as it must be is of use
};

} // namespace folivex
