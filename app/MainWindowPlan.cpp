// The main window's plan: made anew with every change, shown beside page and rules, and held to
// before a run.
#include "app/ActivityLine.h"
#include "app/MainWindow.h"
#include "app/viewer/PagePane.h"
#include "app/viewer/PageStrip.h"
#include "app/viewer/PlanPane.h"
#include "platform/Paths.h"
#include "widgets/Dialogs.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QPushButton>
#include <QTime>

#include <algorithm>

namespace folivex {

namespace {

using Stage = LivePlanState::Stage;

/// What would be lost; empty when nothing would.
QString clashText(const SplitPlan& plan) {
  const auto count = [&plan](PlannedOutput::Fate fate) {
    return std::ranges::count(plan.outputs, fate, &PlannedOutput::fate);
  };
  QStringList lines;
  if (const auto givenUp = count(PlannedOutput::Fate::GivenUp); givenUp > 0) {
    lines += QStringLiteral("%1 document(s) would be lost: a later one has the same name and takes "
                            "its place.")
                 .arg(givenUp);
  }
  if (const auto replaced = count(PlannedOutput::Fate::Replaces); replaced > 0) {
    lines += QStringLiteral("%1 file(s) that are in the output folder now would be replaced.")
                 .arg(replaced);
  }
  return lines.join(u'\n');
}

QString emptyText(const LivePlanState& state) {
  return state.stage == Stage::Opening   ? QStringLiteral("The file is being opened.")
         : state.stage == Stage::Reading ? QStringLiteral("The file is being read.")
                                         : QStringLiteral("Nothing would be written.");
}

} // namespace

/// The settings as a run would take them.
SplitSetup MainWindow::plannedSetup() const {
  SplitSetup setup = currentSetup();
  if (setup.useCurrent) {
    setup.fileName = m_page->pageCount() > 0 ? m_page->file().path : QString();
  }
  return setup;
}

void MainWindow::replan() {
  if (m_feed == nullptr || m_isRunning) {
    return;
  }
  const SplitSetup setup = plannedSetup();
  if (platform::withoutTrailingBlanks(setup.fileName).isEmpty()) {
    m_feed->clear();
    forgetPlan(QStringLiteral("Open a PDF to see what would be written."));
    return;
  }
  m_feed->plan(setup, m_propose);
  m_plan->tellAge(QStringLiteral("Being made anew..."), PlanPane::Age::Stale);
  tellProcess(0);
}

void MainWindow::forgetPlan(const QString& reason) {
  m_shownPlan.reset();
  m_plan->setPlan(QString(), std::make_unique<PlanRows>());
  m_plan->setWhenEmpty(reason);
  m_plan->tellAge(QString(), PlanPane::Age::Current);
  m_plan->offer(QString());
  m_page->setMarks(nullptr);
  m_strip->setBands(std::nullopt);
  m_rules->setEffect(RulesPart::Words, QString());
  m_rules->setEffect(RulesPart::Names, QString());
  tellProcess(0);
}

void MainWindow::tellProcess(int files) {
  m_processButton->setText(files > 0 ? QStringLiteral("&Process %1 file(s)").arg(files)
                                     : QStringLiteral("&Process"));
}

void MainWindow::showPlan(PlanView& view) {
  const LivePlanState& state = view.state;
  const bool isFinal = PlanFeed::isFinal(state.stage);
  m_page->setWords(state.words);
  if (view.rows != nullptr) {
    m_plan->setPlan(plannedSetup().fileName, std::move(view.rows));
    m_strip->setBands(std::move(view.bands));
    m_page->setMarks({state.plan, &state.plan->marks});
    tellEffects(*state.plan);
  } else if (isFinal) {
    forgetPlan(QString());
  }
  m_shownPlan = isFinal ? state.plan : nullptr;
  m_plan->setWhenEmpty(emptyText(state));
  tellProgressOfPlan(state);
  offerWaysOut(state);
  tellProcess(isFinal && state.plan ? state.plan->fileCount : 0);
  if (state.proposals) {
    m_proposals = *state.proposals;
    offerFound(m_propose == LivePlan::Propose::Yes);
  }
  if (state.proposals || (m_propose == LivePlan::Propose::IfNothingIsFound && isFinal &&
                          state.plan && !state.plan->outputs.empty())) {
    m_propose = LivePlan::Propose::No;
  }
  if (m_onPlanShown) {
    m_onPlanShown();
  }
}

void MainWindow::tellProgressOfPlan(const LivePlanState& state) {
  if (state.stage == Stage::Reading) {
    m_plan->tellAge(
        QStringLiteral("Of the first %1 of %2 pages").arg(state.pagesRead).arg(state.pageCount),
        PlanPane::Age::Stale);
  } else if (state.stage == Stage::Done && state.plan) {
    m_plan->tellAge(QStringLiteral("As of %1").arg(QTime::currentTime().toString("HH:mm:ss")),
                    PlanPane::Age::Current);
  } else if (PlanFeed::isFinal(state.stage)) {
    m_plan->tellAge(QString(), PlanPane::Age::Current);
  }
  if (!m_isRunning && (state.stage == Stage::Reading || m_wasReading)) {
    m_activity->tellReading(state.pagesRead,
                            state.stage == Stage::Reading ? state.pageCount : state.pagesRead);
  }
  m_wasReading = state.stage == Stage::Reading;
}

void MainWindow::tellEffects(const SplitPlan& plan) {
  const auto count = plan.outputs.size();
  m_rules->setEffect(RulesPart::Words, count == 0 ? QStringLiteral("No document begins here")
                                                  : QStringLiteral("%1 document(s)").arg(count));
  m_rules->setEffect(
      RulesPart::Names,
      count == 0
          ? QString()
          : QStringLiteral("first: %1").arg(QFileInfo(plan.outputs.front().path).fileName()));
}

/// What can be done where there is no plan, or an empty one.
void MainWindow::offerWaysOut(const LivePlanState& state) {
  std::vector<OfferButton> offers;
  QString text = state.problem;
  if (state.stage == Stage::TooLarge) {
    offers.push_back({QStringLiteral("Plan now"), [this] { planWhole(); }});
  } else if (state.stage == Stage::WaitsForOcr) {
    offers.push_back({QStringLiteral("Recognise now"), [this] { recognise(); }});
  } else if (!state.nearWords.empty()) {
    text = QStringLiteral("No match. These words come nearest:");
    for (std::size_t i = 0; i < std::min(state.nearWords.size(), mostOfferButtons); ++i) {
      const NearWord& word = state.nearWords[i];
      QString shown = word.text;
      shown.replace(u'&', QStringLiteral("&&"));
      offers.push_back({QStringLiteral("%1 (%2 page(s))").arg(shown).arg(word.pages),
                        [this, word] { takeNearWord(word); }});
    }
  }
  m_plan->offer(text, std::move(offers));
}

void MainWindow::takeNearWord(const NearWord& word) {
  if (m_isRunning) {
    return;
  }
  SplitSetup setup = currentSetup();
  setup.findString = word.text;
  if (word.elsewhere) {
    setup.matchPosH = QString::number(word.h);
    setup.matchPosV = QString::number(word.v);
  }
  change(setup, QStringLiteral("Find word(s)"));
  m_page->goToPage(word.page);
}

/// The answer comes above the page.
void MainWindow::suggest() {
  if (plannedSetup().fileName.isEmpty()) {
    openPdf();
    return;
  }
  m_propose = LivePlan::Propose::Yes;
  m_activity->setStatus(QStringLiteral("Looking for the documents of this file."));
  replan();
}

/// A guess is shown to those who ask for it.
void MainWindow::offerFound(bool isAsked) {
  const bool isNone = m_proposals.empty();
  if (!isNone && (isAsked || m_proposals.front().sure)) {
    offerProposal(0);
    return;
  }
  std::vector<OfferButton> answers;
  if (!isNone) {
    answers.push_back({QStringLiteral("Show a guess"), [this] { offerProposal(0); }});
  }
  m_page->showOffer(QStringLiteral("No documents were found in this file%1. Click the word that "
                                   "they begin with.")
                        .arg(isNone ? QString() : QStringLiteral(" for sure")),
                    std::move(answers));
}

void MainWindow::offerProposal(std::size_t which) {
  const SetupProposal& proposal = m_proposals[which];
  std::vector<OfferButton> answers = {
      {QStringLiteral("Look at it"), [this, which] { takeProposed(which); }}};
  if (const std::size_t count = m_proposals.size(); count > 1) {
    const std::size_t next = (which + 1) % count;
    answers.push_back({QStringLiteral("Another"), [this, next] { offerProposal(next); }});
  }
  m_page->showOffer((proposal.sure ? QStringLiteral("Proposed: %1.")
                                   : QStringLiteral("Nothing is sure; perhaps: %1."))
                        .arg(proposal.reason),
                    std::move(answers));
}

void MainWindow::takeProposed(std::size_t which) {
  if (m_isRunning) {
    return;
  }
  SplitSetup setup = currentSetup();
  takeProposal(m_proposals[which], setup);
  change(setup, QStringLiteral("Proposal"));
  m_activity->setStatus(QStringLiteral("Set as proposed; Ctrl+Z takes it back."));
}

/// Plans anew, against the disk as it is now, and waits for it. False when Stop was pressed.
bool MainWindow::awaitPlan() {
  QEventLoop loop;
  bool isThere = false;
  work(QStringLiteral("Making the plan anew"), [&] {
    m_feed->plan(plannedSetup());
    m_onPlanShown = [&] {
      if (!m_feed->isPending()) {
        loop.quit();
      }
    };
    m_onStop = [&loop] { loop.exit(1); };
    isThere = loop.exec() == 0;
    m_onPlanShown = nullptr;
  });
  return isThere;
}

/// What was shown is what will be made, or what is made instead was agreed on; and nothing is lost
/// by it that the person does not know of.
bool MainWindow::isAgreedOn() {
  std::shared_ptr<const SplitPlan> before = m_feed->isPending() ? nullptr : m_shownPlan;
  Consent answer = Consent::Changed;
  while (answer == Consent::Changed && awaitPlan()) {
    if (m_shownPlan == nullptr) {
      return true; // the run says why there is none
    }
    if (before != nullptr && before->outputs != m_shownPlan->outputs &&
        m_dialogs.choice(this,
                         QStringLiteral("The plan is no longer what was shown: the PDF or the "
                                        "files in the output folder have changed since. It has "
                                        "been made anew, with %1 file(s).")
                             .arg(m_shownPlan->fileCount),
                         QStringLiteral("Process"),
                         {QStringLiteral("Process what is planned now")}) == Dialogs::noChoice) {
      return false;
    }
    const QString clashes = clashText(*m_shownPlan);
    answer = clashes.isEmpty() ? Consent::Given : askAboutClashes(clashes);
    before.reset();
  }
  return answer == Consent::Given;
}

MainWindow::Consent MainWindow::askAboutClashes(const QString& text) {
  enum Way { AddNumbers, Append, OtherFolder, Overwrite };
  SplitSetup setup = currentSetup();
  switch (m_dialogs.choice(this, text + QStringLiteral("\n\nWhat is to be done?"),
                           QStringLiteral("Process"),
                           {QStringLiteral("Keep all, &add numbers"), QStringLiteral("A&ppend"),
                            QStringLiteral("Other &folder..."), QStringLiteral("&Overwrite")})) {
  case AddNumbers:
    setup.alwaysOverwrite = setup.alwaysAppend = false;
    break;
  case Append:
    setup.alwaysOverwrite = false;
    setup.alwaysAppend = true;
    break;
  case OtherFolder: {
    const QString folder =
        m_dialogs.chooseFolder(this, QStringLiteral("Folder for the outputs"), setup.outputDir);
    if (folder.isEmpty()) {
      return Consent::Refused;
    }
    setup.outputDir = folder;
    setup.splitToSource = false;
    break;
  }
  case Overwrite:
    return Consent::Given;
  default:
    return Consent::Refused;
  }
  change(setup, QStringLiteral("What becomes of files that are there"));
  return Consent::Changed;
}

} // namespace folivex
