// The rows: moving, toggling, deleting, counting, and a batch run over them.
#include "tests/batch/BatchBench.h"
#include "tests/support/RecordingOperator.h"

using namespace folivex;
using folivex::testing::entry;
using folivex::testing::texts;

namespace {

/// Follows the rows from what it is told alone.
class Follower : public BatchEntriesWatcher {
public:
  explicit Follower(const BatchEntries& rows) : m_rows(rows) {}
  void onChange(RowChange change, RowRange rows, const std::function<void()>& make) override {
    make();
    const int size = rows.last - rows.first + 1;
    m_count += change == RowChange::Added ? size : change == RowChange::Removed ? -size : 0;
    if (change == RowChange::RemovedAllOver) {
      ++resets;
      m_count = m_rows.count();
    } else if (change == RowChange::Changed) {
      changes += QStringLiteral("%1-%2").arg(rows.first).arg(rows.last);
    }
    EXPECT_EQ(m_count, m_rows.count());
  }
  void showRow(int row) override { shown += QString::number(row); }

  int resets = 0;
  QStringList changes;
  QStringList shown;

private:
  const BatchEntries& m_rows;
  int m_count = 0;
};

class Entries : public ::testing::Test {
protected:
  Entries() {
    m_rows.setWatcher(&m_follower);
    m_rows.append({entry("Yes", "a"), entry("No", "b"), entry("Yes", "c")});
    m_rows.append({entry("", "d"), entry("Yes, No Stamp", "e")});
  }
  QString order() const {
    QString names;
    for (const BatchEntry& one : m_rows.all()) {
      names += one.path;
    }
    return names;
  }

  BatchEntries m_rows;
  Follower m_follower{m_rows};
};

} // namespace

TEST_F(Entries, MovesStayWithinTheList) {
  m_rows.setStatus(1, "Done");
  EXPECT_EQ(m_rows.moveUp(1), 0);
  EXPECT_EQ(texts(m_rows.all()).first(2), (QStringList{"No b: Done", "Yes a"}));
  EXPECT_EQ(m_rows.moveDown(3), 4);
  EXPECT_EQ(order(), "baced");
  for (const int row : {-1, 0, 5}) {
    EXPECT_EQ(m_rows.moveUp(row), -1) << row;
  }
  for (const int row : {-1, 4, 5}) {
    EXPECT_EQ(m_rows.moveDown(row), -1) << row;
  }
  EXPECT_EQ(order(), "baced");
  m_rows.setStatus(5, "Done");
  m_rows.setStatus(-1, "Done");
  m_rows.showRow(5);
  EXPECT_EQ(m_rows.path(5), QString());
  EXPECT_EQ(m_rows.done(), 1);
  EXPECT_TRUE(m_follower.shown.isEmpty());
  EXPECT_EQ(m_follower.changes, (QStringList{"1-1", "0-1", "3-4"}));
}

TEST_F(Entries, ToggleTurnsNothingAndNoIntoYes) {
  m_rows.toggleUse({-3, 99});
  EXPECT_EQ(texts(m_rows.all()), (QStringList{"No a", "Yes b", "No c", "Yes d", "No e"}));
  EXPECT_EQ(m_rows.inUse(), 2);
  EXPECT_EQ(m_follower.changes, QStringList{"0-4"});
}

TEST_F(Entries, DeletedRangesMayOverlapAndLieOutside) {
  struct Case {
    std::vector<RowRange> ranges;
    const char* left;
    int resets;
  };
  const Case cases[] = {
      {{{1, 2}}, "ade", 0},
      {{{4, 4}, {0, 0}}, "bcd", 1},
      {{{3, 9}, {2, 3}}, "ab", 0},
      {{{-5, 0}}, "bcde", 0},
      {{{5, 8}}, "abcde", 0},
      {{{3, 2}}, "abcde", 0},
      {{{1, 1}, {2, 2}}, "ade", 0},
      {{{0, 4}, {1, 1}}, "", 0},
      {{}, "abcde", 0},
      {{{0, 0}, {2, 2}, {4, 4}}, "bd", 1},
  };
  for (const Case& each : cases) {
    m_rows.clear();
    m_rows.append({entry("Yes", "a"), entry("No", "b"), entry("Yes", "c"), entry("", "d"),
                   entry("Yes, No Stamp", "e")});
    m_follower.resets = 0;
    m_rows.remove(each.ranges);
    EXPECT_EQ(order(), each.left);
    EXPECT_EQ(m_follower.resets, each.resets) << each.left;
    EXPECT_EQ(m_rows.inUse(), order().count('a') + order().count('c')) << each.left;
  }
}

TEST_F(Entries, RunSetsStatusesAndTheCountsFollow) {
  const QTemporaryDir folder;
  for (const char* name : {"a", "b", "bad"}) {
    QFile file(folder.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  }
  m_rows.clear();
  m_rows.append({entry("Yes", folder.filePath("a")), entry("No", folder.filePath("b")),
                 entry("Yes", folder.filePath("missing")), entry("Yes", folder.filePath("bad")),
                 entry("Yes", folder.filePath("a"))});
  RunState state;
  test::RecordingOperator person;
  QStringList processed;
  runBatch(m_rows, state, person, [&](const QString& path) {
    processed += QFileInfo(path).fileName();
    EXPECT_EQ(texts(m_rows.all()).filter(": Processing").size(), 1);
    return path.endsWith("bad") ? RowEnd::Failed : RowEnd::Done;
  });
  EXPECT_EQ(processed, (QStringList{"a", "bad", "a"}));
  EXPECT_EQ(m_rows.at(1).status, "Ready.");
  EXPECT_EQ(m_rows.done(), 2);
  EXPECT_EQ(m_rows.fileErrors(), 2);
  EXPECT_EQ(m_follower.shown, (QStringList{"0", "3", "4"}));
  // What ran before is no matter to a second run.
  m_rows.setStatus(0, "Processing");
  EXPECT_EQ(m_rows.done(), 1);
}
