#include "app/MainMenus.h"

#include "widgets/Controls.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

namespace folivex {

QMenu* MainMenus::add(const char* title, std::initializer_list<CommandRow> rows) {
  QMenu* menu = m_bar->addMenu(QString::fromLatin1(title));
  menu->setToolTipsVisible(true);
  for (const CommandRow& row : rows) {
    if ((row.traits & AfterLine) != 0) {
      menu->addSeparator();
    }
    const QString text = QString::fromLatin1(row.text);
    QAction* made = row.act ? menu->addAction(text) : menu->addMenu(text)->menuAction();
    if (row.act) {
      named(made, row.name, row.toolTip);
      made->setShortcut(QKeySequence(QString::fromLatin1(row.shortcut)));
      made->setStatusTip(made->toolTip());
      QObject::connect(made, &QAction::triggered, made, row.act);
    } else {
      made->menu()->setObjectName(QString::fromLatin1(row.name));
    }
    m_entries[row.name] = {made, row.traits};
  }
  update();
  return menu;
}

void MainMenus::setAvailable(const char* name, bool available) {
  m_entries[name].isAvailable = available;
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
  for (const Entry& entry : m_entries) {
    const bool isInTime = m_isRunning == ((entry.traits & WhileRunning) != 0);
    const bool isLoaded = m_isReady || (entry.traits & WithoutLibraries) != 0;
    entry.action->setEnabled(entry.isAvailable && isInTime && isLoaded);
  }
}

void MainMenus::fill(const char* name, const QStringList& paths,
                     const std::function<void(const QString&)>& onChosen) {
  QMenu* menu = action(name)->menu();
  menu->clear();
  for (const QString& path : paths) {
    QAction* entry = menu->addAction(QStringLiteral("&%1  %2")
                                         .arg(menu->actions().size() + 1)
                                         .arg(QString(path).replace(u'&', QStringLiteral("&&"))));
    QObject::connect(entry, &QAction::triggered, entry, [onChosen, path] { onChosen(path); });
  }
  setAvailable(name, !paths.isEmpty());
}

} // namespace folivex
