// RunFinding: what a finding is about, for programs.
#pragma once

#include "engine/base/RunState.h"
#include "engine/base/Text.h"

#include <QLatin1StringView>
#include <QStringList>

#include <array>
#include <vector>

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
  DamagedPages,
  IllegiblePages,
  NoText,
  NoMatch,
  NearMiss,
  PagesLeft,
  RangeEmptied,
  OutputsGivenUp,
  FilesReplaced,
  OutputsAppended,
  OutputsRenamed,
  FilesCleared,
  OutputFolder,
  OutputLeft,
  Command,
  Names,
  Settings,
  Protected,
  Repaired,
  Recognition,
  Addresses,
  Mails,
  FolderWait,
  Search,
  Arguments,
  Library,
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

/// Something that a person should know.
struct Finding {
  RunFinding kind = RunFinding::Other;
  QString text;                     ///< a sentence, or what follows the name of the file in one
  std::vector<IntRange> pages = {}; ///< that it is about, from 1; empty where it is about none
};

QStringList textsOf(const std::vector<Finding>& findings);

/// Of a code that the program ends with; RunFinding::None for 0.
RunFinding runFindingOf(int exitCode);
inline RunFinding runFindingOf(RunError error) {
  return runFindingOf(static_cast<int>(error));
}

} // namespace folivex
