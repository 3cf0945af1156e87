// PlanRows: the rows of a planned split in the order and choice that a person wants to see.
#pragma once

#include "engine/job/SplitPlan.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace folivex {

enum class PlanColumn { Pages, Count, Text, Name, Folder, Note, Address };
inline constexpr int planColumnCount = 7;

QString planColumnTitle(PlanColumn column);

/// Rows count from 0 in the order shown. An output is a row's index in the plan. Made beside the
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
  const std::shared_ptr<const SplitPlan>& sharedPlan() const { return m_plan; }
  /// Where the pages go, in one line.
  const QString& summary() const { return m_summary; }

  int count() const { return static_cast<int>(m_shown.size()); }
  int total() const { return static_cast<int>(m_rows.size()); }
  int warningCount() const { return m_warningCount; }
  bool hasAddresses() const { return m_hasAddresses; }

  int output(int row) const { return m_shown[static_cast<std::size_t>(row)]; }
  const PlannedOutput& planned(int row) const {
    return m_plan->outputs[static_cast<std::size_t>(output(row))];
  }
  QString text(int row, PlanColumn column) const;

  /// Rows of equal content stay in the plan's order.
  void sort(Order order);
  /// Shows rows with this text in any column, capitals or not, and, if asked for, a warning.
  void choose(const QString& text, bool warningsOnly);

  /// The rows shown as a plan of their own, with the notes and the account of the whole.
  SplitPlan shownPlan() const;

private:
  struct Row {
    QString pages;
    QString name;
    QString folder;
    QString note;
    QString address;
  };

  const Row& of(int row) const { return m_rows[static_cast<std::size_t>(output(row))]; }
  int compare(int left, int right, PlanColumn column) const;
  void addNameClashes();
  void arrange();

  std::shared_ptr<const SplitPlan> m_plan;
  QString m_summary;
  std::vector<Row> m_rows; ///< by output
  std::vector<int> m_ordered;
  std::vector<int> m_shown;
  Order m_order;
  QString m_sought;
  bool m_warningsOnly = false;
  int m_warningCount = 0;
  bool m_hasAddresses = false;
};

} // namespace folivex
