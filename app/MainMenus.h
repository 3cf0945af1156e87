// MainMenus: the commands of the main window.
#pragma once

#include "widgets/Theme.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <map>

class QAction;
class QMenu;
class QMenuBar;

namespace folivex {

enum class Command {
  LoadSetup,
  SaveSetup,
  Close,
  Process,
  ProcessList,
  Show,
  Plan,
  ViewPage,
  ListPage,
  PrepareList,
  LoadEmailList,
  Stop,
  ReportOptions,
  OtherSettings,
  SplitCommand,
  EmailSettings,
  UpdateCheck,
  Help,
  ProblemReport,
  About
};

/// The actions and the menus that they stand in. A command that is not available is disabled; while
/// a run is on, all are but Stop; before the libraries are loaded, all that need them.
class MainMenus {
public:
  MainMenus(QMenuBar* bar, Theme theme);

  QAction* action(Command command) const { return m_actions.at(command); }
  void setAvailable(Command command, bool available);
  void setRunning(bool running);
  /// The libraries are loaded.
  void setReady();
  void setRecentSetups(const QStringList& paths);

  std::function<void(Command)> onCommand;
  std::function<void(const QString& path)> onRecentSetup;
  std::function<void(Theme)> onTheme;

private:
  void addCommands(QMenuBar* bar);
  void addThemes(QMenu* menu, Theme theme);
  void update();

  std::map<Command, QAction*> m_actions;
  std::map<Command, bool> m_available;
  QMenu* m_recent;
  QMenu* m_themes;
  bool m_isRunning = false;
  bool m_isReady = false;
};

} // namespace folivex
