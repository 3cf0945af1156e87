#include "app/PlanFeed.h"

#include "platform/Paths.h"

namespace folivex {

namespace {

std::vector<PageBand> bandsOf(const SplitPlan& plan) {
  std::vector<PageBand> bands;
  bands.reserve(plan.outputs.size());
  for (const PlannedOutput& output : plan.outputs) {
    QString title = platform::fileTitle(output.path);
    if (title.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive)) {
      title.chop(4); // small pages have no room for what is the same at all of them
    }
    bands.push_back({output.firstPage, output.lastPage, title});
  }
  return bands;
}

} // namespace

PlanFeed::PlanFeed(Program& program)
    : m_live(program.livePlan([this](LivePlanState state) { take(std::move(state)); })) {}

void PlanFeed::plan(const SplitSetup& setup, LivePlan::Propose propose) {
  m_number = m_live->plan(setup, propose);
  m_isPending = true;
}

void PlanFeed::clear() {
  m_live->clear();
  m_number = 0;
  m_isPending = false;
}

void PlanFeed::setOrder(PlanRows::Order order) {
  const std::lock_guard lock(m_mutex);
  m_order = order;
}

bool PlanFeed::isFinal(LivePlanState::Stage stage) {
  return stage != LivePlanState::Stage::Opening && stage != LivePlanState::Stage::Reading;
}

/// On a thread of the plan's own.
void PlanFeed::take(LivePlanState state) {
  auto view = std::make_unique<PlanView>();
  PlanRows::Order order;
  {
    const std::lock_guard lock(m_mutex);
    order = m_order;
  }
  if (state.plan) {
    view->rows = std::make_unique<PlanRows>(state.plan, order);
    view->bands = bandsOf(*state.plan);
  }
  view->state = std::move(state);
  bool isFirst = false;
  {
    const std::lock_guard lock(m_mutex);
    isFirst = m_newest == nullptr;
    m_newest = std::move(view);
  }
  if (isFirst) {
    QMetaObject::invokeMethod(
        this, [this] { tell(); }, Qt::QueuedConnection);
  }
}

void PlanFeed::tell() {
  std::unique_ptr<PlanView> view;
  {
    const std::lock_guard lock(m_mutex);
    view = std::move(m_newest);
  }
  if (view != nullptr && view->state.number == m_number) {
    m_isPending = !isFinal(view->state.stage);
    onPlan(*view);
  }
}

} // namespace folivex
