// RunFinding: what a finding is about, for programs.
#pragma once

#include "engine/base/RunState.h"

#include <QLatin1StringView>

#include <array>

namespace folivex {

/// The sentence of a finding is for people and may change; its kind and the word of that do not.
/// The first of them are the failures of RunError.
enum class RunFinding {
  None, ///< of a run that ended well
  SourceMissing,
  SetupMissing,
  TextReport,
  CsvReport,
  SetupFile,
  Contradiction,
  Append,
  Unreadable,
  OutputFailed,
  MailFailed,
  SourceChanged,
  FolderBusy,
  Stopped, ///< the exit code 1
  Unsure,  ///< the exit code 2
  Other
};

struct FindingWord {
  RunFinding kind;
  QLatin1StringView word;
  int exitCode = 0; ///< with which a program ends for this alone; 0 when it does not
};

/// In the order of RunFinding.
extern const std::array<FindingWord, static_cast<std::size_t>(RunFinding::Other) + 1> findingWords;

/// "sourceMissing"
QLatin1StringView findingWord(RunFinding kind);

/// Of a code that the program ends with; RunFinding::None for 0.
RunFinding runFindingOf(int exitCode);
inline RunFinding runFindingOf(RunError error) {
  return runFindingOf(static_cast<int>(error));
}

} // namespace folivex
