// PlanFeed: the plan of the settings as it becomes known, in the window's event loop.
#pragma once

#include "app/Program.h"
#include "app/viewer/PageStrip.h"
#include "app/viewer/PlanRows.h"
#include "engine/job/LivePlan.h"

#include <QObject>

#include <mutex>

namespace folivex {

/// A moment of a plan, made ready for the panes beside the window's thread.
struct PlanView {
  LivePlanState state;
  std::unique_ptr<PlanRows> rows; ///< null when the state has no plan
  std::vector<PageBand> bands;
};

/// Lives in the window's thread. Of moments that come faster than the window takes them only the
/// newest is told.
class PlanFeed : public QObject {
public:
  /// `program` has its libraries, and outlives this.
  explicit PlanFeed(Program& program);

  /// Plans with these settings; what was asked for before is told no more.
  void plan(const SplitSetup& setup, LivePlan::Propose propose = LivePlan::Propose::No);
  /// There is no file.
  void clear();
  void setPaused(bool on) { m_live->setPaused(on); }
  /// The order of the rows of the plans to come.
  void setOrder(PlanRows::Order order);

  /// The newest settings have no plan yet that is final.
  bool isPending() const { return m_isPending; }
  static bool isFinal(LivePlanState::Stage stage);

  std::function<void(PlanView& view)> onPlan;

private:
  void take(LivePlanState state);
  void tell();

  quint64 m_number = 0; ///< of the newest settings
  bool m_isPending = false;
  std::mutex m_mutex; ///< guards what follows
  PlanRows::Order m_order;
  std::unique_ptr<PlanView> m_newest; ///< not told yet
  std::unique_ptr<LivePlan> m_live;   ///< ends first: its threads use all of the above
};

} // namespace folivex
