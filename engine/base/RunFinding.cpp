#include "engine/base/RunFinding.h"

#include <algorithm>

namespace folivex {

namespace {

constexpr FindingWord word(RunFinding kind, const char* text, int exitCode = 0) {
  return {kind, QLatin1StringView(text), exitCode};
}
constexpr FindingWord word(RunFinding kind, const char* text, RunError error) {
  return word(kind, text, static_cast<int>(error));
}

} // namespace

using Kind = RunFinding;

const std::array<FindingWord, static_cast<std::size_t>(Kind::Other) + 1> findingWords = {
    {word(Kind::None, "none"),
     word(Kind::SourceMissing, "sourceMissing", RunError::SourceMissing),
     word(Kind::SetupMissing, "setupMissing", RunError::SetupMissing),
     word(Kind::TextReport, "textReport", RunError::TextReport),
     word(Kind::CsvReport, "csvReport", RunError::CsvReport),
     word(Kind::SetupFile, "setupFile", RunError::SetupFile),
     word(Kind::Contradiction, "contradiction", RunError::Contradiction),
     word(Kind::Append, "append", RunError::Append),
     word(Kind::Unreadable, "unreadable", RunError::Unreadable),
     word(Kind::OutputFailed, "outputFailed", RunError::OutputFailed),
     word(Kind::MailFailed, "mailFailed", RunError::MailFailed),
     word(Kind::SourceChanged, "sourceChanged", RunError::SourceChanged),
     word(Kind::FolderBusy, "folderBusy", RunError::FolderBusy),
     word(Kind::Stopped, "stopped", 1),
     word(Kind::Unsure, "unsure", 2),
     word(Kind::DamagedPages, "damagedPages"),
     word(Kind::IllegiblePages, "illegiblePages"),
     word(Kind::NoText, "noText"),
     word(Kind::NoMatch, "noMatch"),
     word(Kind::NearMiss, "nearMiss"),
     word(Kind::PagesLeft, "pagesLeft"),
     word(Kind::RangeEmptied, "rangeEmptied"),
     word(Kind::OutputsGivenUp, "outputsGivenUp"),
     word(Kind::FilesReplaced, "filesReplaced"),
     word(Kind::OutputsAppended, "outputsAppended"),
     word(Kind::OutputsRenamed, "outputsRenamed"),
     word(Kind::FilesCleared, "filesCleared"),
     word(Kind::OutputFolder, "outputFolder"),
     word(Kind::OutputLeft, "outputLeft"),
     word(Kind::Command, "command"),
     word(Kind::Names, "names"),
     word(Kind::Settings, "settings"),
     word(Kind::Protected, "protected"),
     word(Kind::Repaired, "repaired"),
     word(Kind::Recognition, "recognition"),
     word(Kind::Addresses, "addresses"),
     word(Kind::Mails, "mails"),
     word(Kind::FolderWait, "folderWait"),
     word(Kind::Search, "search"),
     word(Kind::Arguments, "arguments"),
     word(Kind::Library, "library"),
     word(Kind::Other, "other")}};

QLatin1StringView findingWord(RunFinding kind) {
  return findingWords[static_cast<std::size_t>(kind)].word;
}

QStringList textsOf(const std::vector<Finding>& findings) {
  QStringList texts;
  for (const Finding& finding : findings) {
    texts += finding.text;
  }
  return texts;
}

RunFinding runFindingOf(int exitCode) {
  if (exitCode == 0) {
    return RunFinding::None;
  }
  const auto found = std::ranges::find(findingWords, exitCode, &FindingWord::exitCode);
  return found == findingWords.end() ? RunFinding::Other : found->kind;
}

} // namespace folivex
