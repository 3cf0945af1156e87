// SuggestCommand: "--suggest", which proposes setups for a PDF.
#pragma once

#include "engine/setup/SplitSetup.h"

#include <QString>

#include <functional>

namespace folivex {

class CPDFTextDumpInit;
class Operator;

struct SuggestCommand {
  CPDFTextDumpInit& library;
  Operator& person;
  SplitSetup base;                ///< what a proposal does not decide; names the PDF
  QString target;                 ///< the setup file to write; empty for none
  bool unsure = false;            ///< write the best one even if it is not sure
  bool force = false;             ///< the setup file may be there already
  std::function<bool()> isWanted; ///< no: give up
};

/// The proposals as text for a terminal go to the person, what hinders them as notes. With a target
/// the best one is written, if it is sure or `unsure` is wanted, to a file of mode 0600; a link is
/// refused, and a file that is there without `force`. Returns the code that the program ends with:
/// 0, or why not.
int suggest(const SuggestCommand& command);

/// Nothing is sure.
inline constexpr int unsureExitCode = 2;

} // namespace folivex
