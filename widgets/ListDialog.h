// ListDialog: a window around a list, with what is to be said about it below.
#pragma once

#include "widgets/CommandWords.h"
#include "widgets/Controls.h"

#include <QAction>
#include <QDialog>
#include <QMenu>

class QMenuBar;

namespace folivex {

class Dialogs;
class ListTable;

/// Menus; the table; a line that counts its rows; what the last command has to say, where no box is
/// called for; buttons.
class ListDialog : public QDialog {
protected:
  /// `dialogs` must outlive this. `name` is the object name.
  ListDialog(const char* name, const QString& title, Dialogs& dialogs, QWidget* parent);

  QMenu* addMenu(const QString& title);
  /// An entry that calls a function of the window.
  template <typename Window>
  QAction* addCommand(QMenu* menu, const char* name, const char* text, const char* toolTip,
                      void (Window::*command)()) {
    QAction* action = named(menu->addAction(QString::fromUtf8(text)), name, toolTip);
    connect(action, &QAction::triggered, static_cast<Window*>(this), command);
    return action;
  }

  /// `above` stands over the table; may be null.
  void layOut(QWidget* above, ListTable* table, std::initializer_list<Placed> buttons);
  /// Large enough for `rows` rows and all columns, and `beside` pixels more in width.
  void resizeToShow(const ListTable& table, int rows, int beside = 0);
  void tell(const CommandWords& words);

  Dialogs& m_dialogs;
  QLabel* m_countLine;

private:
  QMenuBar* m_menus;
  QLabel* m_notice;
};

} // namespace folivex
