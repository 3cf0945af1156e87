// PlanCheck: holds a run to the plan that a person has seen.
#pragma once

#include "engine/base/Operator.h"
#include "engine/job/SplitPlan.h"
#include "engine/naming/OutputReservation.h"

#include <QSet>

namespace folivex {

/// Compares each output with its row of the plan, before it is written. The first one that differs
/// is asked about; who wants to go on is asked no more.
class PlanCheck {
public:
  /// All must outlive this.
  PlanCheck(const SplitPlan& plan, OutputPlaces& places, Operator& person)
      : m_plan(plan), m_places(places), m_person(person) {}

  /// Told of the outputs in their order. False when the run is to end before this one.
  bool allows(const ReservedOutput& output);

  /// Rows of the plan that no output came for; 0 when the person went on with something else.
  std::size_t missing() const;

private:
  QString difference(const ReservedOutput& output);

  const SplitPlan& m_plan;
  OutputPlaces& m_places;
  Operator& m_person;
  std::size_t m_row = 0;
  bool m_isAsked = false;
  QSet<QString> m_paths; ///< of the outputs before: a file there is this run's own
};

} // namespace folivex
