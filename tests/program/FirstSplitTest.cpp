// A first split with all the windows of the program, as somebody new to it does it.
#include "app/viewer/PageArea.h"
#include "app/viewer/PageViewer.h"
#include "app/viewer/PlanWindow.h"
#include "batch/CBatchList.h"
#include "tests/program/ProgramWindowsBench.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QTableView>

namespace folivex::testing {
namespace {

class FirstSplit : public ProgramWindowsBench {
protected:
  FirstSplit() {
    QFile::copy(QStringLiteral(FOLIVEX_SOURCE_DIR "/samples/statements.pdf"), at("statements.pdf"));
  }

  static PageCanvas& canvasOf(PageViewer* viewer) {
    return *control<PageArea>(viewer, "pageArea")->canvas();
  }
  static bool isDrawn(PageViewer* viewer) {
    return waitUntil([viewer] {
      return viewer->pageCount() > 0 && !canvasOf(viewer).page().image.isNull() &&
             canvasOf(viewer).page().page == viewer->page();
    });
  }

  QTableView* planTable() { return control<QTableView>(opened<PlanWindow>(), "planTable"); }

  /// One file for each of the sample's twelve accounts, and the person sees where they are.
  void expectTheSplit() {
    QStringList names = test::filesBelow(at("out"));
    ASSERT_EQ(names.size(), 12) << names.join(u' ').toStdString();
    EXPECT_EQ(names.filter(QStringLiteral(".pdf")).size(), names.size());
    ASSERT_EQ(m_dialogs.questions.size(), 1) << m_dialogs.messages.join(u'\n').toStdString();
    EXPECT_TRUE(m_dialogs.questions[0].startsWith(QStringLiteral("Done! - 12 PDF file(s) output")));
    ASSERT_EQ(m_dialogs.opened.size(), 1);
    EXPECT_TRUE(test::contentOf(m_dialogs.opened[0]).contains(names[0].toUtf8()));
  }
};

/// Chooses an entry of a list with the mouse.
void pick(QWidget* window, const char* name, int row) {
  auto* list = control<QComboBox>(window, name);
  list->showPopup();
  QAbstractItemView* view = list->view();
  ASSERT_TRUE(waitUntil([view] { return view->isVisible(); }));
  const QModelIndex index = list->model()->index(row, list->modelColumn());
  view->scrollTo(index);
  // A popup takes no click before the mouse was moved in it: the click that opened it is over.
  QTest::mouseMove(view->viewport(), view->visualRect(index).center());
  QTest::qWait(QApplication::doubleClickInterval());
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(index).center());
  EXPECT_EQ(list->currentIndex(), row);
}

} // namespace

TEST_F(FirstSplit, WithTheMouseAlone) {
  m_dialogs.files = {{at("statements.pdf")}, {at("out")}};
  click(&main(), "browseSource");
  click(&main(), "browseOutput");
  {
    const NextDialog page([](QDialog* dialog) { click(dialog, "ok"); });
    click(&main(), "viewPageButton");
  }
  auto* viewer = opened<PageViewer>();
  ASSERT_TRUE(isDrawn(viewer));
  const PageCanvas& canvas = canvasOf(viewer);
  for (const ViewedWord& word : canvas.page().words) {
    if (word.text == QStringLiteral("Account:")) {
      QTest::mouseClick(const_cast<PageCanvas*>(&canvas), Qt::LeftButton, {},
                        canvas.onCanvas(word.box).center().toPoint());
      break;
    }
  }
  EXPECT_EQ(control<QLineEdit>(&main(), "FINDSTRING")->text(), QStringLiteral("Account:"));
  pick(&main(), "EXTRACT", 1);

  click(&main(), "planButton");
  ASSERT_EQ(planTable()->model()->rowCount(), 12);
  EXPECT_TRUE(control<QLabel>(opened<PlanWindow>(), "planSummary")->text().contains("40 page"));
  EXPECT_FALSE(QFile::exists(at("out")));
  m_dialogs.answers = {true};
  click(opened<PlanWindow>(), "processNow");
  expectTheSplit();
}

TEST_F(FirstSplit, WithTheKeyboardAlone) {
  const auto press = [](QWidget* window, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    window->activateWindow();
    ASSERT_TRUE(waitUntil([window] { return window->isActiveWindow(); }));
    QWidget* focused = window->focusWidget();
    QTest::keyClick(focused != nullptr ? focused : window, key, modifiers);
  };
  const auto replace = [&](Qt::Key accelerator, const QString& text) {
    press(&main(), accelerator, Qt::AltModifier);
    press(&main(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(main().focusWidget(), text);
  };
  replace(Qt::Key_N, at("statements.pdf"));
  constexpr int stopsOfTab = 80;
  for (int i = 0; i < stopsOfTab && main().focusWidget()->objectName() != "OUTPUTDIR"; ++i) {
    press(&main(), Qt::Key_Tab);
  }
  press(&main(), Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(main().focusWidget(), at("out"));
  EXPECT_EQ(main().currentSetup().fileName, at("statements.pdf"));
  EXPECT_EQ(main().currentSetup().outputDir, at("out"));
  PageViewer* viewer = nullptr;
  {
    const NextDialog page([&](QDialog* dialog) { press(dialog, Qt::Key_Return); });
    press(&main(), Qt::Key_G, Qt::AltModifier);
    viewer = opened<PageViewer>();
  }
  ASSERT_TRUE(isDrawn(viewer));
  PageCanvas& canvas = canvasOf(viewer);
  canvas.setFocus();
  // The cursor walks from word to word; Return picks the one it is at.
  QTest::keyClick(&canvas, Qt::Key_Right);
  for (const ViewedWord& word : canvas.page().words) {
    if (word.text == QStringLiteral("Account:")) {
      break;
    }
    QTest::keyClick(&canvas, Qt::Key_Right);
  }
  QTest::keyClick(&canvas, Qt::Key_Return);
  EXPECT_EQ(control<QLineEdit>(&main(), "FINDSTRING")->text(), QStringLiteral("Account:"));
  press(viewer, Qt::Key_Escape);

  press(&main(), Qt::Key_C, Qt::AltModifier); // the list of names
  press(&main(), Qt::Key_Home);
  press(&main(), Qt::Key_Down);
  press(&main(), Qt::Key_F7);
  ASSERT_EQ(planTable()->model()->rowCount(), 12);
  press(opened<PlanWindow>(), Qt::Key_Escape);
  m_dialogs.answers = {true};
  press(&main(), Qt::Key_W, Qt::AltModifier);
  press(&main(), Qt::Key_Return);
  expectTheSplit();
}

/// The windows go in an order in which none misses another: with all of them open, and in a walk.
TEST_F(FirstSplit, EveryWindowOpensAndTheProgramEndsWithAllOfThem) {
  m_dialogs.files = {{at("statements.pdf")}};
  click(&main(), "browseSource");
  typeInto(&main(), "FINDSTRING", QStringLiteral("Account:"));
  for (const char* action : {"prepareList", "openHelp", "plan"}) {
    trigger(action);
  }
  EXPECT_NE(opened<CBatchList>(), nullptr);
  EXPECT_EQ(planTable()->model()->rowCount(), 12);
  QTimer next;
  int matches = 0;
  next.callOnTimeout([&] {
    auto* viewer = opened<PageViewer>();
    auto* button = control<QWidget>(viewer, ++matches < 3 ? "nextMatch" : "stopMatches");
    if (button->isEnabled()) {
      QTest::mouseClick(button, Qt::LeftButton);
    }
  });
  next.start(20);
  click(&main(), "showButton");
  next.stop();
  EXPECT_GE(matches, 3);
  EXPECT_TRUE(main().program().driver().state().matchesShown >= 1);
}

} // namespace folivex::testing
