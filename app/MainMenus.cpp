#include "app/MainMenus.h"

#include "widgets/Controls.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QMenuBar>

#include <array>

namespace folivex {

namespace {

enum class Menu { File, Edit, View, Run, Mail, Settings, Help };

struct CommandRow {
  Command command;
  Menu menu;
  const char* name; ///< object name of the action
  const char* text;
  const char* shortcut;
  const char* toolTip;
  bool separatorBefore = false;
};

// clang-format off
constexpr std::array commandRows = {
    CommandRow{Command::OpenPdf, Menu::File, "openPdf", "&Open PDF...", "Ctrl+O", "Choose the PDF to split"},
    CommandRow{Command::LoadSetup, Menu::File, "loadSetup", "&Load Setup...", "Ctrl+Shift+O", "Load the settings of a setup file", true},
    CommandRow{Command::SaveSetup, Menu::File, "saveSetup", "&Save Setup...", "Ctrl+S", "Save these settings to a setup file"},
    CommandRow{Command::Close, Menu::File, "close", "&Close", "Ctrl+Q", "Keep these settings for the next start, and end", true},
    CommandRow{Command::Undo, Menu::Edit, "undo", "&Undo", "Ctrl+Z", "Take back the last change of a setting"},
    CommandRow{Command::Redo, Menu::Edit, "redo", "&Redo", "Ctrl+Shift+Z", "Make the change again that was taken back"},
    CommandRow{Command::Find, Menu::Edit, "find", "&Find in Pages...", "Ctrl+F", "Look for words in the pages", true},
    CommandRow{Command::ViewPage, Menu::View, "viewPage", "&Go to Page", "F8", "Type the number of the page to see", true},
    CommandRow{Command::ArrangePanes, Menu::View, "arrangePanes", "&Arrange Panes Anew", "", "Put all panes where they were at the first start", true},
    CommandRow{Command::Process, Menu::Run, "process", "&Process", "F5", "Split the file now"},
    CommandRow{Command::ProcessList, Menu::Run, "processList", "Process &List", "Shift+F5", "Split every file of the prepared list"},
    CommandRow{Command::Stop, Menu::Run, "stopRun", "S&top", "", "End the run after the page that is being worked on"},
    CommandRow{Command::Show, Menu::Run, "show", "&Show Matches", "F6", "Walk through the matches, page by page; nothing is written", true},
    CommandRow{Command::Plan, Menu::Run, "plan", "Pla&n", "F7", "Make the list anew of what a split would write; nothing is written"},
    CommandRow{Command::ListPage, Menu::Run, "listPage", "List Pa&ge h,v", "", "List the words of the page with their positions as text"},
    CommandRow{Command::PrepareList, Menu::Run, "prepareList", "P&repare List", "Ctrl+L", "Prepare the list of files to split", true},
    CommandRow{Command::LoadEmailList, Menu::Mail, "loadEmailList", "Load &Email List...", "", "Load a list of addresses and files to send"},
    CommandRow{Command::EmailSettings, Menu::Mail, "openEmailSettings", "E-mail &settings...", "", "Server, message and address search"},
    CommandRow{Command::ReportOptions, Menu::Settings, "openReportOptions", "&Report and file options...", "", "Reports, list of names, gaps between words"},
    CommandRow{Command::OtherSettings, Menu::Settings, "openOtherSettings", "&Other settings...", "", "What is removed before a run and from names"},
    CommandRow{Command::SplitCommand, Menu::Settings, "openSplitCommand", "&Split command...", "", "Write outputs with another program"},
    CommandRow{Command::UpdateCheck, Menu::Settings, "updateCheck", "&Update check...", "", "Whether and how often to look for a newer version", true},
    CommandRow{Command::Help, Menu::Help, "openHelp", "&Help", "F1", "Help on what has the cursor"},
    CommandRow{Command::ProblemReport, Menu::Help, "problemReport", "&Problem report...", "", "Tell us what went wrong"},
    CommandRow{Command::About, Menu::Help, "about", "&About", "", "Version and licence", true},
};
// clang-format on

/// A window without libraries can be left and asked what is wrong.
bool needsNoLibrary(Command command) {
  switch (command) {
  case Command::Close:
  case Command::ArrangePanes:
  case Command::Help:
  case Command::ProblemReport:
  case Command::About:
    return true;
  default:
    return false;
  }
}

} // namespace

MainMenus::MainMenus(QMenuBar* bar, Theme theme)
    : m_recentSetups(new QMenu(QStringLiteral("Recent Set&ups"), bar)),
      m_recentPdfs(new QMenu(QStringLiteral("&Recent PDFs"), bar)), m_setup(new QMenu(bar)),
      m_themes(new QMenu(QStringLiteral("&Theme"), bar)) {
  m_recentSetups->setObjectName(QStringLiteral("recentSetups"));
  m_recentPdfs->setObjectName(QStringLiteral("recentPdfs"));
  addCommands(bar);
  for (const CommandRow& row : commandRows) {
    m_available[row.command] = true;
  }
  m_setup->addActions({action(Command::LoadSetup), action(Command::SaveSetup)});
  m_setup->addMenu(m_recentSetups);
  addThemes(m_themes, theme);
  update();
}

void MainMenus::addCommands(QMenuBar* bar) {
  std::map<Menu, QMenu*> menus = {
      {Menu::File, bar->addMenu(QStringLiteral("&File"))},
      {Menu::Edit, bar->addMenu(QStringLiteral("&Edit"))},
      {Menu::View, bar->addMenu(QStringLiteral("&View"))},
      {Menu::Run, bar->addMenu(QStringLiteral("&Run"))},
      {Menu::Mail, bar->addMenu(QStringLiteral("&Mail"))},
      {Menu::Settings, bar->addMenu(QStringLiteral("Se&ttings"))},
      {Menu::Help, bar->addMenu(QStringLiteral("&Help"))},
  };
  m_view = menus.at(Menu::View);
  for (const CommandRow& row : commandRows) {
    QMenu* menu = menus.at(row.menu);
    addBefore(row.command, menu);
    if (row.separatorBefore) {
      menu->addSeparator();
    }
    QAction* made = menu->addAction(QString::fromLatin1(row.text));
    named(made, row.name, row.toolTip);
    made->setShortcut(QKeySequence(QString::fromLatin1(row.shortcut)));
    made->setStatusTip(made->toolTip());
    QObject::connect(made, &QAction::triggered, made,
                     [this, command = row.command] { onCommand(command); });
    m_actions[row.command] = made;
  }
  for (const auto& [kind, menu] : menus) {
    menu->setToolTipsVisible(true);
  }
}

/// The menus within a menu.
void MainMenus::addBefore(Command command, QMenu* menu) {
  if (command == Command::LoadSetup) {
    menu->addMenu(m_recentPdfs);
  } else if (command == Command::Close) {
    menu->addMenu(m_recentSetups);
  } else if (command == Command::UpdateCheck) {
    menu->addMenu(m_themes);
  }
}

void MainMenus::addViews(const QList<QAction*>& toggles) {
  m_view->insertActions(m_view->actions().first(), toggles);
}

void MainMenus::addThemes(QMenu* menu, Theme theme) {
  struct Row {
    Theme theme;
    const char* text;
  };
  constexpr std::array themes = {Row{Theme::System, "&System"}, Row{Theme::Light, "&Light"},
                                 Row{Theme::Dark, "&Dark"}};
  auto* group = new QActionGroup(menu);
  for (const Row& row : themes) {
    QAction* choice = menu->addAction(QString::fromLatin1(row.text));
    choice->setObjectName(QStringLiteral("theme-") + themeName(row.theme));
    choice->setCheckable(true);
    choice->setChecked(row.theme == theme);
    group->addAction(choice);
    QObject::connect(choice, &QAction::triggered, choice,
                     [this, chosen = row.theme] { onTheme(chosen); });
  }
}

void MainMenus::setAvailable(Command command, bool available) {
  m_available[command] = available;
  update();
}

void MainMenus::setRunning(bool running) {
  m_isRunning = running;
  update();
}

void MainMenus::setReady() {
  m_isReady = true;
  update();
}

void MainMenus::update() {
  for (const auto& [command, made] : m_actions) {
    const bool isInTime = m_isRunning == (command == Command::Stop);
    made->setEnabled(m_available.at(command) && isInTime && (m_isReady || needsNoLibrary(command)));
  }
  const bool isFree = m_isReady && !m_isRunning;
  m_recentSetups->setEnabled(isFree && !m_recentSetups->isEmpty());
  m_recentPdfs->setEnabled(isFree && !m_recentPdfs->isEmpty());
  m_themes->setEnabled(!m_isRunning);
}

void MainMenus::setRecentSetups(const QStringList& paths) {
  fill(m_recentSetups, paths, [this](const QString& path) { onRecentSetup(path); });
  update();
}

void MainMenus::setRecentPdfs(const QStringList& paths) {
  fill(m_recentPdfs, paths, [this](const QString& path) { onRecentPdf(path); });
  update();
}

void MainMenus::fill(QMenu* menu, const QStringList& paths,
                     const std::function<void(const QString&)>& onChosen) {
  menu->clear();
  int number = 0;
  for (const QString& path : paths) {
    QString shown = path;
    shown.replace(u'&', QStringLiteral("&&"));
    QAction* entry = menu->addAction(QStringLiteral("&%1  %2").arg(++number).arg(shown));
    entry->setData(path);
    QObject::connect(entry, &QAction::triggered, entry, [onChosen, path] { onChosen(path); });
  }
}

} // namespace folivex
