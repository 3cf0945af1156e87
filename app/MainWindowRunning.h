// MainWindow::Running: the window while a run is on.
#pragma once

#include "app/ActivityLine.h"
#include "app/MainWindow.h"

#include <QPointer>
#include <QPushButton>

namespace folivex {

class MainWindow::Running {
public:
  Running(MainWindow& window, const QString& title, int passes = 1)
      : m_window(window), m_focus(window.focusWidget()) {
    window.m_isRunning = true;
    window.m_eventPace.reset();
    window.m_rules->setEnabled(false);
    window.m_menus->setRunning(true);
    window.m_activity->begin(title, passes);
  }
  ~Running() {
    m_window.m_isRunning = false;
    m_window.m_activity->end();
    m_window.m_rules->setEnabled(true);
    m_window.m_menus->setRunning(false);
    giveBackKeyboard();
  }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

private:
  /// All that could have it was disabled while the run was on.
  void giveBackKeyboard() {
    QWidget* now = m_window.focusWidget();
    if (m_focus != nullptr && m_focus->isEnabled() &&
        (now == nullptr || !now->isEnabled() || now == m_window.m_activity->stopButton())) {
      m_focus->setFocus();
    }
  }

  MainWindow& m_window;
  QPointer<QWidget> m_focus; ///< when the run began
};

} // namespace folivex
