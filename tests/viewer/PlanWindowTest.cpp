// The table of a plan.
#include "ViewerBench.h"

#include "app/viewer/PlanWindow.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QHeaderView>
#include <QPlainTextEdit>
#include <QTableView>

namespace folivex::test {
namespace {

SplitPlan somePlan() {
  SplitPlan plan;
  using Fate = PlannedOutput::Fate;
  plan.outputs = {{1, 3, "a10", "/out/a10.pdf", Fate::New},
                  {4, 12, "a9", "/out/a9.pdf", Fate::Replaces},
                  {13, 13, "b, \"x\"", "/out/more/B.pdf", Fate::New},
                  {14, 15, "b", "/out/more/b.pdf", Fate::New},
                  {100, 100, "c", "/out/c.pdf", Fate::Appends}};
  plan.account.start(100);
  plan.fileCount = 5;
  plan.notes = QStringList{"2 page(s) have no text", "page 17 is damaged"};
  return plan;
}

class PlanTable : public ::testing::Test {
protected:
  PlanTable() {
    m_tester = std::make_unique<QAbstractItemModelTester>(
        model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    m_window.setPlan("/in/a.pdf", somePlan());
    m_window.show();
  }
  QTableView* table() { return control<QTableView>(&m_window, "planTable"); }
  QAbstractItemModel* model() { return table()->model(); }
  QStringList column(PlanColumn which) {
    QStringList texts;
    for (int row = 0; row < model()->rowCount(); ++row) {
      texts += model()->index(row, static_cast<int>(which)).data().toString();
    }
    return texts;
  }
  void clickHeader(PlanColumn which) {
    QHeaderView* header = table()->horizontalHeader();
    const int section = static_cast<int>(which);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier,
                      QPoint(header->sectionViewportPosition(section) + 10, header->height() / 2));
  }

  ScriptedDialogs m_dialogs;
  PlanWindow m_window{m_dialogs};
  std::unique_ptr<QAbstractItemModelTester> m_tester;
};

TEST_F(PlanTable, SortsNumbersAsNumbersAndKeepsTheRowChosen) {
  EXPECT_EQ(column(PlanColumn::Pages), QStringList({"1-3", "4-12", "13", "14-15", "100"}));
  table()->selectRow(1); // a9
  clickHeader(PlanColumn::Count);
  EXPECT_EQ(column(PlanColumn::Count), QStringList({"1", "1", "2", "3", "9"}));
  EXPECT_EQ(column(PlanColumn::Pages).first(), "13") << "equal rows stay in the plan's order";
  EXPECT_EQ(table()->currentIndex().row(), 4);
  clickHeader(PlanColumn::Name);
  EXPECT_EQ(column(PlanColumn::Name),
            QStringList({"a9.pdf", "a10.pdf", "B.pdf", "b.pdf", "c.pdf"}));
  EXPECT_EQ(table()->currentIndex().row(), 0);
  clickHeader(PlanColumn::Name);
  EXPECT_EQ(column(PlanColumn::Name).first(), "c.pdf");
  clickHeader(PlanColumn::Pages);
  EXPECT_EQ(column(PlanColumn::Pages), QStringList({"1-3", "4-12", "13", "14-15", "100"}));
}

TEST_F(PlanTable, FiltersByTextAndWarning) {
  auto* warnings = control<QCheckBox>(&m_window, "warningsOnly");
  EXPECT_TRUE(warnings->text().contains("(4)")) << warnings->text().toStdString();
  typeInto(&m_window, "planFilter", "MORE");
  EXPECT_EQ(column(PlanColumn::Name), QStringList({"B.pdf", "b.pdf"}));
  EXPECT_EQ(column(PlanColumn::Note)[0], "another name differs in capitals only");
  typeInto(&m_window, "planFilter", "a");
  const auto all = column(PlanColumn::Name).size();
  QTest::mouseClick(warnings, Qt::LeftButton, Qt::NoModifier, QPoint(8, warnings->height() / 2));
  ASSERT_TRUE(warnings->isChecked());
  EXPECT_EQ(column(PlanColumn::Name).size(), all - 1) << "a10.pdf has no warning";
  EXPECT_FALSE(column(PlanColumn::Note).contains(QString()));
  typeInto(&m_window, "planFilter", "no such thing");
  EXPECT_EQ(model()->rowCount(), 0);
  EXPECT_EQ(control<QLabel>(&m_window, "shownRows")->text(), "0 of 5 outputs");
  EXPECT_FALSE(control<QPushButton>(&m_window, "exportPlan")->isEnabled());
}

TEST_F(PlanTable, ExportsTheRowsShownInTheirOrder) {
  QTemporaryDir folder;
  const QString path = folder.filePath("plan.csv");
  clickHeader(PlanColumn::Pages); // now descending
  typeInto(&m_window, "planFilter", "more");
  m_dialogs.files = {{path}, {folder.filePath("missing/plan.csv")}, {}};
  click(&m_window, "exportPlan");
  EXPECT_EQ(contentOf(path), "Start Page,End Page,Matched,Output File,Note\n"
                             "14,15,b,/out/more/b.pdf,\n"
                             "13,13,\"b, \"\"x\"\"\",/out/more/B.pdf,\n");
  click(&m_window, "exportPlan");
  ASSERT_EQ(m_dialogs.messages.size(), 1);
  EXPECT_TRUE(m_dialogs.messages[0].contains("missing/plan.csv"));
  click(&m_window, "exportPlan"); // given up
  EXPECT_EQ(m_dialogs.messages.size(), 1);
}

TEST_F(PlanTable, ARowLeadsToItsPage) {
  std::vector<int> pages;
  m_window.onPageRequested = [&](int page) { pages.push_back(page); };
  EXPECT_FALSE(control<QPushButton>(&m_window, "showPlanPage")->isEnabled());
  clickHeader(PlanColumn::Pages); // now descending
  table()->selectRow(0);
  QTest::keyClick(table(), Qt::Key_Return);
  click(&m_window, "showPlanPage");
  EXPECT_EQ(pages, (std::vector<int>{100, 100}));
  EXPECT_TRUE(m_window.isVisible());
}

TEST_F(PlanTable, ProcessesOnceAndOnlyWhenAsked) {
  int runs = 0;
  m_window.onProcess = [&] {
    EXPECT_FALSE(m_window.isVisible());
    ++runs;
  };
  QTest::keyClick(control<QLineEdit>(&m_window, "planFilter"), Qt::Key_Return);
  QTest::keyClick(table(), Qt::Key_Return);
  EXPECT_EQ(runs, 0);
  click(&m_window, "processNow");
  EXPECT_EQ(runs, 1);
  SplitPlan refused;
  refused.problem = "a.pdf: cannot be opened";
  m_window.setPlan("/in/a.pdf", refused);
  EXPECT_EQ(control<QLabel>(&m_window, "planSummary")->text(), refused.problem);
  EXPECT_FALSE(control<QPushButton>(&m_window, "processNow")->isEnabled());
}

TEST_F(PlanTable, ShowsAddressesWhenThereAreAny) {
  EXPECT_TRUE(table()->isColumnHidden(static_cast<int>(PlanColumn::Address)));
  SplitPlan plan = somePlan();
  plan.outputs[0].address = "z@example.com";
  plan.outputs[3].address = "a@example.com";
  m_window.setPlan("/in/a.pdf", plan);
  EXPECT_FALSE(table()->isColumnHidden(static_cast<int>(PlanColumn::Address)));
  typeInto(&m_window, "planFilter", "@example");
  EXPECT_EQ(column(PlanColumn::Address), QStringList({"z@example.com", "a@example.com"}));
  m_window.setPlan("/in/a.pdf", somePlan());
  EXPECT_TRUE(table()->isColumnHidden(static_cast<int>(PlanColumn::Address)));
  EXPECT_EQ(model()->rowCount(), 5) << "another plan is shown whole";
}

} // namespace
} // namespace folivex::test
