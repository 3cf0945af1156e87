// PlanRows: the rows of a planned split in the order and choice that a person wants to see.
#pragma once

#include "engine/job/SplitPlan.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <array>
#include <memory>
#include <vector>

namespace folivex {

enum class PlanColumn { Pages, Count, Text, Name, Folder, Note, Address };
inline constexpr int planColumnCount = 7;

/// Rows count from 0 in the order shown. Made beside the
/// window's thread, since a plan may have thousands of outputs, and handed over whole.
class PlanRows {
public:
  struct Order {
    PlanColumn column = PlanColumn::Pages;
    bool descending = false;
  };

  PlanRows() : PlanRows(std::make_shared<SplitPlan>(), {}) {}
  PlanRows(std::shared_ptr<const SplitPlan> plan, Order order);
  const SplitPlan& plan() const { return *m_plan; }
  /// Where the pages go, in one line.
  const QString& summary() const { return m_summary; }

  int count() const { return static_cast<int>(m_shown.size()); }
  int total() const { return static_cast<int>(m_fields.size()); }
  int warningCount() const { return m_warningCount; }
  bool hasAddresses() const { return m_hasAddresses; }

  const PlannedOutput& planned(int row) const { return m_plan->outputs[output(row)]; }
  const QString& text(int row, PlanColumn column) const { return field(output(row), column); }

  /// Rows of equal content stay in the plan's order.
  void sort(Order order);
  /// Shows rows with this text in any column, capitals or not, and, if asked for, a warning.
  void choose(const QString& text, bool warningsOnly);

  /// The rows shown as a plan of their own, with the notes and the account of the whole.
  SplitPlan shownPlan() const;

private:
  std::size_t output(int row) const { return m_shown[static_cast<std::size_t>(row)]; }
  const QString& field(std::size_t output, PlanColumn column) const {
    return m_fields[output][static_cast<std::size_t>(column)];
  }
  int compare(std::size_t left, std::size_t right) const;
  QSet<QString> nameClashes() const;

  std::shared_ptr<const SplitPlan> m_plan;
  QString m_summary;
  std::vector<std::array<QString, planColumnCount>> m_fields; ///< by output
  std::vector<std::size_t> m_ordered;                         ///< outputs
  std::vector<std::size_t> m_shown;
  Order m_order;
  QString m_sought;
  bool m_warningsOnly = false;
  int m_warningCount = 0;
  bool m_hasAddresses = false;
};

} // namespace folivex
