// PaneDocks: the panes around the page, as a person arranges them.
#pragma once

#include <QByteArray>
#include <QList>
#include <QSize>

class QAction;
class QDockWidget;
class QMainWindow;
class QWidget;

namespace folivex {

class WindowMemory;

/// Small pages left, rules right, the plan below. A pane can be moved, resized and put away, and
/// does not float. Where the window is too small for all of them side by side they are tabs of one
/// place. Each of both arrangements is remembered by itself.
class PaneDocks {
public:
  struct Panes {
    QWidget* pages;
    QWidget* rules;
    QWidget* plan;
  };
  /// The panes become children of docks of `window`. Both must outlive this.
  PaneDocks(QMainWindow& window, WindowMemory& memory, Panes panes);

  /// For each pane a command that puts it away and brings it back.
  QList<QAction*> toggles() const;
  /// Brings a pane to the front.
  void bringUp(QWidget* pane);

  /// The window has this size now: arranges the panes as they were when it was last as large.
  void fit(QSize window);
  /// As at the first start.
  void arrangeAnew();
  /// Remembers the arrangement for the next start.
  void keep() const;

private:
  enum class Kind { None, SideBySide, Tabs };

  QDockWidget* add(const char* name, const QString& text, QWidget* pane);
  QString keyOf(Kind kind) const;
  void arrangeSideBySide();
  void arrangeTabs();

  QMainWindow& m_window;
  WindowMemory& m_memory;
  QDockWidget* m_pages;
  QDockWidget* m_rules;
  QDockWidget* m_plan;
  Kind m_kind = Kind::None;
};

} // namespace folivex
