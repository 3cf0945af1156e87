#include "app/MainWindow.h"

#include "app/ActivityLine.h"
#include "app/EndPanel.h"
#include "app/dialogs/SettingDialogs.h"
#include "app/viewer/PagePane.h"
#include "app/viewer/PageStrip.h"
#include "app/viewer/PlanPane.h"
#include "engine/setup/SetupFields.h"
#include "mail/delivery/UnattendedDelivery.h"
#include "widgets/Controls.h"
#include "widgets/Dialogs.h"
#include "widgets/OfferLine.h"
#include "widgets/Theme.h"
#include "widgets/WindowMemory.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QDragEnterEvent>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QToolBar>
#include <QUrl>

namespace folivex {

namespace {

constexpr int eventMs = 15;

QString themeKey() {
  return QStringLiteral("theme");
}

bool isSetupFile(const QString& path) {
  return path.endsWith(QLatin1String(".fxs"), Qt::CaseInsensitive);
}

/// Those of the dropped files that the window takes.
QStringList takenFiles(const QMimeData* data) {
  QStringList paths;
  for (const QUrl& url : data->urls()) {
    const QString path = url.toLocalFile();
    if (isSetupFile(path) || path.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive)) {
      paths += QDir::toNativeSeparators(path);
    }
  }
  return paths;
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
    : m_dialogs(dialogs), m_memory(memory), m_recentSetups(memory, "setup"),
      m_recentPdfs(memory, "pdf"), m_program(*this), m_eventPace(eventMs), m_menus(menuBar()) {
  setObjectName(QStringLiteral("mainWindow"));
  setWindowTitle(QStringLiteral("Folivex"));
  setAcceptDrops(true);
  menuBar()->setObjectName(QStringLiteral("menus"));
  buildMenus();
  buildThemes();
  tellRecent();
  buildPanes();
  connectPanes();
  setParts({});
  constexpr QSize startSize(1280, 900);
  resizeOnScreen(this, startSize);
  m_memory.restore(this);
  m_docks->fit(size());
}

MainWindow::~MainWindow() {
  m_history.stack().disconnect(this); // it tells of its end, when the menus are gone
  m_feed.reset();
  m_docks.reset();
  // The panes use the libraries, which go before a window's children do.
  delete m_page;
  delete m_strip;
}

void MainWindow::buildPanes() {
  const auto addBar = [this](const char* name, const QString& title, Qt::ToolBarArea area,
                             QWidget* content) {
    auto* bar = named(new QToolBar(title, this), name);
    bar->setMovable(false);
    bar->toggleViewAction()->setVisible(false);
    bar->addWidget(content);
    addToolBar(area, bar);
  };
  addBar("toolBar", QStringLiteral("Commands"), Qt::TopToolBarArea, buildToolBar());
  m_strip = new PageStrip(this); // left of the page, for the Tab key as for the eye
  auto* middle = new QWidget(this);
  m_news = new OfferLine(QStringLiteral("news"), middle);
  m_page = new PagePane(middle);
  m_page->setProperty("helpTopic", QStringLiteral("viewer"));
  m_end = new EndPanel(middle);
  stack(middle, {m_news, m_end, {m_page, 1}});
  middle->layout()->setContentsMargins(0, 0, 0, 0);
  constexpr QSize leastPage(240, 160); // a part of a page, on a small screen beside the rules
  middle->setMinimumSize(leastPage);
  setCentralWidget(middle);

  m_rules = new RulesPane(m_dialogs, m_memory, this);
  m_plan = new PlanPane(m_dialogs, this);
  m_docks =
      std::make_unique<PaneDocks>(*this, m_memory, PaneDocks::Panes{m_strip, m_rules, m_plan});
  m_viewMenu->insertActions(m_viewMenu->actions().first(), m_docks->toggles());

  m_activity = new ActivityLine(this);
  followAction(m_activity->stopButton(), m_menus.action("stopRun"));
  // A status bar gives its width to nobody.
  addBar("foot", QStringLiteral("Activity"), Qt::BottomToolBarArea, m_activity);
}

QPushButton* MainWindow::commandButton(const char* command, const QString& text, const char* name) {
  QAction* action = m_menus.action(command);
  const QString key = action->shortcut().toString(QKeySequence::NativeText);
  QPushButton* button = sideButton(
      name, text,
      key.isEmpty() ? action->toolTip() : QStringLiteral("%1 (%2)").arg(action->toolTip(), key),
      this);
  followAction(button, action);
  return button;
}

QWidget* MainWindow::buildToolBar() {
  QPushButton* open = commandButton("openPdf", QStringLiteral("&Open PDF..."), "openPdfButton");
  m_setupButton = sideButton("setupButton", QStringLiteral("Setup"),
                             QStringLiteral("Load or save the settings as a whole"), this);
  auto* setups = new QMenu(m_setupButton);
  setups->addActions(
      {m_menus.action("loadSetup"), m_menus.action("saveSetup"), m_menus.action("recentSetups")});
  m_setupButton->setMenu(setups);
  QPushButton* suggest = commandButton("suggest", QStringLiteral("Suggest"), "suggestButton");
  m_processButton = commandButton("process", QStringLiteral("&Process"), "processButton");
  QFont bold = m_processButton->font();
  bold.setBold(true);
  m_processButton->setFont(bold);
  // Room for its text with a number: a tool bar does not follow a text that grows.
  constexpr int air = 4;
  m_processButton->setMinimumWidth(
      m_processButton->fontMetrics().horizontalAdvance(QStringLiteral("Process 100000 file(s)")) +
      4 * air);
  QWidget* bar = sideBySide(this, {open, m_setupButton, suggest, gap(), m_processButton});
  bar->layout()->setContentsMargins(air, air, air, air);
  return bar;
}

// clang-format off
void MainWindow::buildMenus() {
  m_menus.add("&File", {
      {"openPdf", "&Open PDF...", "Ctrl+O", "Choose the PDF to split", [this] { openPdf(); }},
      {"recentPdfs", "&Recent PDFs"},
      {"loadSetup", "&Load Setup...", "Ctrl+Shift+O", "Load the settings of a setup file", [this] { loadSetup(); }, AfterLine},
      {"saveSetup", "&Save Setup...", "Ctrl+S", "Save these settings to a setup file", [this] { saveSetup(); }},
      {"recentSetups", "Recent Set&ups"},
      {"close", "&Close", "Ctrl+Q", "Keep these settings for the next start, and end", [this] { close(); }, AfterLine | WithoutLibraries}});
  m_menus.add("&Edit", {
      {"undo", "&Undo", "Ctrl+Z", "Take back the last change of a setting", [this] { m_history.stack().undo(); }},
      {"redo", "&Redo", "Ctrl+Shift+Z", "Make the change again that was taken back", [this] { m_history.stack().redo(); }},
      {"find", "&Find in Pages...", "Ctrl+F", "Look for words in the pages", [this] { m_page->find(); }, AfterLine},
      {"findOnwards", "Find &Next", "F3", "Go to the next place that has them", [this] { m_page->findNext(1); }},
      {"findBackwards", "Find &Previous", "Shift+F3", "Go to the place before", [this] { m_page->findNext(-1); }}});
  m_viewMenu = m_menus.add("&View", {
      {"viewPage", "&Go to Page", "F8", "Type the number of the page to see", [this] { viewPage(); }, AfterLine},
      {"arrangePanes", "&Arrange Panes Anew", "", "Put all panes where they were at the first start", [this] { m_docks->arrangeAnew(); }, AfterLine | WithoutLibraries}});
  m_menus.add("&Run", {
      {"process", "&Process", "F5", "Split the file now", [this] { process(); }},
      {"processList", "Process &List", "Shift+F5", "Split every file of the prepared list", [this] { processList(); }},
      {"stopRun", "S&top", "", "End the run after the page that is being worked on", [this] { stop(); }, WhileRunning},
      {"suggest", "S&uggest", "F4", "Propose how this file splits into its documents; nothing is set before you look at it", [this] { suggest(); }, AfterLine},
      {"show", "&Show Matches", "F6", "Walk through the matches, page by page; nothing is written", [this] { showMatches(); }},
      {"plan", "Pla&n", "F7", "Make the list anew of what a split would write; nothing is written", [this] { plan(); }},
      {"listPage", "List Pa&ge h,v", "", "List the words of the page with their positions as text", [this] { listPage(); }},
      {"prepareList", "P&repare List", "Ctrl+L", "Prepare the list of files to split", [this] { m_parts.prepareList(); }, AfterLine}});
  m_menus.add("&Mail", {
      {"loadEmailList", "Load &Email List...", "", "Load a list of addresses and files to send", [this] { m_parts.loadEmailList(); }},
      {"openEmailSettings", "E-mail &settings...", "", "Server, message and address search", [this] { editIn<CEmailSettingsDlg>(); }}});
  m_menus.add("Se&ttings", {
      {"openReportOptions", "&Report and file options...", "", "Reports, list of names, gaps between words", [this] { editIn<CReportOptionsDlg>(); }},
      {"openOtherSettings", "&Other settings...", "", "What is removed before a run and from names", [this] { editIn<COtherSettingsDlg>(); }},
      {"openSplitCommand", "&Split command...", "", "Write outputs with another program", [this] { editIn<CConfigureDlg>(); }},
      {"themes", "&Theme", "", "", {}, WithoutLibraries},
      {"updateCheck", "&Update check...", "", "Whether and how often to look for a newer version", [this] { m_parts.updateCheck(); }, AfterLine}});
  m_menus.add("&Help", {
      {"openHelp", "&Help", "F1", "Help on what has the cursor", [this] { openHelp(); }, WithoutLibraries},
      {"problemReport", "&Problem report...", "", "Tell us what went wrong", [this] { m_parts.problemReport(); }, WithoutLibraries},
      {"about", "&About", "", "Version and licence", [this] { about(); }, AfterLine | WithoutLibraries}});
}
// clang-format on

void MainWindow::buildThemes() {
  const Theme now = themeOf(m_memory.text(themeKey()));
  QMenu* menu = m_menus.action("themes")->menu();
  auto* group = new QActionGroup(menu);
  for (const auto& [theme, text] :
       {std::pair{Theme::System, "&System"}, {Theme::Light, "&Light"}, {Theme::Dark, "&Dark"}}) {
    QAction* choice = group->addAction(QString::fromLatin1(text));
    choice->setObjectName(QStringLiteral("theme-") + themeName(theme));
    choice->setCheckable(true);
    choice->setChecked(theme == now);
    connect(choice, &QAction::triggered, this, [this, chosen = theme] {
      m_memory.setText(themeKey(), themeName(chosen));
      applyTheme(chosen);
    });
  }
  menu->addActions(group->actions());
}

void MainWindow::tellRecent() {
  m_menus.fill("recentSetups", m_recentSetups.paths(),
               [this](const QString& path) { loadSetupFile(path); });
  m_menus.fill("recentPdfs", m_recentPdfs.paths(), [this](const QString& path) { takePdf(path); });
}

void MainWindow::connectPanes() {
  m_page->onMeant = [this](Meaning meaning, const Picked& picked) {
    if (m_isRunning) {
      return;
    }
    SplitSetup setup = currentSetup();
    const QString told = takeMeaning(setup, meaning, picked);
    change(setup, QStringLiteral("Word of the Page"));
    m_page->tell(told);
  };
  m_page->onOpened = [this] { m_strip->showFile(m_page->file(), m_page->pageCount()); };
  m_page->onPageChanged = [this](int page) { m_strip->setCurrentPage(page); };
  m_strip->onPageChosen = [this](int page) { m_page->goToPage(page); };
  m_page->onOpenWanted = [this] { openPdf(); };
  m_page->onSampleWanted = [this] { openSample(); };
  m_page->onPassword = [this](const QString& password) {
    SplitSetup setup = currentSetup();
    setup.pdfPassword = password;
    change(setup, QStringLiteral("Password"));
  };
  m_rules->onDialogWanted = [this](RulesPart part) {
    static const std::map<RulesPart, const char*> commands = {
        {RulesPart::Mail, "openEmailSettings"},
        {RulesPart::Reports, "openReportOptions"},
        {RulesPart::Other, "openOtherSettings"},
        {RulesPart::Command, "openSplitCommand"}};
    m_menus.action(commands.at(part))->trigger();
  };
  m_rules->onEdited = [this](const RulesPane::Edit& edit) {
    m_end->giveWay(); // what comes now is another run
    m_history.push(edit.before, edit.after, edit.label, edit.field);
    takeSetup();
    settingsChanged();
  };
  m_history.onRestore = [this](const SplitSetup& setup) {
    m_end->giveWay();
    put(setup);
  };
  const auto tellSteps = [this] {
    m_menus.setAvailable("undo", m_history.stack().canUndo());
    m_menus.setAvailable("redo", m_history.stack().canRedo());
  };
  connect(&m_history.stack(), &QUndoStack::indexChanged, this, tellSteps);
  tellSteps();
  m_end->onOpen = [this](const QString& path) { openDocument(path); };
  m_end->onShowList = [this] {
    m_parts.waitingMails.show();
    tellWaitingMails();
  };
  m_end->onSendMails = [this] {
    m_parts.waitingMails.send();
    tellWaitingMails();
  };
  m_plan->onOrderChanged = [this] {
    if (m_feed) {
      m_feed->setOrder(m_plan->order());
    }
  };
  m_plan->onPageRequested = [this](int page) { m_page->goToPage(page); };
}

void MainWindow::setParts(WindowParts parts) {
  m_parts = std::move(parts);
  for (const auto& [command, isThere] : {std::pair{"processList", m_parts.batchRows != nullptr},
                                         {"prepareList", m_parts.prepareList != nullptr},
                                         {"loadEmailList", m_parts.loadEmailList != nullptr},
                                         {"updateCheck", m_parts.updateCheck != nullptr},
                                         {"openHelp", m_parts.openHelp != nullptr},
                                         {"problemReport", m_parts.problemReport != nullptr}}) {
    m_menus.setAvailable(command, isThere);
  }
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
  SplitSetup after = before;
  dialog.take(after);
  change(after, dialog.windowTitle());
}

void MainWindow::start(const CommandLine& line) {
  if (const QString missing = m_program.loadLibraries(); !missing.isEmpty()) {
    m_activity->setStatus(missing);
    message(missing);
    return;
  }
  m_page->setLibrary(m_program.textLibrary());
  m_strip->setLibrary(m_program.textLibrary());
  m_menus.setReady();
  m_activity->setStatus(QStringLiteral("Ready."));
  m_feed = std::make_unique<PlanFeed>(m_program);
  m_feed->onPlan = [this](PlanView& view) { showPlan(view); };
  m_program.loadDefaultSetup();
  refresh();
  if (line.argumentCount > 0) {
    runCommandLine(line);
  } else if (!line.opened.value(0).isEmpty()) {
    takeFromOutside(line.opened);
  }
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

void MainWindow::viewPage() {
  auto* field = m_page->findChild<QWidget*>(QStringLiteral("pageField"));
  (field != nullptr && field->isEnabled() ? field : m_page)->setFocus(Qt::ShortcutFocusReason);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!m_isRunning && m_program.isReady() && !takenFiles(event->mimeData()).isEmpty()) {
    event->acceptProposedAction();
  }
}

void MainWindow::dropEvent(QDropEvent* event) {
  const QStringList paths = takenFiles(event->mimeData());
  if (!m_isRunning && !paths.isEmpty()) {
    event->acceptProposedAction();
    takeFromOutside(paths);
  }
}

/// What a desktop hands over may come from anybody.
void MainWindow::takeFromOutside(const QStringList& paths) {
  const QString path = QFileInfo(paths.first()).absoluteFilePath();
  if (isSetupFile(path)) {
    loadSetupFile(path, LoadMode::Shown);
    return;
  }
  takePdf(path);
  if (paths.size() > 1) {
    m_activity->setStatus(QStringLiteral("One file is split at a time; for more there is Run, "
                                         "Prepare List."));
  }
}

void MainWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  if (m_docks) {
    m_docks->fit(event->size());
  }
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (m_isRunning) {
    event->ignore();
    if (m_dialogs.question(this, QStringLiteral("A run is on. Stop it?"),
                           QStringLiteral("Folivex"))) {
      stop();
    }
    return;
  }
  if (!mayLeaveSetup()) {
    event->ignore();
    return;
  }
  if (m_program.isReady()) {
    takeSetup();
    m_program.close();
  }
  m_memory.keep(this);
  m_docks->keep();
  event->accept();
  if (onClosed) {
    onClosed();
  }
}

} // namespace folivex
