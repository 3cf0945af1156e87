// EmailTable: the list view of the e-mail list.
#pragma once

#include "widgets/ListTable.h"

#include <functional>
#include <vector>

namespace folivex {

class EmailModel;

class EmailTable : public ListTable {
public:
  /// The model must outlive the table.
  EmailTable(EmailModel& model, QWidget* parent);

  /// Rows of the list that are selected, in no order.
  std::vector<std::size_t> selectedRows() const;
  std::size_t selectedCount() const;

  /// Filters what is seen. Selected rows stay selected as far as they are seen.
  void setFilter(const QString& text);

  /// Shows the columns 4 to 7 ("Body" to "Separate Invoices") or not.
  void showOwnTexts(bool shown);
  /// Beside ListTable's: says what hides the rows when a filter does.
  void showWhetherEmpty();

  /// A row is to be edited: double-click, F2 or Enter.
  std::function<void(std::size_t listRow)> onEdit;

protected:
  void keyPressEvent(QKeyEvent* event) override;

private:
  void editRow(const QModelIndex& index);
  void select(const std::vector<std::size_t>& listRows);

  EmailModel& m_model;
};

} // namespace folivex
