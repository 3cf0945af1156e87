// The table of a plan.
#include "ViewerBench.h"

#include "app/viewer/PlanPane.h"

#include <QCheckBox>
#include <QHeaderView>
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
  return plan;
}

class PlanTable : public testing::OwnFolder {
protected:
  PlanTable() {
    setPlan(somePlan());
    m_window.show();
  }
  void setPlan(const SplitPlan& plan) {
    m_window.setPlan("/in/a.pdf", std::make_unique<PlanRows>(std::make_shared<SplitPlan>(plan),
                                                             m_window.order()));
  }
  QTableView* table() { return control<QTableView>(&m_window, "planTable"); }
  void clickHeader(PlanColumn which) {
    QHeaderView* header = table()->horizontalHeader();
    const int section = static_cast<int>(which);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier,
                      QPoint(header->sectionViewportPosition(section) + 10, header->height() / 2));
  }

  ScriptedDialogs m_dialogs;
  PlanPane m_window{m_dialogs};
};

TEST_F(PlanTable, ExportsTheRowsShownInTheirOrder) {
  clickHeader(PlanColumn::Count); // as numbers
  m_dialogs.files = {{at("plan.csv")}, {at("missing/plan.csv")}, {}};
  auto* warnings = control<QCheckBox>(&m_window, "warningsOnly");
  QTest::mouseClick(warnings, Qt::LeftButton, Qt::NoModifier, QPoint(8, warnings->height() / 2));
  EXPECT_EQ(table()->model()->rowCount(), 4) << "a10.pdf has no warning";
  warnings->setChecked(false);
  typeInto(&m_window, "planFilter", "MORE");
  click(&m_window, "exportPlan");
  EXPECT_EQ(contentOf(at("plan.csv")), "Start Page,End Page,Matched,Output File,Note\n"
                                       "13,13,\"b, \"\"x\"\"\",/out/more/B.pdf,\n"
                                       "14,15,b,/out/more/b.pdf,\n");
  click(&m_window, "exportPlan");
  ASSERT_EQ(m_dialogs.messages.size(), 1);
  EXPECT_TRUE(m_dialogs.messages[0].contains("missing/plan.csv"));
  click(&m_window, "exportPlan"); // given up
  EXPECT_EQ(m_dialogs.messages.size(), 1);
}

TEST_F(PlanTable, APersonsChoiceStaysWhenThePlanGrowsAndOnlyItTurnsThePage) {
  std::vector<int> pages;
  m_window.onPageRequested = [&](int page) { pages.push_back(page); };
  clickHeader(PlanColumn::Pages); // now descending
  table()->selectRow(1);
  EXPECT_EQ(pages, std::vector<int>{14});
  SplitPlan grown = somePlan();
  grown.outputs.push_back(
      {101, 105, "d", "/out/d_statement_of_march.pdf", PlannedOutput::Fate::New});
  setPlan(grown);
  constexpr auto names = static_cast<int>(PlanColumn::Name);
  EXPECT_GE(table()->columnWidth(names),
            table()->fontMetrics().horizontalAdvance("d_statement_of_march.pdf"));
  EXPECT_EQ(table()->model()->index(0, 0).data(), "101-105") << "the order stays";
  EXPECT_EQ(table()->currentIndex().row(), 2);
  typeInto(&m_window, "planFilter", ".pdf");
  EXPECT_EQ(pages.size(), 1);
  QTest::keyClick(table(), Qt::Key_Return);
  EXPECT_EQ(pages, std::vector<int>({14, 14}));
}

} // namespace
} // namespace folivex::test
