#include "app/viewer/PlanPane.h"

#include "engine/job/PlanPrinter.h"
#include "widgets/Controls.h"
#include "widgets/Dialogs.h"
#include "widgets/ElidedLabel.h"
#include "widgets/ListTable.h"
#include "widgets/TextExport.h"
#include "widgets/Theme.h"

#include <QAbstractTableModel>
#include <QBoxLayout>
#include <QCheckBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QResizeEvent>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace folivex {

namespace {

constexpr int air = 6;
constexpr int widest = 260; // column of the plan, in pixels

bool isNumeric(PlanColumn column) {
  return column == PlanColumn::Pages || column == PlanColumn::Count;
}

} // namespace

/// The columns are those of PlanColumn, in their order.
class PlanPane::Model : public QAbstractTableModel {
public:
  using QAbstractTableModel::QAbstractTableModel;

  const PlanRows& rows() const { return *m_rows; }
  /// A reset, since telling of each group of rows that moves or goes would cost a view far more.
  void change(const std::function<void(std::unique_ptr<PlanRows>& rows)>& change) {
    beginResetModel();
    change(m_rows);
    endResetModel();
  }
  /// Rows that may no longer be true are drawn fainter.
  void setStale(bool isStale) {
    if (std::exchange(m_isStale, isStale) != isStale) {
      emit dataChanged(index(0, 0), index(rowCount() - 1, planColumnCount - 1),
                       {Qt::ForegroundRole});
    }
  }

  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : m_rows->count();
  }
  int columnCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : planColumnCount;
  }
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  void sort(int column, Qt::SortOrder order) override {
    change([&](const auto& rows) {
      rows->sort({static_cast<PlanColumn>(column), order == Qt::DescendingOrder});
    });
  }

private:
  static QVariant alignment(PlanColumn column) {
    return QVariant(Qt::AlignVCenter | (isNumeric(column) ? Qt::AlignRight : Qt::AlignLeft));
  }

  std::unique_ptr<PlanRows> m_rows = std::make_unique<PlanRows>();
  bool m_isStale = false;
};

QVariant PlanPane::Model::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) {
    return {};
  }
  const auto column = static_cast<PlanColumn>(index.column());
  switch (role) {
  case Qt::DisplayRole:
    return m_rows->text(index.row(), column);
  case Qt::ToolTipRole:
    return cellToolTip(m_rows->text(index.row(), column));
  case Qt::TextAlignmentRole:
    return alignment(column);
  case Qt::ForegroundRole:
    if (column != PlanColumn::Note) {
      return m_isStale ? QVariant(hintColor()) : QVariant();
    }
    // A number at the name loses nothing.
    return QVariant(m_isStale || m_rows->planned(index.row()).fate == PlannedOutput::Fate::Renamed
                        ? hintColor()
                        : problemColor());
  default:
    return {};
  }
}

QVariant PlanPane::Model::headerData(int section, Qt::Orientation orientation, int role) const {
  static const QStringList titles = {"Pages",  "Count", "Matched",       "Output file",
                                     "Folder", "Note",  "E-mail address"};
  if (orientation == Qt::Horizontal && role == Qt::TextAlignmentRole) {
    return alignment(static_cast<PlanColumn>(section));
  }
  return orientation == Qt::Horizontal && role == Qt::DisplayRole ? titles.value(section)
                                                                  : QVariant();
}

PlanPane::PlanPane(Dialogs& dialogs, QWidget* parent)
    : QWidget(parent), m_dialogs(dialogs), m_model(new Model(this)) {
  setObjectName(QStringLiteral("planPane"));
  setProperty("helpTopic", QStringLiteral("plan"));
  buildControls();
  connectControls();
  setPlan(QString(), std::make_unique<PlanRows>());
}

void PlanPane::buildControls() {
  m_notes = named(new QPlainTextEdit(this), "planNotes", "What was found while the file was read");
  m_notes->setAccessibleName(QStringLiteral("Findings of the plan"));
  m_notes->setReadOnly(true);
  m_notes->setTabChangesFocus(true);
  m_offer = new OfferLine(QStringLiteral("planOffer"), this);
  QWidget* head = buildHead();
  stack(this, {head, m_offer, m_notes, {buildTable(), 1}});
  layout()->setContentsMargins(air, 2, air, 2);
  layout()->setSpacing(4);
}

QWidget* PlanPane::buildHead() {
  m_summary = named(new ElidedLabel(this), "planSummary");
  m_age = named(new QLabel(this), "planAge", "Which moment and which pages the plan is of");
  m_age->setTextFormat(Qt::PlainText);
  m_filter =
      named(new QLineEdit(this), "planFilter", "Show only rows with this text in any column");
  m_filter->setClearButtonEnabled(true);
  constexpr int filterWidth = 90;
  m_filter->setMinimumWidth(filterWidth);
  m_warningsOnly = named(new QCheckBox(this), "warningsOnly",
                         "Only rows whose file replaces or meets another one, or is given up");
  m_shown = named(new QLabel(this), "shownRows");
  m_export = sideButton("exportPlan", QStringLiteral("Export..."),
                        QStringLiteral("Write the rows shown, in the order shown, to a CSV file"),
                        this, [this] { exportRows(); });
  auto* head = new QWidget(this);
  m_head = new QBoxLayout(QBoxLayout::LeftToRight, head);
  m_head->setContentsMargins(0, 0, 0, 0);
  m_head->setSpacing(3 * air);
  m_head->addWidget(sideBySide(head, {{m_summary, 1}, m_age}), 1);
  m_head->addWidget(sideBySide(head, {labelFor(m_filter, QStringLiteral("Fi&lter:")),
                                      {m_filter, 1},
                                      m_shown,
                                      m_warningsOnly,
                                      m_export}));
  return head;
}

QWidget* PlanPane::buildTable() {
  m_table = named(new ListTable(*m_model, this), "planTable",
                  "Choose a row to see its first page; Enter goes to the page");
  m_table->setAccessibleName(QStringLiteral("Planned outputs"));
  m_table->setSelectionMode(QAbstractItemView::SingleSelection);
  m_table->setSortingEnabled(true);
  m_table->horizontalHeader()->setSortIndicator(0, Qt::AscendingOrder);
  m_table->horizontalHeader()->setStretchLastSection(true);
  // By the first rows; all of a long plan would take too long to measure.
  constexpr int rowsMeasured = 100;
  m_table->horizontalHeader()->setResizeContentsPrecision(rowsMeasured);
  m_table->verticalHeader()->hide();
  m_table->setMinimumHeight(m_table->horizontalHeader()->sizeHint().height() +
                            3 * m_table->verticalHeader()->defaultSectionSize());
  return m_table;
}

void PlanPane::connectControls() {
  connect(m_filter, &QLineEdit::textChanged, this, [this] { choose(); });
  connect(m_warningsOnly, &QCheckBox::toggled, this, [this] { choose(); });
  connect(m_table, &QTableView::activated, this, &PlanPane::requestPage);
  connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          &PlanPane::requestPage);
  connect(m_table->horizontalHeader(), &QHeaderView::sortIndicatorChanged, this, [this] {
    chooseAgain();
    onOrderChanged();
  });
}

PlanRows::Order PlanPane::order() const {
  const QHeaderView* header = m_table->horizontalHeader();
  return {static_cast<PlanColumn>(header->sortIndicatorSection()),
          header->sortIndicatorOrder() == Qt::DescendingOrder};
}

void PlanPane::setPlan(const QString& source, std::unique_ptr<PlanRows> rows) {
  const QScopedValueRollback changing(m_isChanging, true);
  const bool isAnother = source != m_source || m_model->rows().total() == 0;
  const int scrolled = m_table->verticalScrollBar()->value();
  m_source = source;
  const int warnings = rows->warningCount();
  m_warningsOnly->setText(QStringLiteral("%1 warnings").arg(warnings));
  m_warningsOnly->setEnabled(warnings > 0);
  if (warnings == 0) {
    m_warningsOnly->setChecked(false);
  }
  const bool hadAddresses = m_model->rows().hasAddresses();
  rows->choose(m_filter->text(), m_warningsOnly->isChecked());
  m_model->change([&rows](auto& shown) { shown = std::move(rows); });
  const PlanRows& shown = m_model->rows();
  m_table->setColumnHidden(static_cast<int>(PlanColumn::Address), !shown.hasAddresses());
  m_summary->setText(shown.total() == 0 ? QString() : shown.summary());
  tellNotes(textsOf(shown.plan().notes));
  tellCounts();
  if (isAnother) {
    m_page = 0;
  }
  if (isAnother || hadAddresses != shown.hasAddresses() || areNamesCut()) {
    fitColumns();
  }
  if (!isAnother) {
    m_table->verticalScrollBar()->setValue(scrolled);
    chooseAgain();
  }
}

/// The row that had the cursor gets it, without the table moving.
void PlanPane::chooseAgain() {
  const QScopedValueRollback changing(m_isChanging, true);
  const PlanRows& rows = m_model->rows();
  for (int row = 0; m_page > 0 && row < rows.count(); ++row) {
    if (rows.planned(row).firstPage == m_page) {
      m_table->selectionModel()->setCurrentIndex(
          m_model->index(row, 0), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
      return;
    }
  }
}

void PlanPane::tellAge(const QString& text, Age age) {
  m_age->setText(text);
  setTone(m_age, age == Age::Stale ? Tone::Hint : Tone::Plain);
  m_model->setStale(age == Age::Stale);
}

void PlanPane::setWhenEmpty(const QString& text) {
  m_whenEmpty = text;
  tellCounts();
}

void PlanPane::offer(const QString& text, std::vector<OfferButton> offers) {
  if (text.isEmpty()) {
    return m_offer->hide();
  }
  m_offer->offer(text, std::move(offers), Tone::Problem);
}

void PlanPane::tellNotes(const QStringList& notes) {
  m_notes->setPlainText(notes.join(QLatin1Char('\n')));
  m_notes->setVisible(!notes.isEmpty());
  constexpr qsizetype mostLines = 3;
  const auto lines = static_cast<int>(std::min(notes.size(), mostLines));
  m_notes->setFixedHeight(m_notes->fontMetrics().lineSpacing() * lines + 2 * air +
                          2 * m_notes->frameWidth());
}

void PlanPane::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  constexpr int oneLine = 760;
  m_head->setDirection(event->size().width() >= oneLine ? QBoxLayout::LeftToRight
                                                        : QBoxLayout::TopToBottom);
  if (event->oldSize().width() != event->size().width()) {
    fitColumns();
  }
}

/// Names grow while it is set what they are made of.
bool PlanPane::areNamesCut() const {
  constexpr auto names = static_cast<int>(PlanColumn::Name);
  return m_table->columnWidth(names) < std::min(m_table->sizeHintForColumn(names), widest);
}

void PlanPane::fitColumns() {
  constexpr int roomBeside = 12;
  const int last =
      static_cast<int>(m_model->rows().hasAddresses() ? PlanColumn::Address : PlanColumn::Note);
  int needed = m_table->verticalScrollBar()->sizeHint().width();
  for (int column = 0; column < last; ++column) { // the last takes the room that is left
    m_table->resizeColumnToContents(column);
    m_table->setColumnWidth(column, std::min(m_table->columnWidth(column) + roomBeside, widest));
    needed += m_table->columnWidth(column);
  }
  needed += std::max(std::min(m_table->sizeHintForColumn(last) + roomBeside, widest),
                     m_table->horizontalHeader()->sectionSizeHint(last));
  // The folder is the same in nearly every row: it gives way where there is too little room.
  constexpr auto folder = static_cast<int>(PlanColumn::Folder);
  constexpr int narrowest = 90;
  const int room = width() - 2 * air - 2 * m_table->frameWidth(); // the table may not have it yet
  const int excess = std::max(needed - room, 0);
  m_table->setColumnWidth(folder, std::max(m_table->columnWidth(folder) - excess, narrowest));
}

void PlanPane::choose() {
  m_model->change(
      [this](const auto& rows) { rows->choose(m_filter->text(), m_warningsOnly->isChecked()); });
  chooseAgain();
  tellCounts();
}

void PlanPane::tellCounts() {
  const PlanRows& rows = m_model->rows();
  m_shown->setText(rows.count() == rows.total()
                       ? QString()
                       : QStringLiteral("%1 of %2 outputs").arg(rows.count()).arg(rows.total()));
  m_export->setEnabled(rows.count() > 0);
  m_table->setWhenEmpty(rows.total() > 0 ? QStringLiteral("No row holds this text.") : m_whenEmpty);
  m_table->showWhetherEmpty();
}

void PlanPane::requestPage(const QModelIndex& index) {
  if (index.isValid() && !m_isChanging) {
    m_page = m_model->rows().planned(index.row()).firstPage;
    onPageRequested(m_page);
  }
}

void PlanPane::exportRows() {
  const QString path =
      m_dialogs.saveFile(window(), {QStringLiteral("Export the plan"),
                                    QStringLiteral("CSV files (*.csv);;All files (*)"),
                                    m_source + QStringLiteral("_plan.csv"), QStringLiteral("csv")});
  if (path.isEmpty()) {
    return;
  }
  const QString text = planText(m_model->rows().shownPlan(), PlanOutput::Csv);
  if (const QString problem = exportText(path, text); !problem.isEmpty()) {
    m_dialogs.message(window(), QStringLiteral("%1: cannot be written: %2").arg(path, problem));
  }
}

} // namespace folivex
