// How long a run waits for its folders.
#include "engine/output/FolderLocks.h"
#include "tests/support/Programs.h"
#include "tests/support/RecordingOperator.h"

#include <QTemporaryDir>

using namespace folivex;
using namespace folivex::test;

namespace {

using Outcome = FolderLocks::Outcome;
using platform::LockUse;

class FolderLocksTest : public testing::Test {
protected:
  FolderLocksTest() {
    for (const char* name : {"a", "b"}) {
      QDir(m_folder.path()).mkdir(QLatin1String(name));
    }
    m_locks.begin(LockUse::Shared, "mine.pdf");
    m_others.begin(LockUse::Alone, "theirs.pdf");
  }
  QString at(const char* name) const { return m_folder.filePath(QLatin1String(name)); }

  QTemporaryDir m_folder;
  RecordingOperator m_person;
  RunState m_state;
  FolderLocks m_locks{m_person, m_state};
  FolderLocks m_others{m_person, m_state};
};

} // namespace

TEST_F(FolderLocksTest, WhoHoldsAFolderGivesUpOnAnotherAndTakesItWhenItIsFree) {
  ASSERT_EQ(m_locks.take(at("a")), Outcome::Free);
  ASSERT_EQ(m_others.take(at("b")), Outcome::Free);
  m_locks.setPatience(0);
  EXPECT_EQ(m_locks.takeFor(at("b/1.pdf")), Outcome::Refused);
  EXPECT_TRUE(m_locks.problem().startsWith(at("b")) && m_locks.problem().endsWith("theirs.pdf"))
      << m_locks.problem().toStdString();
  EXPECT_EQ(m_locks.takeFor(at("a/1.pdf")), Outcome::Free);
  m_others.release();
  EXPECT_EQ(m_locks.takeFor(at("b/2.pdf")), Outcome::Free);
  EXPECT_EQ(filesBelow(m_folder.path()), (QStringList{"a/.folivex.lock", "b/.folivex.lock"}));
  m_locks.release();
  EXPECT_EQ(filesBelow(m_folder.path()), QStringList());
}

TEST_F(FolderLocksTest, FolderOfTheRunIsNotWaitedForUnderAnotherName) {
  ASSERT_TRUE(QFile::link(at("b"), at("link")));
  const QString before = QDir::currentPath();
  ASSERT_TRUE(QDir::setCurrent(at("b")));
  // An empty name is the current folder, as everywhere.
  ASSERT_EQ(m_others.take(QString()), Outcome::Free);
  ASSERT_TRUE(QDir::setCurrent(before));
  m_others.setPatience(0);
  for (const char* same : {"b/x.pdf", "link/x.pdf", "a/../b/x.pdf"}) {
    EXPECT_EQ(m_others.takeFor(at(same)), Outcome::Free) << same;
  }
}

TEST_F(FolderLocksTest, WaitIsToldOnceAndEndsWithAStop) {
  ASSERT_EQ(m_others.take(at("a")), Outcome::Free);
  int steps = 0;
  m_person.onEvents = [&] { m_state.userStop = ++steps == 20; };
  EXPECT_EQ(m_locks.take(at("a")), Outcome::Stopped);
  ASSERT_EQ(m_person.notes.size(), 1);
  EXPECT_TRUE(m_person.notes[0].contains("waits until") &&
              m_person.notes[0].contains("theirs.pdf"));
}
