#include "mail/windows/CEmailListDlg.h"

#include "mail/delivery/SendOutcome.h"
#include "mail/import/EmailImport.h"
#include "mail/windows/CChangeEmailDlg.h"
#include "mail/windows/CFindingsDlg.h"
#include "mail/windows/CMailWaitDlg.h"
#include "mail/windows/EmailTable.h"
#include "platform/Paths.h"
#include "widgets/Dialogs.h"

#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShowEvent>

#include <algorithm>
#include <numeric>

namespace folivex {

namespace {

constexpr int rowsAtFirst = 16;

QString caption() {
  return QStringLiteral("Email List to Send");
}

} // namespace

CEmailListDlg::CEmailListDlg(Dialogs& dialogs, QWidget* parent)
    : ListDialog("CEmailListDlg", caption(), dialogs, parent), m_commands(m_list), m_model(m_list),
      m_table(named(new EmailTable(m_model, this), "list",
                    "The e-mails; double-click one to change its address")) {
  m_table->setAccessibleName(QStringLiteral("E-mails to send"));
  m_table->onEdit = [this](std::size_t row) { editRow(row); };
  buildMenu();
  QWidget* filter = buildFilter();
  m_without = sideButton("withoutAddress", QStringLiteral("Outputs &without address..."),
                         QStringLiteral("Show the outputs of the run that are not in the list"),
                         this, [this] { showWithoutAddress(); });
  m_send = sideButton("send", QStringLiteral("&OK - Send"), QString(), this, [this] { accept(); });
  auto* cancel = sideButton("cancel", QStringLiteral("&Cancel"),
                            QStringLiteral("Close; nothing is sent"), this, [this] { reject(); });
  m_view = sideButton("view", QStringLiteral("&View"),
                      QStringLiteral("Open the file that was changed since it was written"), this,
                      [this] { viewFile(changedAmongSelected().front()); });
  m_accept = sideButton("acceptFile", QStringLiteral("&Accept as it is now"),
                        QStringLiteral("Send the file with what it holds now. Look at it first"),
                        this, [this] { acceptFiles(changedAmongSelected()); });
  layOut(filter, m_table, {m_without, m_view, m_accept, gap(), m_send, cancel});
  QWidget* before = m_filter;
  for (QWidget* next :
       std::initializer_list<QWidget*>{m_table, m_without, m_view, m_accept, m_send, cancel}) {
    setTabOrder(before, next);
    before = next;
  }
  m_looking.callOnTimeout([this] { lookAtNextFile(); });
  connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this] { updateCounts(); });
  connect(m_table, &QTableView::customContextMenuRequested, this, &CEmailListDlg::showContextMenu);
  updateControls();
  m_table->setFocus();
  // Beside the columns a scroll bar, and wider row numbers than those of no rows.
  resizeToShow(*m_table, rowsAtFirst, 2 * style()->pixelMetric(QStyle::PM_ScrollBarExtent));
}

CEmailListDlg::~CEmailListDlg() {
  hide();
  delete m_table; // before the model that it shows
}

void CEmailListDlg::buildMenu() {
  QMenu* file = addMenu(QStringLiteral("&File"));
  addCommand(file, "loadList", "&Load email list", "Show the rows of a list file in place of these",
             &CEmailListDlg::loadList)
      ->setShortcut(QKeySequence::Open);
  addCommand(file, "saveList", "&Save email list",
             "Write addresses, files and pages to the list file in use", &CEmailListDlg::saveList)
      ->setShortcut(QKeySequence::Save);
  addCommand(file, "saveListAs", "Save&As email list",
             "Write addresses, files and pages to a list file of your choice",
             &CEmailListDlg::saveListAs);
  file->addSeparator();
  addCommand(file, "importSheet", "&Import from spreadsheet...",
             "Show the rows of a spreadsheet in place of these; its columns have the headers of "
             "this list",
             &CEmailListDlg::importSheet);
  m_undo = addCommand(addMenu(QStringLiteral("&Edit")), "undo", "&Undo",
                      "Take the last change back: an address, or the rows that others came in "
                      "place of",
                      &CEmailListDlg::undo);
  m_undo->setShortcut(QKeySequence::Undo);
}

QWidget* CEmailListDlg::buildFilter() {
  m_filter = named(new QLineEdit(this), "filter",
                   "Shows the rows with this text in address, file, CC, invoice number or subject. "
                   "Rows that are hidden stay in the list.");
  m_filter->setClearButtonEnabled(true);
  m_filter->setPlaceholderText(QStringLiteral("Part of an address, a file name, a subject"));
  connect(m_filter, &QLineEdit::textChanged, this, [this](const QString& text) {
    m_table->setFilter(text.trimmed());
    updateControls();
  });
  return sideBySide(this, {labelFor(m_filter, QStringLiteral("Fi&lter:")), {m_filter, 1}});
}

void CEmailListDlg::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (m_loadsWhenShown && !event->spontaneous()) {
    m_loadsWhenShown = false;
    // Later: the chooser stands over a window that is there.
    QMetaObject::invokeMethod(
        this, [this] { m_pathToLoad.isEmpty() ? loadList() : load(m_pathToLoad); },
        Qt::QueuedConnection);
  }
}

/// Who comes back from another program may have stamped or signed the files there.
void CEmailListDlg::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
    lookAtFiles();
  }
}

void CEmailListDlg::lookAtFiles() {
  m_nextToLookAt = 0;
  m_looking.start(0);
}

void CEmailListDlg::lookAtNextFile() {
  if (m_nextToLookAt >= m_list.count()) {
    m_looking.stop();
    return;
  }
  const std::size_t row = m_nextToLookAt++;
  if (m_list.lookAtFile(row)) {
    m_model.rowChanged(row);
    updateControls();
  }
}

void CEmailListDlg::showRun(EmailList list, std::vector<AddressedOutput> withoutAddress) {
  m_withoutAddress = std::move(withoutAddress);
  replaceList([&] { m_list = std::move(list); });
  if (!m_withoutAddress.empty()) {
    tell({{},
          QStringLiteral("%1 of %2 outputs have no e-mail address on their pages and are not in "
                         "the list.")
              .arg(countWithCommas(m_withoutAddress.size()),
                   countWithCommas(m_withoutAddress.size() + m_list.count()))});
  }
}

void CEmailListDlg::keepOnly(const std::vector<std::size_t>& rows, const QString& notice) {
  m_undoSteps.clear(); // what went out does not come back
  replaceList([&] { m_list.reduceTo(rows); });
  tell({{}, notice});
}

void CEmailListDlg::replaceList(const std::function<void()>& change) {
  m_model.changeList(change);
  m_filter->clear();
  lookAtFiles();
  updateControls();
}

/// Others come in place of the rows.
void CEmailListDlg::replaceRows(const std::function<CommandWords()>& change) {
  if (!m_list.isEmpty()) {
    m_undoSteps.push_back(
        [this, list = m_list, state = m_commands.state(), without = m_withoutAddress] {
          m_withoutAddress = without;
          replaceList([&] { m_list = list; });
          m_commands.takeBack(state);
        });
  }
  m_withoutAddress.clear();
  CommandWords words;
  replaceList([&] { words = change(); });
  tell(words);
}

void CEmailListDlg::undo() {
  const std::function<void()> step = std::move(m_undoSteps.back());
  m_undoSteps.pop_back();
  tell({});
  step();
  updateControls();
}

void CEmailListDlg::updateControls() {
  m_undo->setEnabled(!m_undoSteps.empty());
  m_table->showOwnTexts(m_list.showsOwnTexts());
  m_table->showWhetherEmpty();
  m_without->setVisible(!m_withoutAddress.empty());
  const bool hasChanged =
      std::ranges::any_of(m_list.rows(), [](const EmailRow& row) { return row.entry.isChanged; });
  m_view->setVisible(hasChanged);
  m_accept->setVisible(hasChanged);
  const bool canSend = m_list.addressedCount() > 0;
  m_send->setEnabled(canSend);
  m_send->setToolTip(canSend ? QStringLiteral("Send the e-mails, in the order of their numbers; "
                                              "with rows selected you are asked which")
                             : QStringLiteral("There is no row with an address"));
  updateCounts();
}

void CEmailListDlg::updateCounts() {
  m_countLine->setText(
      EmailListCommands::countText(m_list, m_model.shownCount(), m_table->selectedCount()));
  const bool canAccept = !m_accept->isHidden() && !changedAmongSelected().empty();
  m_view->setEnabled(canAccept);
  m_accept->setEnabled(canAccept);
}

// The commands

void CEmailListDlg::loadList() {
  const QString path = m_dialogs.openFile(this, {QStringLiteral("Select lst file"),
                                                 QStringLiteral("List files (*.lst *.LST)"),
                                                 m_commands.startPath(), QStringLiteral("txt")});
  if (!path.isEmpty()) {
    load(path);
  }
}

void CEmailListDlg::load(const QString& path) {
  replaceRows([&] { return m_commands.load(path); });
}

void CEmailListDlg::saveList() {
  tell(m_commands.save());
}

void CEmailListDlg::saveListAs() {
  const QString path = m_dialogs.saveFile(this, {QStringLiteral("Save lst parameters file"),
                                                 QStringLiteral("List files (*.lst *.LST)"),
                                                 m_commands.startPath(), QStringLiteral("LST")});
  if (!path.isEmpty()) {
    tell(m_commands.saveAs(path));
  }
}

void CEmailListDlg::importSheet() {
  const QString path = m_dialogs.openFile(
      this, {QStringLiteral("Import from spreadsheet"),
             QStringLiteral("Spreadsheets (*.xlsx *.xls *.ods *.csv *.XLSX *.XLS *.ODS *.CSV)"),
             platform::folderOf(m_commands.startPath()),
             {}});
  if (path.isEmpty()) {
    return;
  }
  EmailImport sheet;
  bool isStopped = false;
  {
    CMailWaitDlg waiting(QStringLiteral("Import from spreadsheet"),
                         QStringLiteral("Reading %1").arg(path), this);
    sheet = importEmailList(path, [&waiting] {
      waiting.handlePendingEvents();
      return waiting.stopRequested();
    });
    isStopped = waiting.stopRequested();
  }
  if (isStopped && !sheet.done) {
    tell({{}, QStringLiteral("The import was stopped; the list is as it was.")});
  } else if (!sheet.done) {
    tell({sheet.problem, {}});
  } else if (wantsSheet(sheet, path)) {
    replaceRows([&] { return m_commands.take(sheet, path); });
  }
}

/// What is doubtful in a sheet is read before the list of before goes.
bool CEmailListDlg::wantsSheet(const EmailImport& sheet, const QString& path) {
  const QStringList findings = EmailListCommands::findingsOf(sheet);
  if (findings.isEmpty()) {
    return true;
  }
  CFindingsDlg reading({QStringLiteral("Import from spreadsheet"),
                        QStringLiteral("%1 in %2. Please look at these points first:")
                            .arg(mailCount(sheet.entries.size()), platform::fileTitle(path)),
                        QStringLiteral("&Take them into the list"),
                        "Show the imported rows in place of the list", QStringLiteral("&Cancel"),
                        !sheet.entries.empty()},
                       findings, this);
  return reading.exec() == Accepted;
}

void CEmailListDlg::editRow(std::size_t row) {
  const EmailRow before = m_list.rows()[row];
  const EmailListCommands::State state = m_commands.state();
  CChangeEmailDlg change(before.entry.address, before.entry.file, this);
  change.onTake = [&](const QString& text) { return m_commands.changeAddress(row, text); };
  if (change.exec() == Accepted) {
    m_undoSteps.push_back([this, row, before, state] {
      m_list.putBack(row, before);
      m_commands.takeBack(state);
      m_model.rowChanged(row);
    });
    m_model.rowChanged(row);
    updateControls();
  }
}

void CEmailListDlg::showWithoutAddress() {
  QStringList files;
  for (const AddressedOutput& output : m_withoutAddress) {
    files += output.file;
  }
  CFindingsDlg({QStringLiteral("Outputs without address"),
                QStringLiteral("No address was found on the pages of these files:"),
                {},
                "",
                QStringLiteral("&Close")},
               files, this)
      .exec();
}

void CEmailListDlg::showContextMenu(const QPoint& place) {
  const QModelIndex index = m_table->indexAt(place);
  if (!index.isValid()) {
    return;
  }
  const std::size_t row = m_model.listRow(index.row());
  QMenu menu(this);
  menu.setObjectName(QStringLiteral("contextMenu"));
  connect(menu.addAction(QStringLiteral("&Change Email...")), &QAction::triggered, this,
          [this, row] { editRow(row); });
  connect(menu.addAction(QStringLiteral("&Open file")), &QAction::triggered, this,
          [this, row] { viewFile(row); });
  if (m_list.rows()[row].entry.isChanged) {
    connect(menu.addAction(QStringLiteral("&Accept as it is now")), &QAction::triggered, this,
            [this, row] { acceptFiles({row}); });
  }
  menu.exec(m_table->viewport()->mapToGlobal(place));
}

void CEmailListDlg::viewFile(std::size_t row) {
  const QString file = m_list.rows()[row].entry.file;
  if (!m_dialogs.openOutside(file)) {
    m_dialogs.message(this, QStringLiteral("Unable to open file: ") + file);
  }
}

std::vector<std::size_t> CEmailListDlg::changedAmongSelected() const {
  std::vector<std::size_t> rows = m_table->selectedRows();
  std::erase_if(rows, [this](std::size_t row) { return !m_list.rows()[row].entry.isChanged; });
  std::ranges::sort(rows);
  return rows;
}

void CEmailListDlg::acceptFiles(std::vector<std::size_t> rows) {
  if (rows.size() > 1 &&
      !m_dialogs.question(this,
                          QStringLiteral("%1 files were changed since they were written. Send each "
                                         "with what it holds now?")
                              .arg(countWithCommas(rows.size())),
                          caption())) {
    return;
  }
  for (const std::size_t row : rows) {
    if (!m_list.acceptFile(row)) {
      m_dialogs.message(this,
                        QStringLiteral("Unable to open file: ") + m_list.rows()[row].entry.file);
    }
    m_model.rowChanged(row);
  }
  updateControls();
}

// What is sent

QString CEmailListDlg::listFile() const {
  return m_commands.listPath().isEmpty() ? m_list.sourcePath() : m_commands.listPath();
}

void CEmailListDlg::takeRows(std::vector<std::size_t> rows) {
  m_rowsToSend = std::move(rows);
  m_toSend = m_list;
  m_toSend.reduceTo(m_rowsToSend);
}

void CEmailListDlg::takeAll() {
  std::vector<std::size_t> rows(m_list.count());
  std::iota(rows.begin(), rows.end(), 0U);
  takeRows(std::move(rows));
}

/// The rows that are not selected are left out whole, and not only their addresses: no pause is
/// made for them, and nobody is told of thousands without an address.
bool CEmailListDlg::chooseRows() {
  std::vector<std::size_t> selected = m_table->selectedRows();
  const int chosen =
      selected.empty()
          ? 1
          : m_dialogs.choice(
                this, QStringLiteral("Send selected only?"), caption(),
                {QStringLiteral("&Send the %1 selected").arg(countWithCommas(selected.size())),
                 QStringLiteral("Send &all %1").arg(countWithCommas(m_list.count()))});
  if (chosen == Dialogs::noChoice) {
    return false;
  }
  if (chosen == 0) {
    std::ranges::sort(selected); // the view's order is not the sending order
    takeRows(std::move(selected));
    if (m_toSend.addressedCount() == 0) {
      m_dialogs.message(this, QStringLiteral("None of the selected rows has an address."));
      return false;
    }
    return true;
  }
  takeAll();
  const std::size_t hidden = m_list.count() - m_model.shownCount();
  return hidden == 0 ||
         m_dialogs.question(this,
                            QStringLiteral("The filter hides %1 of the %2 rows. Send them too?")
                                .arg(countWithCommas(hidden), countWithCommas(m_list.count())),
                            caption());
}

/// Asked once of a list: what a person wants sent is sent.
bool CEmailListDlg::wantsDoubtful() {
  const std::size_t unchecked =
      m_toSend.countOf([](const EmailEntry& entry) { return entry.isUnchecked; });
  const std::size_t mixed = m_toSend.countOf(
      [](const EmailEntry& entry) { return entry.addressesDiffer || entry.holdsEarlierPages; });
  QString doubts;
  if (unchecked > 0) {
    doubts += QStringLiteral("Of %1 nothing tells whether the files are still those that were "
                             "written, nor whether the e-mails went out before.\n\n")
                  .arg(mailCount(unchecked));
  }
  if (mixed > 0) {
    doubts += QStringLiteral("Files of %1 hold pages with different addresses, or of earlier runs: "
                             "somebody may get another one's pages. The column File names them."
                             "\n\n")
                  .arg(mailCount(mixed));
  }
  if (!doubts.isEmpty() &&
      m_dialogs.choice(this, doubts + QStringLiteral("Send with what the files hold now?"),
                       caption(), {QStringLiteral("&Send all the same")}) != 0) {
    return false;
  }
  for (const std::size_t row : m_rowsToSend) {
    m_list.acceptDoubts(row);
  }
  takeRows(m_rowsToSend);
  return true;
}

bool CEmailListDlg::chooseWhatToSend() {
  return chooseRows() && wantsDoubtful();
}

void CEmailListDlg::accept() {
  if (m_send->isEnabled() && chooseWhatToSend()) {
    QDialog::accept();
  }
}

void CEmailListDlg::reject() {
  if (m_commands.hasUnsavedWork() && isVisible() &&
      !m_dialogs.question(this,
                          QStringLiteral("The list was changed and is in no list file.\n\nClose it "
                                         "and lose the changes?"),
                          caption())) {
    return;
  }
  QDialog::reject();
}

} // namespace folivex
