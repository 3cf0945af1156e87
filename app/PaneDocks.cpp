#include "app/PaneDocks.h"

#include "widgets/WindowMemory.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QMainWindow>

namespace folivex {

namespace {

/// Less than this has no room for all panes at once.
constexpr QSize leastSideBySide(980, 600);

} // namespace

PaneDocks::PaneDocks(QMainWindow& window, WindowMemory& memory, Panes panes)
    : m_window(window), m_memory(memory),
      m_pages(add("pagesDock", QStringLiteral("&Pages"), panes.pages)),
      m_rules(add("rulesDock", QStringLiteral("&Rules"), panes.rules)),
      m_plan(add("planDock", QStringLiteral("P&lan"), panes.plan)) {
  window.setDockOptions(QMainWindow::AllowTabbedDocks | QMainWindow::AllowNestedDocks);
  window.setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);
}

QDockWidget* PaneDocks::add(const char* name, const QString& text, QWidget* pane) {
  auto* dock = new QDockWidget(QString(text).remove(u'&'), &m_window);
  dock->setObjectName(QString::fromLatin1(name));
  dock->setFeatures(QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable);
  dock->setWidget(pane);
  dock->toggleViewAction()->setObjectName(QStringLiteral("show-") + dock->objectName());
  dock->toggleViewAction()->setText(text);
  dock->toggleViewAction()->setToolTip(QStringLiteral("Put this pane away or bring it back"));
  // A pane behind another one is nowhere to be seen.
  QObject::connect(qApp, &QApplication::focusChanged, dock,
                   [dock](const QWidget* /*before*/, const QWidget* now) {
                     if (now != nullptr && dock->isAncestorOf(now)) {
                       dock->raise();
                     }
                   });
  return dock;
}

QList<QAction*> PaneDocks::toggles() const {
  return {m_pages->toggleViewAction(), m_rules->toggleViewAction(), m_plan->toggleViewAction()};
}

void PaneDocks::bringUp(QWidget* pane) {
  for (QDockWidget* dock : {m_pages, m_rules, m_plan}) {
    if (dock->widget() == pane) {
      dock->show();
      dock->raise();
    }
  }
}

QString PaneDocks::keyOf(Kind kind) const {
  return kind == Kind::Tabs ? QStringLiteral("panes/tabs") : QStringLiteral("panes/sideBySide");
}

void PaneDocks::fit(QSize window) {
  const bool hasRoom =
      window.width() >= leastSideBySide.width() && window.height() >= leastSideBySide.height();
  const Kind kind = hasRoom ? Kind::SideBySide : Kind::Tabs;
  if (kind == m_kind) {
    return;
  }
  keep();
  m_kind = kind;
  for (QDockWidget* dock : {m_pages, m_rules, m_plan}) {
    // A tab has the title already.
    delete dock->titleBarWidget();
    dock->setTitleBarWidget(kind == Kind::Tabs ? new QWidget(dock) : nullptr);
  }
  const QByteArray kept = QByteArray::fromBase64(m_memory.text(keyOf(kind)).toLatin1());
  if (!m_window.restoreState(kept)) {
    arrangeAnew();
  }
}

void PaneDocks::arrangeAnew() {
  m_kind == Kind::Tabs ? arrangeTabs() : arrangeSideBySide();
}

void PaneDocks::arrangeSideBySide() {
  m_window.addDockWidget(Qt::LeftDockWidgetArea, m_pages);
  m_window.addDockWidget(Qt::RightDockWidgetArea, m_rules);
  m_window.addDockWidget(Qt::BottomDockWidgetArea, m_plan);
  for (QDockWidget* dock : {m_pages, m_rules, m_plan}) {
    dock->show();
  }
  constexpr int pagesWidth = 150;
  constexpr int rulesWidth = 400;
  m_window.resizeDocks({m_pages, m_rules}, {pagesWidth, rulesWidth}, Qt::Horizontal);
  m_window.resizeDocks({m_plan}, {m_window.height() * 3 / 10}, Qt::Vertical);
}

void PaneDocks::arrangeTabs() {
  m_window.addDockWidget(Qt::RightDockWidgetArea, m_rules);
  m_window.tabifyDockWidget(m_rules, m_plan);
  m_window.tabifyDockWidget(m_plan, m_pages);
  for (QDockWidget* dock : {m_pages, m_plan, m_rules}) {
    dock->show();
    dock->raise();
  }
  m_window.resizeDocks({m_rules}, {m_window.width() / 2}, Qt::Horizontal);
}

void PaneDocks::keep() const {
  if (m_kind != Kind::None) {
    m_memory.setText(keyOf(m_kind), QString::fromLatin1(m_window.saveState().toBase64()));
  }
}

} // namespace folivex
