#include "engine/job/ProposalPrinter.h"

#include "engine/report/RecordFields.h"
#include "engine/setup/SetupFile.h"

namespace folivex {

namespace {

/// What the proposal decides, by the keys of a setup file.
QJsonObject settingsOf(const SetupProposal& proposal) {
  SplitSetup decided;
  takeProposal(proposal, decided);
  const QStringList before = setupFileText(SplitSetup()).split(QStringLiteral("\r\n"));
  QJsonObject settings;
  for (const QString& line : setupFileText(decided).split(QStringLiteral("\r\n"))) {
    if (!before.contains(line)) {
      settings[line.section(u';', 0, 0)] = recordText(line.section(u';', 1).chopped(1));
    }
  }
  return settings;
}

/// `rank` counts from 1, the best.
QJsonObject proposalRecord(int rank, const SetupProposal& proposal, const QString& setupFile) {
  QJsonObject record = recordOf("proposal");
  record[QLatin1StringView("rank")] = rank;
  record[QLatin1StringView("sure")] = proposal.sure;
  record[QLatin1StringView("reason")] = recordText(proposal.reason);
  record[QLatin1StringView("documents")] = proposal.documents;
  record[QLatin1StringView("pagesLeft")] = proposal.pagesLeft;
  record[QLatin1StringView("collisions")] = proposal.collisions;
  record[QLatin1StringView("settings")] = settingsOf(proposal);
  if (!setupFile.isEmpty()) {
    setPath(record, setupFile);
  }
  return record;
}

QString proposalText(const SetupProposal& proposal) {
  return QStringLiteral("%1: %2.\n   %3 documents, %4 pages left over, %5 names that collide\n")
      .arg(proposal.sure ? QStringLiteral("sure") : QStringLiteral("not sure"), proposal.reason)
      .arg(proposal.documents)
      .arg(proposal.pagesLeft)
      .arg(proposal.collisions);
}

} // namespace

void tellProposals(const std::vector<SetupProposal>& proposals, const QString& setupFile,
                   Operator& person) {
  QString text;
  int rank = 0;
  for (const SetupProposal& proposal : proposals) {
    text += QStringLiteral("%1. ").arg(++rank) + proposalText(proposal);
    if (person.wantsRecords()) {
      person.record(proposalRecord(rank, proposal, setupFile));
    }
  }
  if (!person.wantsRecords()) {
    person.print(text);
  }
}

} // namespace folivex
