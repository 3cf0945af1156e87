#include "batch/CBatchList.h"

#include "batch/BatchTable.h"
#include "batch/CScanning.h"
#include "platform/Paths.h"
#include "widgets/Dialogs.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>

#include <algorithm>

namespace folivex {

namespace {

constexpr int rowsAtFirst = 14;

QStringList localPaths(const QMimeData* data) {
  QStringList paths;
  for (const QUrl& url : data->urls()) {
    if (url.isLocalFile()) {
      paths += QDir::toNativeSeparators(url.toLocalFile());
    }
  }
  return paths;
}

} // namespace

CBatchList::CBatchList(Dialogs& dialogs, QWidget* parent)
    : ListDialog("CBatchList", QStringLiteral("Prepare batch list"), dialogs, parent),
      m_commands(m_rows), m_model(m_rows),
      m_table(named(new BatchTable(m_model, this), "list",
                    "The files, in the order in which they are processed; double-click one to use "
                    "it or leave it out")) {
  setAcceptDrops(true);
  m_table->setAccessibleName(QStringLiteral("Files of the batch"));
  buildMenus();
  m_process = sideButton("processList", QStringLiteral("&Process List"),
                         QStringLiteral("Run the current setup on every row in use"), this,
                         [this] { processList(); });
  m_clearAll = sideButton("clearAll", QStringLiteral("&Clear ALL"),
                          QStringLiteral("Take all rows off the list; the files stay"), this,
                          [this] { clearAll(); });
  auto* close =
      sideButton("close", QStringLiteral("&Close"), QStringLiteral("Close; the list is kept"), this,
                 [this] { closeList(); });
  layOut(nullptr, m_table, {m_process, gap(), m_clearAll, close});
  connectTable();
  updateControls();
  resizeToShow(*m_table, rowsAtFirst);
}

CBatchList::~CBatchList() = default;

void CBatchList::buildMenus() {
  QMenu* file = addMenu(QStringLiteral("&File"));
  m_editing = {addCommand(file, "addFiles", "Add PDF File(s) to List",
                          "Pick files to put at the end of the list", &CBatchList::addFiles),
               addCommand(file, "scan", "&Scan for files",
                          "Add all PDF files of a folder and the folders below it",
                          &CBatchList::scanForFiles),
               file->addSeparator(),
               addCommand(file, "loadList", "Load List",
                          "Empty the list, then fill it from a list file", &CBatchList::loadList),
               addCommand(file, "appendList", "Append List",
                          "Put the files of a list file at the end", &CBatchList::appendList)};
  addCommand(file, "saveList", "Save List", "Write the list to the list file in use",
             &CBatchList::saveList);
  addCommand(file, "saveListAs", "SaveAs List", "Write the list to a list file of your choice",
             &CBatchList::saveListAs);
  file->addSeparator();
  addCommand(file, "exit", "&Exit", "Close; the list is kept", &CBatchList::closeList);

  QMenu* action = addMenu(QStringLiteral("&Action"));
  m_editingSelected = {
      addCommand(action, "delete", "&Delete", "Take the selected rows off the list; the files stay",
                 &CBatchList::deleteSelected),
      addCommand(action, "moveUp", "Move &Up", "Process the first selected row one place earlier",
                 &CBatchList::moveUp),
      addCommand(action, "moveDown", "&Move Down", "Process the first selected row one place later",
                 &CBatchList::moveDown),
      addCommand(action, "toggle", "&Toggle use", "Use the selected rows, or leave them out",
                 &CBatchList::toggleSelected)};
  action->addSeparator();
  m_undo = addCommand(action, "undo", "U&ndo removal",
                      "Put the rows back that were taken off the list last. While no row is "
                      "selected Ctrl+Z does it, else it moves the row",
                      &CBatchList::undo);
  m_editingSelected[0]->setShortcut(Qt::Key_Delete);
  m_editingSelected[1]->setShortcut(Qt::CTRL | Qt::Key_A);
  m_editingSelected[2]->setShortcut(Qt::CTRL | Qt::Key_Z);
  // Space presses a button, too: only in the table does it mean this.
  QAction* toggle = m_editingSelected[3];
  toggle->setShortcut(Qt::Key_Space);
  toggle->setShortcutContext(Qt::WidgetShortcut);
  m_table->addAction(toggle);
}

void CBatchList::connectTable() {
  m_model.onChanged = [this] {
    tell({}); // what was said of the rows may be true no more
    updateControls();
  };
  m_model.onShowRow = [this](int row) { m_table->scrollToRow(row); };
  connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this] { updateControls(); });
  connect(m_table, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
    if (m_state == State::Editable) {
      m_rows.toggleUse({index.row(), index.row()});
    }
  });
  connect(m_table, &QTableView::customContextMenuRequested, this, &CBatchList::showContextMenu);
}

void CBatchList::showEvent(QShowEvent* event) {
  updateControls();
  QDialog::showEvent(event);
}

void CBatchList::setRunning(bool running) {
  setState(running ? State::Running : State::Editable);
}

void CBatchList::setState(State state) {
  m_state = state;
  updateControls();
}

void CBatchList::updateControls() {
  const bool editable = m_state == State::Editable;
  const bool selected = m_table->selectionModel()->hasSelection();
  for (QAction* action : m_editing) {
    action->setEnabled(editable);
  }
  for (QAction* action : m_editingSelected) {
    action->setEnabled(editable && selected);
  }
  m_undo->setEnabled(editable && m_rows.canBringBack());
  m_undo->setShortcut(selected ? QKeySequence(Qt::ALT | Qt::Key_Backspace)
                               : QKeySequence(QKeySequence::Undo));
  m_clearAll->setEnabled(editable && m_rows.count() > 0);
  m_process->setEnabled(editable && onProcessList && m_rows.inUse() > 0);
  m_countLine->setText(BatchCommands::countText(m_rows));
  m_table->showWhetherEmpty();
}

void CBatchList::showContextMenu(const QPoint& place) {
  // The same commands under the names that they have here.
  QMenu menu(this);
  menu.setObjectName(QStringLiteral("contextMenu"));
  const std::pair<QString, QAction*> entries[] = {
      {QStringLiteral("&Delete"), m_editingSelected[0]},
      {QStringLiteral("&Move Up"), m_editingSelected[1]},
      {QStringLiteral("&Move Down"), m_editingSelected[2]}};
  for (const auto& [text, command] : entries) {
    QAction* entry = menu.addAction(text);
    entry->setEnabled(command->isEnabled());
    connect(entry, &QAction::triggered, command, &QAction::trigger);
  }
  menu.exec(m_table->viewport()->mapToGlobal(place));
}

// The commands

FileRequest CBatchList::listRequest(const QString& title) const {
  return {title, QStringLiteral("List files (*.lst *.LST)"),
          platform::folderOf(m_commands.listPath()), QStringLiteral("LST")};
}

void CBatchList::addFiles() {
  m_commands.addFiles(m_dialogs.openFiles(
      this, {QStringLiteral("Add PDF File (Don't forget you can use drag and drop)"),
             QStringLiteral("PDF (*.pdf *.PDF)"), platform::folderOf(m_commands.lastFile()),
             QStringLiteral("PDF")}));
}

void CBatchList::scanForFiles() {
  tell({{}, QStringLiteral("Please choose your drive to load documents from...")});
  const QString chosen = m_dialogs.chooseFolder(
      this, QStringLiteral("Drive or Directory to load..."), m_commands.scanStart());
  tell({});
  if (chosen.isEmpty()) {
    return;
  }
  const QString folder = m_commands.chosenForScan(chosen);
  const ScanResult result = scan(folder);
  tell({QStringLiteral("Files Loaded"), BatchCommands::scanNotice({folder}, result)});
}

ScanResult CBatchList::scan(const QString& folder) {
  setState(State::Scanning);
  CScanning scanning(this);
  scanning.show();
  ScanResult result = FolderScan(m_rows, scanning).run(folder);
  setState(State::Editable);
  return result;
}

void CBatchList::loadList() {
  m_rows.clear();
  appendList();
}

void CBatchList::appendList() {
  const QString path = m_dialogs.openFile(this, listRequest(QStringLiteral("Open List File")));
  tell(path.isEmpty() ? CommandWords() : m_commands.append(path));
}

void CBatchList::saveList() {
  tell(m_commands.save());
}

void CBatchList::saveListAs() {
  const QString path = m_dialogs.saveFile(this, listRequest(QStringLiteral("Save List File")));
  tell(path.isEmpty() ? CommandWords() : m_commands.saveAs(path));
}

void CBatchList::closeList() {
  done(Accepted);
}

void CBatchList::done(int) {
  // A scan ends by its own Stop, and who started it still needs the list.
  if (m_state == State::Scanning) {
    return;
  }
  if (isVisible()) {
    tell(m_commands.putAway());
  }
  QDialog::done(Accepted);
}

void CBatchList::deleteSelected() {
  const int first = m_table->firstSelectedRow();
  m_rows.remove(m_table->selectedRows());
  m_table->goTo(std::min(first, m_rows.count() - 1));
}

void CBatchList::undo() {
  m_rows.bringBack();
}

void CBatchList::moveUp() {
  move(&BatchEntries::moveUp);
}

void CBatchList::moveDown() {
  move(&BatchEntries::moveDown);
}

void CBatchList::move(int (BatchEntries::*by)(int row)) {
  const int row = m_table->firstSelectedRow();
  m_table->clearSelection();
  if (const int now = (m_rows.*by)(row); now >= 0) {
    m_table->selectOnly(now);
  }
}

void CBatchList::toggleSelected() {
  for (const RowRange& range : m_table->selectedRows()) {
    m_rows.toggleUse(range);
  }
}

void CBatchList::clearAll() {
  m_rows.clear();
}

void CBatchList::processList() {
  tell({});
  if (onProcessList) {
    onProcessList();
  }
}

// Drag and drop

void CBatchList::dragEnterEvent(QDragEnterEvent* event) {
  if (m_state == State::Editable && !localPaths(event->mimeData()).isEmpty()) {
    event->acceptProposedAction();
  }
}

void CBatchList::dropEvent(QDropEvent* event) {
  if (m_state != State::Editable) {
    return;
  }
  event->acceptProposedAction();
  // Later: the window that was dragged from waits until this returns, and a scan takes its time.
  QMetaObject::invokeMethod(
      this, [this, paths = localPaths(event->mimeData())] { addDropped(paths); },
      Qt::QueuedConnection);
}

void CBatchList::addDropped(const QStringList& paths) {
  if (m_state != State::Editable) {
    tell({{}, QStringLiteral("The files were not added: the list is being worked on.")});
    return;
  }
  QStringList folders;
  ScanResult all;
  m_commands.addDropped(paths, [&](const QString& folder) {
    folders += folder;
    // Who stops the first of thirty folders does not want to stop the others one by one.
    if (!all.stopped) {
      all += scan(folder);
    }
  });
  tell({{}, folders.isEmpty() ? QString() : BatchCommands::scanNotice(folders, all)});
}

} // namespace folivex
