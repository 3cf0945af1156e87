// The dialog, through its menus, keys, mouse and drops.
#include "tests/batch/ListWindow.h"
#include "tests/support/RecordingOperator.h"

#include <QAbstractItemModelTester>
#include <QMenu>

using namespace folivex;
using namespace folivex::testing;

namespace {

class BatchListDialog : public ListWindow {
  QAbstractItemModelTester m_tester{table()->model(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal};
};

} // namespace

TEST_F(BatchListDialog, PickedFilesAreAppended) {
  EXPECT_TRUE(control<QWidget>(&m_list, "whenEmpty")->isVisible());
  m_dialogs.files = {{"/in/a.pdf", "/in/b.pdf"}, {"/in/a.pdf"}, {}};
  for (int i = 0; i < 3; ++i) {
    choose("addFiles");
  }
  EXPECT_EQ(shown(),
            (QStringList{"Yes|/in/a.pdf|Ready.", "Yes|/in/b.pdf|Ready.", "Yes|/in/a.pdf|Ready."}));
  EXPECT_EQ(m_dialogs.requests[2].startPath, "/in");
  EXPECT_EQ(label("countLine"), "3 files, 3 in use.");
  EXPECT_FALSE(control<QWidget>(&m_list, "whenEmpty")->isVisible());
  EXPECT_FALSE(drop({}));
}

TEST_F(BatchListDialog, ListFiles) {
  write("a.lst", "x.pdf||\n~y.pdf||\n");
  m_dialogs.files = {{at("a.lst")}, {at("a.lst")}, {at("b.lst")}, {at("gone.lst")}, {}};
  choose("loadList");
  choose("appendList");
  choose("saveListAs");
  EXPECT_EQ(read("b.lst"), "x.pdf||\n~y.pdf||\nx.pdf||\n~y.pdf||\n");
  choose("appendList");
  EXPECT_TRUE(control<QLabel>(&m_list, "notice")->isVisible());
  choose("saveList");
  EXPECT_EQ(m_dialogs.messages,
            (QStringList{"List saved to file: " + at("b.lst"), "Can't read list file.",
                         "List saved to file: " + at("gone.lst")}));
  choose("loadList"); // and given up
  EXPECT_EQ(m_list.rows().count(), 0);
}

TEST_F(BatchListDialog, KeysMoveDeleteAndToggle) {
  fill("abcde");
  clickRow(4);
  clickRow(2, Qt::ControlModifier); // only the first one moves
  press(Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(order(), "acbde");
  EXPECT_EQ(table()->selectedRows().size(), 1U);
  press(Qt::Key_Z, Qt::ControlModifier);
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(order(), "abdce");
  EXPECT_EQ(table()->firstSelectedRow(), 3);

  clickRow(1);
  QTest::mouseDClick(table()->viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(1));
  EXPECT_EQ(label("countLine"), "5 files, 4 in use.");
  clickRow(3, Qt::ShiftModifier);
  press(Qt::Key_Space);
  EXPECT_EQ(texts(m_list.rows().all()), (QStringList{"Yes a", "Yes b", "No d", "No c", "Yes e"}));

  clickRow(0);
  clickRow(2, Qt::ControlModifier);
  clickRow(4, Qt::ControlModifier);
  press(Qt::Key_Delete);
  EXPECT_EQ(order(), "bc");
  press(Qt::Key_Delete);
  press(Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(table()->firstSelectedRow(), -1) << "Ctrl+A selected something";
  // The keyboard goes on where it was.
  press(Qt::Key_Down);
  EXPECT_EQ(table()->firstSelectedRow(), 1);
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(order(), "bc");
}

/// In steps, and whatever took them off. With a row selected the key goes on moving it.
TEST_F(BatchListDialog, RowsThatWereTakenOffComeBack) {
  fill("abcde");
  clickRow(1);
  clickRow(3, Qt::ControlModifier);
  press(Qt::Key_Delete);
  click(&m_list, "clearAll");
  m_dialogs.files = {{}};
  choose("loadList"); // and given up
  EXPECT_EQ(order(), "");
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(order(), "ace");
  clickRow(0);
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(order(), "cae");
  press(Qt::Key_Backspace, Qt::AltModifier);
  EXPECT_EQ(order(), "cbade");
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(order(), "cbade") << "nothing is left to come back";
  EXPECT_EQ(label("countLine"), "5 files, 5 in use.");
}

/// What was said of rows goes with them.
TEST_F(BatchListDialog, ANoticeGoesWhenItIsNoLongerTrue) {
  write("in/a.pdf");
  const auto noticeAfter = [this](const std::function<void()>& change) {
    EXPECT_TRUE(drop({at("in")}));
    EXPECT_TRUE(waitUntil([this] { return label("notice").contains("added"); }));
    change();
    return control<QLabel>(&m_list, "notice")->isVisible();
  };
  EXPECT_FALSE(noticeAfter([this] { click(&m_list, "clearAll"); }));
  EXPECT_FALSE(noticeAfter([this] {
    clickRow(0);
    choose("delete");
  }));
  EXPECT_FALSE(noticeAfter([this] { m_list.rows().setStatus(0, "Done", {}); }));
}

TEST_F(BatchListDialog, ContextMenu) {
  fill("abc");
  clickRow(1);
  QTimer answer;
  answer.callOnTimeout([&] {
    if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
      answer.stop();
      menu->setActiveAction(menu->actions().at(2));
      QTest::keyClick(menu, Qt::Key_Return);
    }
  });
  answer.start(0);
  QContextMenuEvent event(QContextMenuEvent::Mouse, placeOf(1),
                          table()->viewport()->mapToGlobal(placeOf(1)));
  QApplication::sendEvent(table()->viewport(), &event);
  EXPECT_EQ(order(), "acb");
}

TEST_F(BatchListDialog, EveryWayToCloseSavesAndKeepsTheRows) {
  const std::function<void()> ways[] = {
      [this] { click(&m_list, "close"); }, [this] { choose("exit"); },
      [this] { press(Qt::Key_Escape); }, [this] { m_list.close(); }};
  QByteArray expected;
  for (const auto& close : ways) {
    fill("a");
    expected += "a||\n";
    m_list.show();
    close();
    EXPECT_FALSE(m_list.isVisible());
    EXPECT_EQ(m_list.result(), QDialog::Accepted);
    EXPECT_EQ(read("tmp/default.lst"), expected);
  }
  EXPECT_TRUE(m_dialogs.messages.isEmpty());
  m_list.show();
  EXPECT_EQ(order(), "aaaa");

  // A save that fails is told.
  ASSERT_TRUE(QFile::remove(at("tmp/default.lst")));
  ASSERT_TRUE(QDir(m_folder.path()).mkdir("tmp/default.lst"));
  click(&m_list, "close");
  EXPECT_EQ(m_dialogs.messages, QStringList{"Can't save to :" + at("tmp/default.lst")});
  EXPECT_EQ(order(), "aaaa");
  click(&m_list, "clearAll");
  EXPECT_EQ(order(), "");
}

TEST_F(BatchListDialog, RowsAreLeftAloneWhileTheyAreProcessed) {
  for (int i = 0; i < 40; ++i) {
    m_list.rows().append({entry("Yes", write(QStringLiteral("%1.pdf").arg(i)))});
  }
  const QStringList before = shown();
  std::vector<int> repainted(40);
  QObject::connect(table()->model(), &QAbstractItemModel::dataChanged, table(),
                   [&](const QModelIndex& from) { ++repainted[size_t(from.row())]; });
  int calls = 0;
  m_list.onProcessList = [&] {
    m_list.setRunning(true);
    RunState state;
    test::RecordingOperator person;
    runBatch(m_list.rows(), state, person, [&](const QString&) {
      if (calls++ == 0) {
        EXPECT_EQ(shown().at(0), before.at(0).chopped(6) + "Processing");
        clickRow(1);
        press(Qt::Key_Delete);
        press(Qt::Key_Z, Qt::ControlModifier);
        press(Qt::Key_Space);
        QTest::mouseDClick(table()->viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(1));
        for (const char* name : {"addFiles", "scan", "loadList", "appendList", "delete"}) {
          choose(name);
        }
        EXPECT_FALSE(drop({at("0.pdf")}));
        EXPECT_FALSE(control<QWidget>(&m_list, "clearAll")->isEnabled());
        EXPECT_FALSE(control<QWidget>(&m_list, "processList")->isEnabled());
      }
      return RowResult{calls == 2 ? RowEnd::Failed : RowEnd::Done, QString::number(calls)};
    });
    m_list.setRunning(false);
  };
  m_list.rows().setStatus(0, "Ready.", {}); // the button learns of its handler with any change
  click(&m_list, "processList");
  EXPECT_EQ(calls, 40);
  EXPECT_EQ(repainted[39], 2) << "the view does not learn of both statuses";
  QStringList after = before;
  for (int row = 0; row < after.size(); ++row) {
    after[row].replace("Ready.",
                       row == 1 ? "file error|2" : QStringLiteral("Done|%1").arg(row + 1));
  }
  EXPECT_EQ(shown(), after);
  EXPECT_TRUE(table()->viewport()->rect().contains(placeOf(39))) << "the last row is out of sight";
  EXPECT_EQ(label("countLine"), "40 files, 40 in use; 39 done; 1 file error.");
  EXPECT_TRUE(control<QWidget>(&m_list, "clearAll")->isEnabled());
}

TEST_F(BatchListDialog, NamesWithControlCharactersStayOnOneLine) {
  m_list.rows().append({entry("Yes", "a\nb\x01.pdf")});
  EXPECT_EQ(shown().at(0), QString::fromUtf8("Yes|a␊b␁.pdf|Ready."));
  EXPECT_EQ(m_list.rows().path(0), "a\nb\x01.pdf");
}
