// PlanPane: the table of what a split would make, before it makes it.
#pragma once

#include "app/viewer/PlanModel.h"

#include <QWidget>

#include <functional>
#include <utility>

class QBoxLayout;
class QCheckBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace folivex {

class Dialogs;
class ListTable;

class PlanPane : public QWidget {
public:
  /// `dialogs` must outlive the pane.
  explicit PlanPane(Dialogs& dialogs, QWidget* parent = nullptr);

  /// `source` is the file that the plan is of. The row that has the cursor keeps it, as far as the
  /// new plan has it.
  void setPlan(const QString& source, std::unique_ptr<PlanRows> rows);
  /// The plan shown; its rows have no outputs while there is none.
  const PlanRows& rows() const { return m_model->rows(); }

  /// How far the plan can be believed: of what moment, of how many pages. A stale one looks so.
  enum class Age { Current, Stale };
  void tellAge(const QString& text, Age age);
  /// What stands in the place of a table that has no rows.
  void setWhenEmpty(const QString& text);
  /// Above the table: what is wrong, or to be decided, and buttons for what to do about it.
  using Offers = std::vector<std::pair<QString, std::function<void()>>>;
  void offer(const QString& text, Offers offers = {});

  PlanRows::Order order() const;
  std::function<void()> onOrderChanged;

  std::function<void(int page)> onPageRequested; ///< from 1: the first page of a row

protected:
  void resizeEvent(QResizeEvent* event) override;

private:
  void buildControls();
  QWidget* buildTable();
  QWidget* buildHead();
  void connectControls();
  void tellNotes(const QStringList& notes);
  void fitColumns();
  void choose();
  void selectPage(int page);
  void tellCounts();
  void requestPage(const QModelIndex& index);
  void exportRows();

  Dialogs& m_dialogs;
  QString m_source;
  QString m_whenEmpty;
  PlanModel* m_model;
  bool m_isChanging = false; ///< rows change, and not by the person's choice

  QBoxLayout* m_head = nullptr;
  QLabel* m_summary = nullptr;
  QLabel* m_age = nullptr;
  QWidget* m_offerRow = nullptr;
  QLabel* m_offerText = nullptr;
  QHBoxLayout* m_offerButtons = nullptr;
  QPlainTextEdit* m_notes = nullptr;
  QLineEdit* m_filter = nullptr;
  QCheckBox* m_warningsOnly = nullptr;
  QLabel* m_shown = nullptr;
  ListTable* m_table = nullptr;
  QPushButton* m_export = nullptr;
};

} // namespace folivex
