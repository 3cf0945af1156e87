// PlanPane: the table of what a split would make, before it makes it.
#pragma once

#include "app/viewer/PlanRows.h"
#include "widgets/OfferLine.h"

#include <QWidget>

#include <functional>

class QBoxLayout;
class QCheckBox;
class QLabel;
class QLineEdit;
class QModelIndex;
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
  /// How far the plan can be believed: of what moment, of how many pages. A stale one looks so.
  enum class Age { Current, Stale };
  void tellAge(const QString& text, Age age);
  /// What stands in the place of a table that has no rows.
  void setWhenEmpty(const QString& text);
  /// Above the table: what is wrong, or to be decided, and buttons for what to do about it.
  void offer(const QString& text, std::vector<OfferButton> offers = {});

  PlanRows::Order order() const;
  std::function<void()> onOrderChanged = [] {};

  std::function<void(int page)> onPageRequested = [](int) {}; ///< from 1: the first page of a row

protected:
  void resizeEvent(QResizeEvent* event) override;

private:
  class Model;

  void buildControls();
  QWidget* buildTable();
  QWidget* buildHead();
  void connectControls();
  void tellNotes(const QStringList& notes);
  bool areNamesCut() const;
  void fitColumns();
  void choose();
  void chooseAgain();
  void tellCounts();
  void requestPage(const QModelIndex& index);
  void exportRows();

  Dialogs& m_dialogs;
  QString m_source;
  QString m_whenEmpty;
  Model* m_model;
  int m_page = 0;            ///< with which the row begins that has the cursor; 0 for none
  bool m_isChanging = false; ///< rows change, and not by the person's choice

  QBoxLayout* m_head = nullptr;
  QLabel* m_summary = nullptr;
  QLabel* m_age = nullptr;
  OfferLine* m_offer = nullptr;
  QPlainTextEdit* m_notes = nullptr;
  QLineEdit* m_filter = nullptr;
  QCheckBox* m_warningsOnly = nullptr;
  QLabel* m_shown = nullptr;
  ListTable* m_table = nullptr;
  QPushButton* m_export = nullptr;
};

} // namespace folivex
