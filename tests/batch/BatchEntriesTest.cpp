// The rows: moving, toggling, deleting, counting. What a view is told of them, and a batch run over
// them, is checked where there is one.
#include "tests/batch/BatchBench.h"

using namespace folivex;
using folivex::testing::entry;
using folivex::testing::texts;

namespace {

class Entries : public folivex::testing::BatchBench {
protected:
  Entries() { fill(); }
  void fill() {
    m_rows.clear();
    m_rows.append({entry("Yes", "a"), entry("No", "b"), entry("Yes", "c")});
    m_rows.append({entry("", "d"), entry("Yes, No Stamp", "e")});
  }
  QString order() const { return folivex::testing::lettersOf(m_rows); }

  BatchEntries m_rows;
};

} // namespace

TEST_F(Entries, ChangesStayWithinTheList) {
  m_rows.setStatus(1, "Done", {});
  EXPECT_EQ(m_rows.moveUp(1), 0);
  EXPECT_EQ(texts(m_rows.all()).first(2), (QStringList{"No b: Done", "Yes a"}));
  EXPECT_EQ(m_rows.moveDown(3), 4);
  for (const int row : {-1, 0, 5}) {
    EXPECT_EQ(m_rows.moveUp(row), -1) << row;
  }
  for (const int row : {-1, 4, 5}) {
    EXPECT_EQ(m_rows.moveDown(row), -1) << row;
  }
  m_rows.setStatus(5, "Done", {});
  m_rows.setStatus(-1, "Done", {});
  m_rows.showRow(5);
  EXPECT_EQ(m_rows.path(5), QString());
  EXPECT_EQ(m_rows.done(), 1);
  EXPECT_EQ(order(), "baced");
  m_rows.toggleUse({-3, 99});
  EXPECT_EQ(texts(m_rows.all()), (QStringList{"Yes b: Done", "No a", "No c", "No e", "Yes d"}));
  EXPECT_EQ(m_rows.inUse(), 2);
}

TEST_F(Entries, DeletedRangesMayOverlapAndLieOutside) {
  const std::pair<std::vector<RowRange>, const char*> cases[] = {
      {{{4, 4}, {0, 0}}, "bcd"},
      {{{3, 9}, {2, 3}}, "ab"},
      {{{-5, 0}}, "bcde"},
      {{{5, 8}}, "abcde"},
      {{{3, 2}}, "abcde"},
      {{{1, 1}, {2, 2}}, "ade"},
      {{{0, 4}, {1, 1}}, ""},
      {{}, "abcde"},
      {{{0, 0}, {2, 2}, {4, 4}}, "bd"},
  };
  for (const auto& [ranges, left] : cases) {
    fill();
    m_rows.remove(ranges);
    EXPECT_EQ(order(), left);
    EXPECT_EQ(m_rows.inUse(), order().count('a') + order().count('c')) << left;
    if (order() != "abcde") {
      m_rows.append({entry("Yes", "z")}); // and stays where it is
      m_rows.bringBack();
      EXPECT_EQ(order(), "abcdez") << left;
      EXPECT_EQ(m_rows.inUse(), 3) << left;
    }
  }
}
