#include "app/SuggestCommand.h"

#include "engine/base/Operator.h"
#include "engine/base/RunState.h"
#include "engine/job/ProposalPrinter.h"
#include "engine/job/SourceTable.h"
#include "engine/setup/SetupStore.h"

#include <QFile>
#include <QFileInfo>

namespace folivex {

namespace {

/// Takes the place of the file. Empty, or why that cannot be.
QString takePlace(const QString& path, bool force) {
  if (QFileInfo(path).isSymLink()) {
    return QStringLiteral("is a link; name the file itself");
  }
  if (force && QFileInfo::exists(path)) {
    return {};
  }
  QFile file(path);
  if (file.open(QFile::WriteOnly | QFile::NewOnly, QFile::ReadOwner | QFile::WriteOwner)) {
    return {};
  }
  return QFileInfo::exists(path) ? QStringLiteral("is there already; --force replaces it")
                                 : file.errorString();
}

/// The setup as a file of this setup gives it back. False when it could not be written.
bool writeAndRead(const SuggestCommand& command, SplitSetup& setup) {
  const auto tell = [&](const QString& text) {
    command.person.found(RunFinding::SetupFile, QStringLiteral("%1: %2").arg(command.target, text));
  };
  if (const QString problem = takePlace(command.target, command.force); !problem.isEmpty()) {
    tell(problem);
    return false;
  }
  SetupStore store;
  store.edited() = setup;
  store.edited().fileName.clear();
  store.edited().pdfPassword.clear();
  store.working() = store.edited();
  const SetupResult saved = store.SaveSetup(command.target, SavePath::Keep);
  if (!saved.ok() || !QFile::setPermissions(command.target, QFile::ReadOwner | QFile::WriteOwner)) {
    tell(saved.ok() ? QStringLiteral("others may read it") : saved.note);
    return false;
  }
  SetupStore read;
  if (const SetupResult loaded = read.LoadSetup(command.target); !loaded.ok()) {
    tell(loaded.note);
    return false;
  }
  const SplitSetup proposed = setup;
  setup = read.working();
  setup.fileName = proposed.fileName;
  setup.pdfPassword = proposed.pdfPassword;
  return true;
}

} // namespace

int suggest(const SuggestCommand& command) {
  SourceTable source(command.library);
  const std::shared_ptr<WordTable> table = source.follow(command.base);
  bool isRead = table->waitUntilOpen(command.isWanted);
  for (int page = 1; isRead && page <= table->pageCount(); ++page) {
    isRead = table->waitForPage(page, command.isWanted);
  }
  if (!command.isWanted()) {
    return 1;
  }
  const auto tell = [&](RunFinding kind, const QString& text) {
    command.person.found(kind, QStringLiteral("%1: %2").arg(command.base.fileName, text));
  };
  if (!isRead) {
    tell(RunFinding::Unreadable, QStringLiteral("cannot be read, or has more words than are kept"));
    return static_cast<int>(RunError::Unreadable);
  }
  std::vector<SetupProposal> proposals = proposeSetups(*table, command.base, command.isWanted);
  if (!command.isWanted()) {
    return 1;
  }
  const bool isSure = !proposals.empty() && proposals.front().sure;
  const bool writes =
      !command.target.isEmpty() && (isSure || (command.unsure && !proposals.empty()));
  if (writes) {
    SetupProposal& best = proposals.front();
    if (!writeAndRead(command, best.setup)) {
      return static_cast<int>(RunError::SetupFile);
    }
    countPlan(*table, best, command.isWanted);
    proposals.resize(1);
  }
  tellProposals(proposals, writes ? command.target : QString(), command.person);
  if (!isSure) {
    tell(RunFinding::Unsure,
         proposals.empty()
             ? QStringLiteral("no documents were found in it")
             : QStringLiteral("nothing is sure; look at the plan of a proposal first"));
  }
  return isSure ? 0 : unsureExitCode;
}

} // namespace folivex
