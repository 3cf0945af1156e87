// What the eye and the keyboard meet.
#include "app/RunLine.h"
#include "tests/app/MainWindowBench.h"
#include "widgets/Controls.h"
#include "widgets/ElidedLabel.h"
#include "widgets/Foldout.h"
#include "widgets/ListTable.h"
#include "widgets/Theme.h"

#include <QHelpEvent>
#include <QPushButton>
#include <QScrollBar>
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
  auto* load = control<QPushButton>(m_window.get(), "loadSetupButton");
  load->setFocus();
  QTest::keyClick(load, Qt::Key_Return); // and not Process, which is the default
  EXPECT_EQ(m_dialogs.requests.size(), 1U);
}

TEST_F(LooksTest, TheWindowFitsASmallScreenAndScrollsOneWayOnly) {
  open();
  const QSize frame(10, 70); // title bar and the desktop's panel
  EXPECT_LE(m_window->sizeHint().width(), 1366 - frame.width());
  EXPECT_LE(m_window->sizeHint().height(), 768 - frame.height());
  auto* pane = control<QScrollArea>(m_window.get(), "rulesPane");
  for (auto* widget : pane->findChildren<QWidget*>()) {
    if (auto* foldout = dynamic_cast<Foldout*>(widget)) {
      foldout->setFolded(false);
    }
  }
  m_window->resize(m_window->minimumSizeHint().width(), 380);
  QApplication::processEvents();
  EXPECT_GE(pane->viewport()->width(), pane->widget()->minimumSizeHint().width());
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
  click(m_window.get(), "newsMore");
  EXPECT_EQ(asked, 1);
  click(m_window.get(), "newsLater");
  EXPECT_FALSE(news->isVisible());
}

TEST_F(LooksTest, WhatWasToldLastIsKeptAcrossRunsAndBounded) {
  RunLine line(nullptr);
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
