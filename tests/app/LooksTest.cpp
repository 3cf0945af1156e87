// What the eye and the keyboard meet.
#include "app/ActivityLine.h"
#include "tests/app/MainWindowBench.h"
#include "widgets/Controls.h"
#include "widgets/ElidedLabel.h"
#include "widgets/ListTable.h"
#include "widgets/Theme.h"

#include <QDockWidget>
#include <QHelpEvent>
#include <QPushButton>
#include <QScreen>
#include <QTextDocumentFragment>
#include <QToolButton>
#include <QToolTip>

namespace folivex::testing {
namespace {

class LooksTest : public MainWindowBench {
protected:
  ~LooksTest() override { applyTheme(Theme::System); }
};

TEST_F(LooksTest, EnterPressesTheButtonThatHasTheCursor) {
  open();
  m_dialogs.files = {{}};
  auto* button = control<QPushButton>(m_window.get(), "openPdfButton");
  button->setFocus();
  QTest::keyClick(button, Qt::Key_Return);
  EXPECT_EQ(m_dialogs.requests.size(), 1U);
}

/// The screen of the platform without a display has 800 x 800 window units.
TEST_F(LooksTest, TheWindowIsWithinItsScreenWhateverWasRemembered) {
  open();
  const QRect screen = m_window->screen()->availableGeometry();
  for (const QSize left : {QSize(3000, 2000), QSize(700, 500)}) {
    m_window->setMinimumSize({});
    m_window->resize(left);
    m_window->move(left.width() / 2, 600);
    m_window->close();
    open();
    EXPECT_TRUE(screen.contains(m_window->frameGeometry()))
        << m_window->frameGeometry().width() << 'x' << m_window->frameGeometry().height();
  }
}

TEST_F(LooksTest, PanesAreTabsWhereThereIsNoRoomAndEachArrangementIsRemembered) {
  open();
  const auto areTabs = [this] {
    auto* rules = control<QDockWidget>(m_window.get(), "rulesDock");
    return m_window->tabifiedDockWidgets(rules).contains(
        control<QDockWidget>(m_window.get(), "planDock"));
  };
  m_window->resize(1280, 900);
  EXPECT_FALSE(areTabs());
  auto* pages = control<QDockWidget>(m_window.get(), "pagesDock");
  EXPECT_TRUE(pages->isVisible());
  pages->close();
  m_window->resize(640, 450);
  EXPECT_TRUE(areTabs());
  EXPECT_TRUE(pages->titleBarWidget() != nullptr) << "the title stands in the tab";
  EXPECT_LE(m_window->width(), 700);
  EXPECT_LE(m_window->height(), 450);
  m_window->resize(1280, 900);
  EXPECT_TRUE(!areTabs() && !pages->isVisible());
  trigger("show-pagesDock");
  EXPECT_TRUE(pages->isVisible());
  pages->close();
  trigger("arrangePanes");
  EXPECT_TRUE(pages->isVisible());
}

TEST_F(LooksTest, HintsAndProblemsAreToldApart) {
  open();
  typeInto(m_window.get(), "FINDSTRING", QString());
  typeInto(m_window.get(), "STARTFROMPAGE", QStringLiteral("x"));
  m_window->process();
  for (const char* theme : {"theme-light", "theme-dark", "theme-light"}) {
    trigger(theme);
    for (const auto& [name, color] : {std::pair{"FINDSTRINGProblem", hintColor()},
                                      std::pair{"STARTFROMPAGEProblem", problemColor()}}) {
      auto* line = control<QLabel>(m_window.get(), name);
      EXPECT_TRUE(line->isVisible()) << name << theme;
      EXPECT_EQ(line->palette().color(QPalette::WindowText), color) << name << theme;
    }
    EXPECT_NE(problemColor(), hintColor());
  }
}

TEST_F(LooksTest, AButtonThatIsOnIsSeenInBothThemes) {
  for (const Theme theme : {Theme::Light, Theme::Dark}) {
    applyTheme(theme);
    QToolButton button;
    button.setCheckable(true);
    button.resize(60, 24);
    const auto ground = [&button](bool isOn) {
      button.setChecked(isOn);
      return button.grab().toImage().pixelColor(button.rect().center()).lightness();
    };
    EXPECT_GT(std::abs(ground(true) - ground(false)), 30) << themeName(theme).toStdString();
  }
}

TEST_F(LooksTest, NewsWaitAboveTheSettingsUntilTheyArePutAway) {
  open();
  auto* news = control<QWidget>(m_window.get(), "news");
  EXPECT_FALSE(news->isVisible());
  int asked = 0;
  QWidget* before = m_window->focusWidget();
  m_window->tellNews(QStringLiteral("Version <b>9</b> is available."), [&asked] { ++asked; });
  EXPECT_EQ(m_window->focusWidget(), before); // somebody may be typing
  m_window->process();                        // a run's own notes do not wipe it away
  EXPECT_TRUE(news->isVisible());
  for (const char* answer : {"newsLater", "news1"}) { // not now; more
    m_window->tellNews(QStringLiteral("Version <b>9</b> is available."), [&asked] { ++asked; });
    click(m_window.get(), answer);
    EXPECT_FALSE(news->isVisible());
  }
  EXPECT_EQ(asked, 1);
}

TEST_F(LooksTest, WhatWasToldLastIsKeptAcrossRunsAndBounded) {
  ActivityLine line(nullptr);
  line.remember(QStringLiteral("a box\n\nof two lines"));
  line.note(QStringLiteral("a finding"));
  line.begin(QStringLiteral("Processing"));
  EXPECT_EQ(line.lastTold(), QStringList({"a box", "of two lines", "a finding", "Processing"}));
  for (int i = 0; i < 1000; ++i) {
    line.note(QString::number(i));
  }
  EXPECT_EQ(line.lastTold().size(), 51);
  EXPECT_EQ(line.lastTold()[49], "999");
}

TEST_F(LooksTest, TextsThatAreCutTellTheRestAndAreNoMarkup) {
  const QString path = QStringLiteral("/a & b/<b>1</b>.pdf");
  EXPECT_EQ(QTextDocumentFragment::fromHtml(cellToolTip(path)).toPlainText(), path);
  ElidedLabel label;
  label.setText(path);
  EXPECT_EQ(label.textFormat(), Qt::PlainText);
  label.resize(20, 20);
  label.show();
  QHelpEvent pointed(QEvent::ToolTip, QPoint(1, 1), label.mapToGlobal(QPoint(1, 1)));
  QApplication::sendEvent(&label, &pointed);
  EXPECT_EQ(QTextDocumentFragment::fromHtml(QToolTip::text()).toPlainText(), path);
  QToolTip::hideText();
}

} // namespace
} // namespace folivex::testing
