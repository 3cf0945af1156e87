// PlanWindow: the table of what a split would make, before it makes it.
#pragma once

#include "app/viewer/PlanModel.h"

#include <QDialog>

#include <functional>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace folivex {

class Dialogs;
class ListTable;

class PlanWindow : public QDialog {
public:
  /// `dialogs` must outlive the window.
  explicit PlanWindow(Dialogs& dialogs, QWidget* parent = nullptr);

  /// `source` is the file that the plan is of.
  void setPlan(const QString& source, SplitPlan plan);

  std::function<void(int page)> onPageRequested; ///< from 1: the first page of a row
  std::function<void()> onProcess;               ///< the window is closed by then

protected:
  void showEvent(QShowEvent* event) override;

private:
  void buildControls();
  QWidget* buildTable();
  QWidget* buildFilterRow();
  QWidget* buildButtons();
  void connectControls();
  void tellPlan(const SplitPlan& plan);
  void fitColumns();
  void choose();
  void tellCounts();
  void requestPage(const QModelIndex& index);
  void exportRows();

  Dialogs& m_dialogs;
  QString m_source;
  PlanModel* m_model;

  QLabel* m_summary = nullptr;
  QPlainTextEdit* m_notes = nullptr;
  QLineEdit* m_filter = nullptr;
  QCheckBox* m_warningsOnly = nullptr;
  QLabel* m_shown = nullptr;
  ListTable* m_table = nullptr;
  QPushButton* m_showPage = nullptr;
  QPushButton* m_export = nullptr;
  QPushButton* m_process = nullptr;
};

} // namespace folivex
