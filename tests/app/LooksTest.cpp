// What the eye and the keyboard meet: order, room, what looks switched off, what a small screen
// shows.
#include "app/RunLine.h"
#include "app/dialogs/CConfigureDlg.h"
#include "app/dialogs/CEmailSettingsDlg.h"
#include "tests/app/MainWindowBench.h"
#include "widgets/Controls.h"
#include "widgets/ElidedLabel.h"
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

  QScrollArea* panel() { return control<QScrollArea>(m_window.get(), "setupPanel"); }
  static QColor textColor(const QWidget* label) {
    return label->palette().color(QPalette::WindowText);
  }
};

TEST_F(LooksTest, TheTabKeyFollowsTheEye) {
  WindowParts parts;
  parts.viewPage = [](const SplitSetup&, int) {};
  open(parts);
  const char* const stops[] = {"FILENAME",      "browseSource", "USECURRENT",     "PDFPASSWORD",
                               "STARTFROMPAGE", "STARTENDPAGE", "OCRFIRST",       "ROTATED",
                               "FINDSTRING",    "IGNORECASE",   "viewPageButton", "PAGEEXTRACT"};
  control<QLineEdit>(m_window.get(), stops[0])->setFocus();
  for (const char* stop : stops) {
    ASSERT_NE(m_window->focusWidget(), nullptr) << stop;
    EXPECT_EQ(m_window->focusWidget()->objectName().toStdString(), stop);
    QTest::keyClick(m_window->focusWidget(), Qt::Key_Tab);
  }
}

TEST_F(LooksTest, EnterPressesTheButtonThatHasTheCursor) {
  open();
  m_dialogs.files = {{}};
  auto* load = control<QPushButton>(m_window.get(), "loadSetupButton");
  load->setFocus();
  QTest::keyClick(load, Qt::Key_Return); // and not Process, which is the default
  EXPECT_EQ(m_dialogs.requests.size(), 1U);

  CConfigureDlg dialog(m_dialogs);
  dialog.show();
  auto* cancel = control<QPushButton>(&dialog, "cancel");
  cancel->setFocus();
  QTest::keyClick(cancel, Qt::Key_Return);
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(dialog.result(), QDialog::Rejected);
}

TEST_F(LooksTest, ANarrowWindowScrollsOneWayOnly) {
  open();
  const auto isBeside = [&] {
    const auto left = [&](const char* group) {
      auto* box = control<QWidget>(m_window.get(), group);
      return box->mapTo(m_window.get(), QPoint()).x();
    };
    return left("namesGroup") > left("sourceGroup");
  };
  for (const int width : {660, 1100, 660}) {
    m_window->resize(width, 380);
    QApplication::processEvents();
    EXPECT_EQ(panel()->horizontalScrollBar()->maximum(), 0) << width;
    EXPECT_EQ(isBeside(), width == 1100);
  }
  CEmailSettingsDlg email(m_dialogs);
  email.resize(660, 300);
  email.show();
  EXPECT_EQ(email.findChild<QScrollArea*>()->horizontalScrollBar()->maximum(), 0);
  EXPECT_TRUE(email.rect().contains(control<QWidget>(&email, "ok")->geometry().bottomRight()));
}

TEST_F(LooksTest, HintsAndProblemsAreToldApart) {
  open();
  typeInto(m_window.get(), "FINDSTRING", QString());
  typeInto(m_window.get(), "STARTFROMPAGE", QStringLiteral("x"));
  m_window->process();
  auto* hint = control<QLabel>(m_window.get(), "FINDSTRINGProblem");
  auto* problem = control<QLabel>(m_window.get(), "STARTFROMPAGEProblem");
  for (const char* theme : {"theme-light", "theme-dark", "theme-light"}) {
    trigger(theme);
    ASSERT_TRUE(hint->isVisible() && problem->isVisible()) << theme;
    EXPECT_EQ(textColor(problem), problemColor());
    EXPECT_EQ(textColor(hint), hintColor());
    EXPECT_NE(problemColor(), hintColor());
  }
}

/// The middle of a button without its text, where only its ground is.
QColor groundOf(QToolButton& button, bool isOn) {
  button.setChecked(isOn);
  return button.grab().toImage().pixelColor(button.width() / 2, button.height() / 2);
}

TEST_F(LooksTest, AButtonThatIsOnIsSeenInBothThemes) {
  for (const Theme theme : {Theme::Light, Theme::Dark}) {
    applyTheme(theme);
    QToolButton button;
    button.setCheckable(true);
    button.resize(60, 24);
    const QColor on = groundOf(button, true);
    const QColor off = groundOf(button, false);
    const int apart = std::abs(on.red() - off.red()) + std::abs(on.green() - off.green()) +
                      std::abs(on.blue() - off.blue());
    EXPECT_GT(apart, 100) << themeName(theme).toStdString();
  }
}

TEST_F(LooksTest, NewsWaitAboveTheSettingsUntilTheyArePutAway) {
  open();
  auto* news = control<QWidget>(m_window.get(), "news");
  EXPECT_FALSE(news->isVisible());
  int asked = 0;
  QWidget* before = m_window->focusWidget();
  m_window->tellNews(QStringLiteral("Version <b>9</b> is available."), [&asked] { ++asked; });
  EXPECT_TRUE(news->isVisible());
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
  EXPECT_TRUE(cellToolTip({}).isEmpty());
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

TEST_F(LooksTest, AFirstSizeLeavesRoomForTheFrame) {
  QWidget window;
  resizeOnScreen(&window, QSize(100'000, 100'000));
  const QSize screen = window.screen()->availableSize();
  EXPECT_LT(window.width(), screen.width());
  EXPECT_LT(window.height(), screen.height());
  resizeOnScreen(&window, QSize(200, 100));
  EXPECT_EQ(window.size(), QSize(200, 100));
}

} // namespace
} // namespace folivex::testing
