#include "app/MainWindow.h"

#include "app/NewsLine.h"
#include "app/RunLine.h"
#include "app/Usage.h"
#include "app/dialogs/CConfigureDlg.h"
#include "app/dialogs/CEmailSettingsDlg.h"
#include "app/dialogs/COtherSettingsDlg.h"
#include "app/dialogs/CReportOptionsDlg.h"
#include "app/dialogs/CStatusDlg.h"
#include "engine/setup/SetupFields.h"
#include "platform/Paths.h"
#include "widgets/Controls.h"
#include "widgets/Dialogs.h"
#include "widgets/WindowMemory.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QLayout>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>

namespace folivex {

namespace {

constexpr int eventMs = 15;
constexpr int paintMs = 50;

QString setupFilter() {
  return QStringLiteral("Setup files (*.fxs);;All Files (*.*)");
}

QString themeKey() {
  return QStringLiteral("theme");
}

/// The first dropped file that the window takes; empty when there is none.
QString takenFile(const QMimeData* data) {
  for (const QUrl& url : data->urls()) {
    const QString path = url.toLocalFile();
    for (const char* ending : {".pdf", ".fxs"}) {
      if (path.endsWith(QLatin1String(ending), Qt::CaseInsensitive)) {
        return QDir::toNativeSeparators(path);
      }
    }
  }
  return {};
}

/// The button does what the command does, when that can be done.
void followAction(QPushButton* button, QAction* action) {
  const auto follow = [button, action] { button->setEnabled(action->isEnabled()); };
  QObject::connect(action, &QAction::changed, button, follow);
  QObject::connect(button, &QPushButton::clicked, action, &QAction::trigger);
  follow();
}

} // namespace

MainWindow::MainWindow(Dialogs& dialogs, WindowMemory& memory)
    : m_dialogs(dialogs), m_memory(memory), m_recent(memory), m_program(*this),
      m_eventPace(eventMs), m_paintPace(paintMs) {
  setObjectName(QStringLiteral("mainWindow"));
  setWindowTitle(QStringLiteral("Folivex"));
  setWindowFlag(Qt::WindowMinimizeButtonHint);
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  setAcceptDrops(true);
  buildControls();
  connectMenus();
  setParts({});
}

MainWindow::~MainWindow() = default;

void MainWindow::buildControls() {
  auto* bar = new QMenuBar(this);
  bar->setObjectName(QStringLiteral("menus"));
  m_menus = std::make_unique<MainMenus>(bar, themeOf(m_memory.text(themeKey())));
  m_panel = new RulesPane(m_dialogs, m_memory, this);
  m_news = new NewsLine(this);
  m_runLine = new RunLine(this);
  m_status = new CStatusDlg(this);
  m_status->onStop = [this] { stop(); };

  stack(this, {m_news, {m_panel, 1}, m_runLine, buildButtons()});
  layout()->setMenuBar(bar);
  resizeOnScreen(this, sizeHint());
  m_memory.restore(this);
}

QPushButton* MainWindow::commandButton(Command command, const QString& text, const char* name) {
  QAction* action = m_menus->action(command);
  const QString key = action->shortcut().toString(QKeySequence::NativeText);
  QPushButton* button = sideButton(
      name, text,
      key.isEmpty() ? action->toolTip() : QStringLiteral("%1 (%2)").arg(action->toolTip(), key),
      this);
  followAction(button, action);
  return button;
}

QWidget* MainWindow::buildButtons() {
  const auto button = [this](Command command, const char* text, const char* name) {
    return commandButton(command, QString::fromLatin1(text), name);
  };
  QPushButton* load = button(Command::LoadSetup, "&Load Setup", "loadSetupButton");
  QPushButton* save = button(Command::SaveSetup, "Save Setup", "saveSetupButton");
  QPushButton* stop = button(Command::Stop, "Stop", "stopButton");
  QPushButton* plan = button(Command::Plan, "Plan", "planButton");
  QPushButton* show = button(Command::Show, "&Show", "showButton");
  QPushButton* process = button(Command::Process, "&Process", "processButton");
  process->setDefault(true);
  QPushButton* close = button(Command::Close, "Close", "closeButton");
  return sideBySide(this, {load, save, gap(), stop, plan, show, process, close});
}

void MainWindow::connectMenus() {
  m_menus->onCommand = [this](Command chosen) { command(chosen); };
  m_panel->onDialogWanted = [this](RulesPart part) {
    static const std::map<RulesPart, Command> dialogs = {
        {RulesPart::Mail, Command::EmailSettings},
        {RulesPart::Reports, Command::ReportOptions},
        {RulesPart::Other, Command::OtherSettings},
        {RulesPart::Command, Command::SplitCommand}};
    command(dialogs.at(part));
  };
  m_menus->onRecentSetup = [this](const QString& path) { loadSetupFile(path); };
  m_menus->onTheme = [this](Theme theme) {
    m_memory.setText(themeKey(), themeName(theme));
    applyTheme(theme);
  };
  m_menus->setRecentSetups(m_recent.paths());
}

void MainWindow::setParts(WindowParts parts) {
  m_parts = std::move(parts);
  const std::initializer_list<std::pair<Command, bool>> available = {
      {Command::ProcessList, m_parts.batchRows != nullptr},
      {Command::PrepareList, m_parts.prepareList != nullptr},
      {Command::Show, m_parts.walkMatches != nullptr},
      {Command::Plan, m_parts.showPlan != nullptr},
      {Command::ViewPage, m_parts.viewPage != nullptr},
      {Command::LoadEmailList, m_parts.loadEmailList != nullptr},
      {Command::UpdateCheck, m_parts.updateCheck != nullptr},
      {Command::Help, m_parts.openHelp != nullptr},
      {Command::ProblemReport, m_parts.problemReport != nullptr}};
  for (const auto& [command, isThere] : available) {
    m_menus->setAvailable(command, isThere);
  }
}

void MainWindow::command(Command command) {
  static const std::map<Command, std::function<void(MainWindow&)>> commands = {
      {Command::LoadSetup, &MainWindow::loadSetup},
      {Command::SaveSetup, &MainWindow::saveSetup},
      {Command::Close, &MainWindow::reject},
      {Command::Process, &MainWindow::process},
      {Command::ProcessList, &MainWindow::processList},
      {Command::Stop, &MainWindow::stop},
      {Command::Show, &MainWindow::showMatches},
      {Command::Plan, &MainWindow::plan},
      {Command::ViewPage, &MainWindow::viewPage},
      {Command::ListPage, &MainWindow::listPage},
      {Command::PrepareList, [](MainWindow& window) { window.m_parts.prepareList(); }},
      {Command::LoadEmailList, [](MainWindow& window) { window.m_parts.loadEmailList(); }},
      {Command::UpdateCheck, [](MainWindow& window) { window.m_parts.updateCheck(); }},
      {Command::Help, &MainWindow::openHelp},
      {Command::ProblemReport, [](MainWindow& window) { window.m_parts.problemReport(); }},
      {Command::About, &MainWindow::about},
      {Command::ReportOptions, &MainWindow::editIn<CReportOptionsDlg>},
      {Command::OtherSettings, &MainWindow::editIn<COtherSettingsDlg>},
      {Command::SplitCommand, &MainWindow::editIn<CConfigureDlg>},
      {Command::EmailSettings, &MainWindow::editIn<CEmailSettingsDlg>},
  };
  commands.at(command)(*this);
}

template <typename Dialog> void MainWindow::editIn() {
  Dialog dialog(m_dialogs, this);
  if constexpr (std::is_same_v<Dialog, CEmailSettingsDlg>) {
    dialog.onSendTest = m_parts.sendTest;
  }
  editWith(dialog);
}

void MainWindow::editWith(SetupDialog& dialog) {
  const SplitSetup before = currentSetup();
  dialog.onHelp = m_parts.openHelp;
  dialog.setSetup(before);
  m_memory.restore(&dialog);
  const bool isAccepted = dialog.exec() == QDialog::Accepted;
  m_memory.keep(&dialog);
  if (!isAccepted) {
    return;
  }
  SetupStore& store = m_program.store();
  takeSetup();
  dialog.take(store.edited());
  // The report options live in the working copy alone; the other settings come there with the next
  // commit.
  SplitSetup working = store.working();
  dialog.take(working);
  const SplitSetup edited = store.edited();
  commitSetup(edited, working);
  store.working() = working;
  showSetup();
}

SplitSetup MainWindow::currentSetup() const {
  const SetupStore& store = m_program.store();
  SplitSetup edited = store.edited();
  m_panel->take(edited);
  SplitSetup setup = store.working();
  commitSetup(edited, setup);
  return setup;
}

void MainWindow::start(const CommandLine& line) {
  if (const QString missing = m_program.loadLibraries(); !missing.isEmpty()) {
    m_runLine->setStatus(missing);
    message(missing);
    return;
  }
  m_menus->setReady();
  m_runLine->setStatus(QStringLiteral("Ready."));
  m_program.loadDefaultSetup();
  showSetup();
  if (line.argumentCount > 0) {
    runCommandLine(line);
  }
}

void MainWindow::showSetup() {
  const SetupStore& store = m_program.store();
  SplitSetup setup = store.working();
  commitSetup(store.edited(), setup);
  m_panel->setSetup(setup);
  tellSetupFile();
}

void MainWindow::tellSetupFile() {
  const QString path = m_program.store().currentPath();
  const QString program = QStringLiteral("Folivex");
  setWindowTitle(
      path.isEmpty() ? program : QStringLiteral("%1 - %2").arg(platform::fileTitle(path), program));
}

void MainWindow::takeSetup() {
  m_panel->take(m_program.store().edited());
}

void MainWindow::tellResult(const SetupResult& result) {
  // A save that failed is told in the window's foot: no box, but not passed over either.
  const bool inBox = result.status != SetupStatus::NotWritten;
  if (!result.message.isEmpty()) {
    inBox ? message(result.message) : note(result.message);
  }
  if (!result.note.isEmpty()) {
    note(result.note);
  }
}

void MainWindow::keepUsed(const QString& path) {
  m_recent.used(path);
  m_menus->setRecentSetups(m_recent.paths());
  m_memory.setText(QStringLiteral("folders/setup"), platform::folderOf(path));
}

void MainWindow::loadSetup() {
  const QString path = m_dialogs.openFile(
      this, {QStringLiteral("Load fxs parameters file"), setupFilter(), setupStartPath(), {}});
  if (!path.isEmpty()) {
    loadSetupFile(path);
  }
}

QString MainWindow::setupStartPath() const {
  const QString current = m_program.store().currentPath();
  return current.isEmpty() ? m_memory.text(QStringLiteral("folders/setup")) : current;
}

void MainWindow::loadSetupFile(const QString& path) {
  m_runLine->clearNotes();
  if (m_program.loadSetup(path)) {
    keepUsed(path);
    m_runLine->setStatus(QStringLiteral("%1 loaded.").arg(path));
  } else {
    m_recent.gone(path);
    m_menus->setRecentSetups(m_recent.paths());
  }
  showSetup();
}

void MainWindow::saveSetup() {
  if (!m_panel->checkInput()) {
    return;
  }
  const QString path =
      m_dialogs.saveFile(this, {QStringLiteral("Save fxs parameters file"), setupFilter(),
                                setupStartPath(), QStringLiteral("fxs")});
  if (path.isEmpty()) {
    return;
  }
  m_runLine->clearNotes();
  takeSetup();
  const SetupResult saved = m_program.store().SaveSetup(path);
  tellResult(saved);
  if (saved.ok()) {
    keepUsed(path);
  }
  tellSetupFile();
}

QString MainWindow::takePickedWord(int target, const PickedPlace& place) {
  takeSetup();
  QString told = takePick(m_program.store().edited(), target, place);
  showSetup();
  return told;
}

QString MainWindow::takePickedRange(int target, const PickedArea& area) {
  takeSetup();
  QString told = takePick(m_program.store().edited(), target, area);
  showSetup();
  return told;
}

void MainWindow::openHelp() {
  QString topic = QStringLiteral("main-window");
  for (const QWidget* at = focusWidget(); at != nullptr; at = at->parentWidget()) {
    if (const QVariant own = at->property("helpTopic"); own.isValid()) {
      topic = own.toString();
      break;
    }
  }
  m_parts.openHelp(topic);
}

void MainWindow::about() {
  message(versionText() + QStringLiteral("\nSplits one large PDF into one PDF per document.\n"
                                         "Free software under the GNU Affero General Public "
                                         "License, version 3 or later."));
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!m_isRunning && m_program.isReady() && !takenFile(event->mimeData()).isEmpty()) {
    event->acceptProposedAction();
  }
}

void MainWindow::dropEvent(QDropEvent* event) {
  const QString path = takenFile(event->mimeData());
  if (m_isRunning || path.isEmpty()) {
    return;
  }
  event->acceptProposedAction();
  if (path.endsWith(QLatin1String(".fxs"), Qt::CaseInsensitive)) {
    loadSetupFile(path);
    return;
  }
  takeSetup();
  m_program.store().edited().fileName = path;
  m_program.store().edited().useCurrent = false;
  showSetup();
  m_runLine->setStatus(event->mimeData()->urls().size() > 1
                           ? QStringLiteral("One file is split at a time; for more there is Run, "
                                            "Prepare List.")
                           : QStringLiteral("%1 is the file to split.").arg(path));
}

void MainWindow::reject() {
  if (m_isRunning) {
    stop();
    return;
  }
  if (m_program.isReady()) {
    takeSetup();
    m_program.close();
  }
  m_memory.keep(this);
  QDialog::reject();
}

} // namespace folivex
