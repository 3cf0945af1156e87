// MainMenus: the commands of the main window.
#pragma once

#include <QHash>
#include <QStringList>

#include <functional>
#include <initializer_list>

class QAction;
class QMenu;
class QMenuBar;

namespace folivex {

enum CommandTrait : unsigned {
  AfterLine = 1, ///< a line stands before it
  WithoutLibraries = 2,
  WhileRunning = 4 ///< and at no other time
};

struct CommandRow {
  const char* name; ///< object name of the action
  const char* text;
  const char* shortcut = "";
  const char* toolTip = "";
  std::function<void()> act = {}; ///< empty: a menu that somebody fills
  unsigned traits = 0;            ///< of CommandTrait
};

/// Commands are known by their names. Each can be used when it can be done.
class MainMenus {
public:
  explicit MainMenus(QMenuBar* bar) : m_bar(bar) {}

  QMenu* add(const char* title, std::initializer_list<CommandRow> rows);

  /// That of a menu for a row without a command.
  QAction* action(const char* name) const { return m_entries.value(name).action; }
  void setAvailable(const char* name, bool available);
  void setRunning(bool running);
  /// The libraries are loaded.
  void setReady();

  /// Gives a menu an entry for each path.
  void fill(const char* name, const QStringList& paths,
            const std::function<void(const QString&)>& onChosen);

private:
  struct Entry {
    QAction* action = nullptr;
    unsigned traits = 0;
    bool isAvailable = true;
  };
  void update();

  QMenuBar* m_bar;
  QHash<QByteArray, Entry> m_entries;
  bool m_isRunning = false;
  bool m_isReady = false;
};

} // namespace folivex
