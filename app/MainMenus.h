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
  OpenPdf,
  LoadSetup,
  SaveSetup,
  Close,
  Undo,
  Redo,
  Find,
  ArrangePanes,
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
  void setRecentPdfs(const QStringList& paths);
  /// Entries of the menu View, above its own.
  void addViews(const QList<QAction*>& toggles);
  /// What concerns a setup as a whole, for a button to open.
  QMenu* setupMenu() const { return m_setup; }

  std::function<void(Command)> onCommand;
  std::function<void(const QString& path)> onRecentSetup;
  std::function<void(const QString& path)> onRecentPdf;
  std::function<void(Theme)> onTheme;

private:
  void addCommands(QMenuBar* bar);
  void addBefore(Command command, QMenu* menu);
  void addThemes(QMenu* menu, Theme theme);
  static void fill(QMenu* menu, const QStringList& paths,
                   const std::function<void(const QString&)>& onChosen);
  void update();

  std::map<Command, QAction*> m_actions;
  std::map<Command, bool> m_available;
  QMenu* m_recentSetups;
  QMenu* m_recentPdfs;
  QMenu* m_setup;
  QMenu* m_themes;
  QMenu* m_view = nullptr;
  bool m_isRunning = false;
  bool m_isReady = false;
};

} // namespace folivex
