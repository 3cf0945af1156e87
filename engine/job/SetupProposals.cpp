#include "engine/job/SetupProposals.h"

#include "engine/job/JobContext.h"
#include "engine/job/PlanRun.h"
#include "engine/naming/NameList.h"
#include "engine/suggest/Candidates.h"
#include "engine/suggest/DecidedSettings.h"
#include "engine/words/TableWords.h"
#include "platform/Paths.h"

#include <QSet>

#include <algorithm>

namespace folivex {

namespace {

constexpr std::size_t mostProposals = 3;
constexpr int mostPlans = 16;

/// Stands in for the person of the runs that are planned.
class Nobody : public Operator {
public:
  Nobody(RunState& run, const std::function<bool()>& isWanted) : m_run(run), m_isWanted(isWanted) {}

  void message(const QString& /*text*/) override {}
  Answer question(const QString& /*text*/, const QString& /*caption*/) override {
    return Answer::No;
  }
  void note(const QString& /*text*/) override {}
  void print(const QString& /*text*/) override {}
  void progress(const Progress& /*progress*/) override {}
  void handlePendingEvents() override { m_run.userStop = m_run.userStop || !m_isWanted(); }
  void openDocument(const QString& /*path*/) override {}

private:
  RunState& m_run;
  const std::function<bool()>& m_isWanted;
};

/// What is there on the disk is no matter: it is the documents that are looked at.
SplitPlan planned(const WordTable& table, const SplitSetup& proposed, int pages,
                  const std::function<bool()>& isWanted) {
  const SplitSetup setup = runSetup(proposed);
  RunState run;
  Nobody nobody(run, isWanted);
  NameList names{QString()};
  TableWords words(table, setup.rotated, isWanted, {});
  SplitPlan plan;
  planPages({setup, {nobody, run}, names, nullptr, setup.fileName, {}, true}, words, pages, plan);
  return plan;
}

/// Letters and digits: what a file's name keeps of a text.
QString essence(QStringView text) {
  QString kept;
  std::copy_if(text.begin(), text.end(), std::back_inserter(kept),
               [](QChar c) { return c.isLetterOrNumber() || c.isSurrogate(); });
  return kept;
}

QString nameOf(const PlannedOutput& output) {
  QString name = platform::fileTitle(output.path);
  name.chop(4); // ".pdf"
  return name;
}

bool hasRanges(const SplitPlan& plan, const Candidate& candidate, int pages) {
  const auto& outputs = plan.outputs;
  if (outputs.size() != candidate.firstPages.size()) {
    return false;
  }
  for (std::size_t i = 0; i < outputs.size(); ++i) {
    const int next = i + 1 < outputs.size()
                         ? candidate.firstPages[i + 1] - (candidate.sheets > 0 ? 1 : 0)
                         : pages;
    if (outputs[i].firstPage != candidate.firstPages[i] + 1 || outputs[i].lastPage != next) {
      return false;
    }
  }
  return true;
}

bool hasNames(const SplitPlan& plan, const Candidate& candidate) {
  const QString label = candidate.setup.otherSettingsRemoveText;
  for (std::size_t i = 0; i < candidate.names.size(); ++i) {
    QString name = candidate.names[i];
    if (essence(nameOf(plan.outputs[i])) != essence(name.remove(label))) {
      return false;
    }
  }
  return true;
}

void count(const SplitPlan& plan, SetupProposal& proposal) {
  proposal.documents = static_cast<int>(plan.outputs.size());
  proposal.pagesLeft = plan.account.pageCount() - plan.account.inOutputs();
  proposal.collisions = static_cast<int>(
      std::count_if(plan.outputs.begin(), plan.outputs.end(), [](const PlannedOutput& output) {
        return output.fate == PlannedOutput::Fate::Renamed;
      }));
}

/// Two ways to the same documents and names are one to a person.
QString resultOf(const SplitPlan& plan) {
  QString result;
  for (const PlannedOutput& output : plan.outputs) {
    result += QStringLiteral("%1 %2|").arg(output.firstPage).arg(nameOf(output));
  }
  return result;
}

SetupProposal proposalOf(const Candidate& candidate, const SplitPlan& plan) {
  SetupProposal proposal{candidate.setup, {}};
  count(plan, proposal);
  proposal.reason =
      QStringLiteral("%1 %2 documents%3")
          .arg(candidate.reason, QString::number(proposal.documents), candidate.furtherReason);
  proposal.sure =
      candidate.mayBeSure && proposal.collisions == 0 && proposal.documents > 2 &&
      proposal.pagesLeft - candidate.leading <= (candidate.sheets > 0 ? proposal.documents : 0);
  return proposal;
}

} // namespace

void takeProposal(const SetupProposal& proposal, SplitSetup& setup) {
  takeRules(proposal.setup, setup);
}

void countPlan(const WordTable& table, SetupProposal& proposal,
               const std::function<bool()>& isWanted) {
  count(planned(table, proposal.setup, table.pageCount(), isWanted), proposal);
}

std::vector<SetupProposal> proposeSetups(const WordTable& table, const SplitSetup& base,
                                         const std::function<bool()>& isWanted) {
  const PageSample sample(table);
  std::vector<SetupProposal> proposals;
  QSet<int> families;
  QSet<QString> results;
  std::vector<int> first; // pages of the documents of the first proposal
  int plans = 0;
  for (const Candidate& candidate : findCandidates(sample, base)) {
    if (proposals.size() == mostProposals || plans == mostPlans || !isWanted()) {
      break;
    }
    if (families.contains(candidate.family)) {
      continue;
    }
    ++plans;
    SplitPlan plan = planned(table, candidate.setup, sample.pageCount(), isWanted);
    if (!hasRanges(plan, candidate, sample.pageCount()) || !hasNames(plan, candidate)) {
      continue;
    }
    families.insert(candidate.family);
    if (const QString result = resultOf(plan); !results.contains(result)) {
      results.insert(result);
      if (table.pageCount() > sample.pageCount()) {
        plan = planned(table, candidate.setup, table.pageCount(), isWanted);
      }
      Candidate found = candidate;
      fillMailSearch(sample, found);
      SetupProposal proposal = proposalOf(found, plan);
      // Of proposals that contradict each other about the documents one is wrong.
      first = proposals.empty() ? candidate.firstPages : first;
      proposal.sure = proposal.sure && candidate.firstPages == first;
      proposals.push_back(std::move(proposal));
    }
  }
  return isWanted() ? proposals : std::vector<SetupProposal>();
}

} // namespace folivex
