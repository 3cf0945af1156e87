#include "engine/job/LivePlan.h"

#include "engine/job/JobContext.h"
#include "engine/job/OutputFolder.h"
#include "engine/job/PageWindow.h"
#include "engine/job/PlanRun.h"
#include "engine/job/SourceTable.h"
#include "engine/match/NearMisses.h"
#include "engine/naming/NameList.h"
#include "engine/setup/SplitMethod.h"
#include "engine/words/CPDFTextDumpInit.h"
#include "engine/words/TableWords.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace folivex {

namespace {

using Clock = std::chrono::steady_clock;
using Stage = LivePlanState::Stage;

/// What a run would tell becomes notes of the plan; a text that comes for each of thousands of
/// outputs is for nobody.
constexpr qsizetype mostNotes = 20;

QString problemOf(const SplitSetup& setup, int result) {
  return setup.fileName.isEmpty()
             ? QStringLiteral("No PDF is open; open one to see the plan")
             : QStringLiteral("%1: %2").arg(setup.fileName,
                                            openingProblem(result, !setup.pdfPassword.isEmpty()));
}

} // namespace

QString openingProblem(int result, bool hasPassword) {
  switch (result) {
  case GLYPHRUN_WRONG_PASSWORD:
    return hasPassword ? QStringLiteral("this password does not open it; try another")
                       : QStringLiteral("opens with a password only; type it to see its pages");
  case GLYPHRUN_CANNOT_OPEN:
    return QStringLiteral("is not there or may not be read; choose it again");
  case GLYPHRUN_NOT_A_PDF:
    return QStringLiteral("is no PDF, or is damaged beyond repair; get it anew from where it came "
                          "from");
  case GLYPHRUN_UNSUPPORTED:
    return QStringLiteral("is encrypted for certain persons, which no password opens; ask its "
                          "sender for a copy without");
  case GLYPHRUN_OUT_OF_MEMORY:
    return QStringLiteral("needs more memory to be opened than there is; close other programs and "
                          "try again");
  default:
    return QStringLiteral("cannot be read; get it anew from where it came from");
  }
}

/// One plan on its way. Stands in for the person of the run that is planned.
class LivePlan::Planning : public Operator {
public:
  Planning(const LivePlan& live, quint64 number, const SplitSetup& setup)
      : m_live(live), m_setup(runSetup(setup)), m_clearedFolder(folderToClear(setup)) {
    m_state.number = number;
  }

  void over(const WordTable& table, const SourceTable& source);
  void findNearest(const WordTable& table);
  void propose(const WordTable& table, const SplitSetup& base) {
    m_state.proposals = proposeSetups(table, base, [this] { return isWanted(); });
  }
  void tell(Stage stage, const QString& problem = {});
  void setWords(std::shared_ptr<const WordTable> words) { m_state.words = std::move(words); }

  const SplitSetup& setup() const { return m_setup; }
  bool isWanted() const { return m_live.isWanted(m_state.number); }
  const LivePlanState& state() const { return m_state; }
  void tellAgain(LivePlanState state) {
    state.number = m_state.number;
    m_live.m_onState(std::move(state));
  }
  bool hasOutputs() const { return m_state.plan && !m_state.plan->outputs.empty(); }

  void message(const QString& text) override { note(text); }
  Answer question(const QString& /*text*/, const QString& /*caption*/) override {
    return Answer::No;
  }
  void note(const QString& text) override;
  void print(const QString& /*text*/) override {}
  void progress(const Progress& progress) override;
  void handlePendingEvents() override;
  void openDocument(const QString& /*path*/) override {}

private:
  void showSoFar(const SplitPlan& plan);

  const LivePlan& m_live;
  const SplitSetup m_setup;
  const QString m_clearedFolder;
  LivePlanState m_state;
  RunState m_run;
  const WordTable* m_table = nullptr;
  SplitPlan m_plan;
  QStringList m_notes;
  Clock::time_point m_nextShown = {};
};

void LivePlan::Planning::over(const WordTable& table, const SourceTable& source) {
  m_run = RunState();
  m_plan = SplitPlan();
  m_notes = source.finding().isEmpty() ? QStringList() : QStringList(source.finding());
  m_table = &table;
  m_state.pageCount = table.pageCount();
  TableWords words(
      table, m_setup.rotated, [this] { return isWanted(); },
      [this](const QString& problem) { note(problem); });
  NameList names(m_setup.reportUseFileList);
  const std::unique_ptr<AddressReader> addresses =
      m_setup.emailEnable && m_live.m_addressReader ? m_live.m_addressReader(m_setup) : nullptr;
  planPages({m_setup,
             {*this, m_run},
             names,
             addresses.get(),
             source.scanned(),
             {m_clearedFolder, {m_setup.fileName}}},
            words, table.pageCount(), m_plan);
  if (table.state() == WordTable::State::TooLarge) {
    m_state.plan.reset(); // what a part of the pages comes to is no plan to hold a run to
    return;
  }
  for (const QString& text : m_notes) {
    m_plan.notes.push_back({RunFinding::Other, text});
  }
  m_state.pagesRead = m_state.pageCount;
  m_state.plan = std::make_shared<const SplitPlan>(std::move(m_plan));
}

void LivePlan::Planning::note(const QString& text) {
  if (m_notes.size() < mostNotes && !m_notes.contains(text)) {
    m_notes += text;
  }
}

/// A page is about to be matched. While it is waited for there is time to show the plan so far.
void LivePlan::Planning::progress(const Progress& progress) {
  if (!m_table->hasPage(progress.page) && Clock::now() >= m_nextShown) {
    m_state.pagesRead = progress.page - 1;
    showSoFar(m_plan);
  }
}

void LivePlan::Planning::showSoFar(const SplitPlan& plan) {
  constexpr auto seldom = std::chrono::milliseconds(100);
  constexpr int shareOfTime = 10; // at most one part of so many goes into copying
  const Clock::time_point begin = Clock::now();
  m_state.plan = std::make_shared<const SplitPlan>(plan);
  tell(Stage::Reading);
  const Clock::time_point end = Clock::now();
  m_nextShown = end + std::max<Clock::duration>(seldom, (end - begin) * shareOfTime);
}

void LivePlan::Planning::handlePendingEvents() {
  m_run.userStop = m_run.userStop || !isWanted() || m_table->state() == WordTable::State::TooLarge;
}

void LivePlan::Planning::tell(Stage stage, const QString& problem) {
  m_state.stage = stage;
  m_state.problem = problem;
  if (isWanted()) {
    m_live.m_onState(m_state);
  }
}

void LivePlan::Planning::findNearest(const WordTable& table) {
  NearMisses misses = NearMisses::forSearchText(m_setup);
  TableWords words(table, m_setup.rotated, [this] { return isWanted(); }, {});
  const PageWindow window =
      pageWindow(m_setup.startFromPage, m_setup.startEndPage, table.pageCount());
  for (int page = window.first; page < window.end && isWanted(); ++page) {
    misses.scanPage(page, words);
  }
  m_state.nearest = misses.sentences();
  for (const NearMiss& miss : misses.best()) {
    m_state.nearWords.push_back({miss.text, miss.pages, miss.page, miss.h, miss.v, miss.elsewhere});
  }
}

LivePlan::LivePlan(CPDFTextDumpInit& library, AddressReaderMaker addressReader, OnState onState,
                   std::size_t most)
    : m_addressReader(std::move(addressReader)), m_onState(std::move(onState)),
      m_source(std::make_unique<SourceTable>(library, most)), m_thread([this] { work(); }) {}

LivePlan::~LivePlan() {
  m_isEnding = true;
  ask({});
  m_thread.join();
}

quint64 LivePlan::plan(const SplitSetup& setup, Propose propose) {
  return ask({0, setup, propose});
}

void LivePlan::clear() {
  ask({});
}

quint64 LivePlan::ask(Request request) {
  quint64 number = 0;
  {
    const std::lock_guard lock(m_mutex);
    request.number = number = ++m_latest;
    m_request = std::move(request);
  }
  m_asked.notify_one();
  if (const auto table = m_source->table()) {
    table->wake();
  }
  return number;
}

void LivePlan::setPaused(bool on) {
  m_source->setPaused(on);
}

void LivePlan::work() {
  while (const std::optional<Request> request = nextRequest()) {
    if (request->setup) {
      make(*request);
    } else {
      m_kept.reset();
      m_source->drop();
    }
  }
  m_source->drop();
}

std::optional<LivePlan::Request> LivePlan::nextRequest() {
  std::unique_lock lock(m_mutex);
  m_asked.wait(lock, [this] { return m_request.has_value(); });
  return m_isEnding ? std::nullopt : std::exchange(m_request, std::nullopt);
}

void LivePlan::make(const Request& request) {
  Planning planning(*this, request.number, *request.setup);
  const SplitSetup& setup = planning.setup();
  std::shared_ptr<WordTable> table;
  std::chrono::system_clock::time_point begin;
  if (!platform::isReadableFile(setup.fileName)) {
    planning.tell(Stage::Unreadable, problemOf(setup, GLYPHRUN_CANNOT_OPEN));
    return;
  }
  do {
    table = m_source->follow(setup);
    if (m_kept && m_kept->state.words != table) {
      m_kept.reset(); // its words are of no use any more
    }
    planning.setWords(table); // there is more to be done with them than to plan
    if (const QString contradiction = contradictionIn(setup); !contradiction.isEmpty()) {
      planning.tell(Stage::Done, contradiction);
      return;
    }
    if (!table) {
      planning.tell(Stage::WaitsForOcr,
                    QStringLiteral("%1: \"OCR First\" is on, and its words are not recognised yet; "
                                   "recognise them now to see the plan")
                        .arg(setup.fileName));
      return;
    }
    if (table->state() == WordTable::State::Opening) {
      planning.tell(Stage::Opening);
    }
    if (!table->waitUntilOpen([&] { return planning.isWanted(); })) {
      planning.tell(table->failure() == GLYPHRUN_WRONG_PASSWORD ? Stage::NeedsPassword
                                                                : Stage::Unreadable,
                    problemOf(setup, table->failure()));
      return;
    }
    if (isKept(request, *table)) {
      planning.tellAgain(m_kept->state);
      return;
    }
    begin = std::chrono::system_clock::now();
    planning.over(*table, *m_source);
    if (table->state() == WordTable::State::TooLarge) {
      planning.tell(Stage::TooLarge,
                    QStringLiteral("%1: has more words than are kept; plan it when the settings "
                                   "are as they should be")
                        .arg(setup.fileName));
      return;
    }
  } while (planning.isWanted() && m_source->isChanged());
  m_source->letCopyGo();
  planning.tell(Stage::Done);
  keep(*request.setup, planning.state(), begin);
  if (!planning.hasOutputs() && !splitTraitsOf(setup.pageExtract).fromBookmarks) {
    planning.findNearest(*table);
    planning.tell(Stage::Done);
  }
  if (planning.isWanted() &&
      (request.propose == Propose::Yes ||
       (request.propose == Propose::IfNothingIsFound && !planning.hasOutputs()))) {
    planning.propose(*table, *request.setup);
    planning.tell(Stage::Done);
  }
}

bool LivePlan::isKept(const Request& request, const WordTable& table) const {
  return m_kept && request.propose == Propose::No && m_kept->state.words.get() == &table &&
         m_kept->setup == *request.setup &&
         m_kept->folderStamp == platform::FileStamp::of(m_kept->folder);
}

/// A folder whose entries are the same has the same names taken. Where more than that decides about
/// names, the plan is made anew whenever it is asked for.
void LivePlan::keep(const SplitSetup& setup, const LivePlanState& state,
                    std::chrono::system_clock::time_point begin) {
  m_kept.reset();
  if (!isWanted(state.number) || !state.plan || state.plan->outputs.empty() ||
      state.plan->namesHoldTime || !setup.reportUseFileList.isEmpty() ||
      !folderToClear(setup).isEmpty()) {
    return;
  }
  const std::vector<PlannedOutput>& outputs = state.plan->outputs;
  const QString folder = platform::folderOf(outputs.front().path);
  const auto isElsewhere = [&](const PlannedOutput& output) {
    return platform::folderOf(output.path) != folder;
  };
  const std::optional<platform::FileStamp> stamp = platform::FileStamp::of(folder);
  if ((!stamp || stamp->isOlderThan(begin)) && std::ranges::none_of(outputs, isElsewhere)) {
    m_kept = Kept{setup, folder, stamp, state};
  }
}

} // namespace folivex
