// The plan that is made beside the window: the same as a run's, whatever came in between.
#include "engine/job/LivePlan.h"
#include "tests/support/RunBench.h"

#include <condition_variable>
#include <mutex>

using namespace folivex;
using namespace folivex::test;

namespace {

using Stage = LivePlanState::Stage;

class Live : public RunBench {
protected:
  Live() { statements({"Account: A", "more", "Account: B", "Account: C"}).write(source()); }

  /// Settings as they are now; waits for the last word on them.
  LivePlanState planned() {
    m_store.commit();
    return last(m_live.plan(m_store.working()));
  }

  LivePlanState last(quint64 number) {
    std::unique_lock lock(m_mutex);
    m_told.wait(lock, [&] {
      return m_state.number == number && m_state.stage != Stage::Opening &&
             m_state.stage != Stage::Reading;
    });
    return m_state;
  }

  std::mutex m_mutex;
  std::condition_variable m_told;
  LivePlanState m_state;
  LivePlan m_live{*RealLibraries::get().text, {}, [this](LivePlanState state) {
                    const std::lock_guard lock(m_mutex);
                    m_state = std::move(state);
                    m_told.notify_all();
                  }};
};

} // namespace

TEST_F(Live, IsThePlanOfARun) {
  const LivePlanState state = planned();
  EXPECT_EQ(state.stage, Stage::Done);
  EXPECT_EQ(state.pagesRead, 4);
  const SplitPlan plan = driver().Plan();
  EXPECT_EQ(state.plan->outputs, plan.outputs);
  EXPECT_EQ(state.plan->notes, plan.notes);
  EXPECT_EQ(state.plan->marks, plan.marks);
  EXPECT_EQ(plan.outputs.size(), 3U);
  EXPECT_EQ(plan.marks.size(), 6U); // where documents begin, and the words behind
}
