#include "app/viewer/PlanWindow.h"

#include "app/PlanPrinter.h"
#include "widgets/Controls.h"
#include "widgets/Dialogs.h"
#include "widgets/ListTable.h"
#include "widgets/TextExport.h"
#include "widgets/Theme.h"

#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>

#include <algorithm>

namespace folivex {

PlanWindow::PlanWindow(Dialogs& dialogs, QWidget* parent)
    : QDialog(parent), m_dialogs(dialogs), m_model(new PlanModel(this)) {
  setObjectName(QStringLiteral("planWindow"));
  setWindowFlags(Qt::Window);
  setModal(false);
  buildControls();
  connectControls();
  setPlan(QString(), SplitPlan());
}

void PlanWindow::buildControls() {
  m_summary = named(new QLabel(this), "planSummary");
  m_summary->setTextFormat(Qt::PlainText);
  m_summary->setWordWrap(true);
  m_summary->setTextInteractionFlags(Qt::TextSelectableByMouse);
  m_notes = named(new QPlainTextEdit(this), "planNotes", "What was found while the file was read");
  m_notes->setAccessibleName(QStringLiteral("Findings"));
  m_notes->setReadOnly(true);
  m_notes->setTabChangesFocus(true);
  stack(this, {m_summary, m_notes, buildFilterRow(), {buildTable(), 1}, buildButtons()});
  constexpr QSize startSize(900, 620);
  resizeOnScreen(this, startSize);
}

QWidget* PlanWindow::buildFilterRow() {
  m_filter =
      named(new QLineEdit(this), "planFilter", "Show only rows with this text in any column");
  m_filter->setClearButtonEnabled(true);
  m_warningsOnly = named(new QCheckBox(this), "warningsOnly",
                         "Rows whose file replaces or meets another one, or is given up");
  m_shown = named(new QLabel(this), "shownRows");
  return sideBySide(
      this,
      {labelFor(m_filter, QStringLiteral("&Filter:")), {m_filter, 1}, m_warningsOnly, m_shown});
}

QWidget* PlanWindow::buildTable() {
  m_table = named(new ListTable(*m_model, this), "planTable",
                  "Double-click a row, or press Enter, to see its first page");
  m_table->setAccessibleName(QStringLiteral("Planned outputs"));
  m_table->setSelectionMode(QAbstractItemView::SingleSelection);
  m_table->setSortingEnabled(true);
  m_table->setWhenEmpty(QStringLiteral("Nothing would be written."));
  m_table->horizontalHeader()->setSortIndicator(0, Qt::AscendingOrder);
  m_table->horizontalHeader()->setStretchLastSection(true);
  m_table->verticalHeader()->hide();
  return m_table;
}

QWidget* PlanWindow::buildButtons() {
  m_showPage = sideButton("showPlanPage", QStringLiteral("&Show page"),
                          QStringLiteral("Show the first page of the row"), this,
                          [this] { requestPage(m_table->currentIndex()); });
  m_export = sideButton("exportPlan", QStringLiteral("&Export..."),
                        QStringLiteral("Write the rows shown, in the order shown, to a CSV file"),
                        this, [this] { exportRows(); });
  m_process = sideButton("processNow", QStringLiteral("&Process now"),
                         QStringLiteral("Close this window and make these files"), this, [this] {
                           accept();
                           if (onProcess) {
                             onProcess();
                           }
                         });
  QPushButton* close =
      sideButton("closePlan", QStringLiteral("&Close"),
                 QStringLiteral("Close this window; nothing is made"), this, [this] { reject(); });
  return sideBySide(this, {m_showPage, m_export, gap(), m_process, close});
}

void PlanWindow::connectControls() {
  connect(m_filter, &QLineEdit::textChanged, this, [this] { choose(); });
  connect(m_warningsOnly, &QCheckBox::toggled, this, [this] { choose(); });
  connect(m_table, &QTableView::activated, this, &PlanWindow::requestPage);
  connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& current) { m_showPage->setEnabled(current.isValid()); });
}

void PlanWindow::setPlan(const QString& source, SplitPlan plan) {
  m_source = source;
  setWindowTitle(QStringLiteral("%1 - Plan").arg(QFileInfo(source).fileName()));
  tellPlan(plan);
  const bool isPlanned = plan.problem.isEmpty() && !plan.outputs.empty();
  m_process->setEnabled(isPlanned);
  m_model->setPlan(std::move(plan));
  m_table->setColumnHidden(static_cast<int>(PlanColumn::Address), !m_model->rows().hasAddresses());
  const int warnings = m_model->rows().warningCount();
  m_warningsOnly->setText(QStringLiteral("Only rows with &warnings (%1)").arg(warnings));
  m_warningsOnly->setEnabled(warnings > 0);
  m_warningsOnly->setChecked(false);
  m_filter->clear();
  fitColumns();
  choose();
}

void PlanWindow::tellPlan(const SplitPlan& plan) {
  const bool hasProblem = !plan.problem.isEmpty();
  m_summary->setText(hasProblem
                         ? plan.problem
                         : m_source + QLatin1Char('\n') + plan.account.summary(plan.fileCount));
  setTone(m_summary, hasProblem ? Tone::Problem : Tone::Plain);
  m_notes->setPlainText(plan.notes.join(QLatin1Char('\n')));
  m_notes->setVisible(!plan.notes.isEmpty());
  constexpr qsizetype mostLines = 5;
  const auto lines = static_cast<int>(std::min(plan.notes.size(), mostLines));
  m_notes->setFixedHeight(m_notes->fontMetrics().lineSpacing() * (lines + 1) +
                          2 * m_notes->frameWidth());
}

void PlanWindow::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  layout()->activate();
  fitColumns(); // the table has its width only now
}

void PlanWindow::fitColumns() {
  // By the first rows; all of a long plan would take too long to measure.
  constexpr int rowsMeasured = 100;
  constexpr int widest = 260;
  constexpr int air = 4;
  m_table->horizontalHeader()->setResizeContentsPrecision(rowsMeasured);
  const int last =
      static_cast<int>(m_model->rows().hasAddresses() ? PlanColumn::Address : PlanColumn::Note);
  int needed = m_table->verticalScrollBar()->sizeHint().width();
  for (int column = 0; column < last; ++column) { // the last takes the room that is left
    m_table->resizeColumnToContents(column);
    m_table->setColumnWidth(column, std::min(m_table->columnWidth(column) + air, widest));
    needed += m_table->columnWidth(column);
  }
  needed += std::max(std::min(m_table->sizeHintForColumn(last) + air, widest),
                     m_table->horizontalHeader()->sectionSizeHint(last));
  // The folder is the same in nearly every row: it gives way where there is too little room.
  constexpr auto folder = static_cast<int>(PlanColumn::Folder);
  constexpr int narrowest = 90;
  const int excess = std::max(needed - m_table->viewport()->width(), 0);
  m_table->setColumnWidth(folder, std::max(m_table->columnWidth(folder) - excess, narrowest));
}

void PlanWindow::choose() {
  const QModelIndex current = m_table->currentIndex();
  const int output = current.isValid() ? m_model->rows().output(current.row()) : -1;
  m_model->choose(m_filter->text(), m_warningsOnly->isChecked());
  const PlanRows& rows = m_model->rows();
  for (int row = 0; output >= 0 && row < rows.count(); ++row) {
    if (rows.output(row) == output) {
      m_table->setCurrentIndex(m_model->index(row, 0));
      break;
    }
  }
  m_showPage->setEnabled(m_table->currentIndex().isValid());
  tellCounts();
}

void PlanWindow::tellCounts() {
  const PlanRows& rows = m_model->rows();
  m_shown->setText(QStringLiteral("%1 of %2 outputs").arg(rows.count()).arg(rows.total()));
  m_export->setEnabled(rows.count() > 0);
  m_table->setWhenEmpty(rows.total() > 0 ? QStringLiteral("No row holds this text.")
                                         : QStringLiteral("Nothing would be written."));
  m_table->showWhetherEmpty();
}

void PlanWindow::requestPage(const QModelIndex& index) {
  if (index.isValid() && onPageRequested) {
    onPageRequested(m_model->rows().planned(index.row()).firstPage);
  }
}

void PlanWindow::exportRows() {
  const QString path = m_dialogs.saveFile(
      this, {QStringLiteral("Export the plan"), QStringLiteral("CSV files (*.csv);;All files (*)"),
             m_source + QStringLiteral("_plan.csv"), QStringLiteral("csv")});
  if (path.isEmpty()) {
    return;
  }
  const QString text = planText(m_model->rows().shownPlan(), PlanOutput::Csv);
  if (const QString problem = exportText(path, text); !problem.isEmpty()) {
    m_dialogs.message(this, QStringLiteral("%1: cannot be written: %2").arg(path, problem));
  }
}

} // namespace folivex
