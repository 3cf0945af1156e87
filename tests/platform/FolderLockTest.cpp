// Who may work in a folder, and what runs that died left there.
#include "platform/FolderLock.h"
#include "tests/support/Programs.h"

#include <QTemporaryDir>

#include <csignal>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>

using namespace folivex::platform;
using namespace folivex::test;

namespace {

using State = FolderLock::State;

/// Two locks of one process keep each other out like those of two.
class FolderLockTest : public testing::Test {
protected:
  QString folder() const { return m_folder.path(); }
  QString at(const QString& name) const { return m_folder.filePath(name); }

  std::unique_ptr<FolderLock> lock(LockUse use, const char* work, FolderLock::Locks locks = {}) {
    return std::make_unique<FolderLock>(folder(), use, QString::fromUtf8(work), locks);
  }

  QTemporaryDir m_folder;
};

/// Runs `work` in a process that is killed after it.
void inKilledProcess(const std::function<void()>& work) {
  const pid_t child = fork();
  if (child == 0) {
    work();
    kill(getpid(), SIGKILL);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
}

} // namespace

TEST_F(FolderLockTest, AloneMeansAloneAndWhoIsThereIsNamed) {
  auto first = lock(LockUse::Shared, "first.pdf");
  auto second = lock(LockUse::Shared, "second.pdf");
  auto alone = lock(LockUse::Alone, "alone.pdf");
  ASSERT_EQ(first->take(), State::Held);
  ASSERT_EQ(second->take(), State::Held);
  EXPECT_EQ(alone->take(), State::Busy);
  EXPECT_EQ(alone->others().count(".pdf"), 2) << alone->others().toStdString();
  first.reset();
  EXPECT_EQ(alone->take(), State::Busy);
  EXPECT_TRUE(alone->others().endsWith(": second.pdf"))
      << "tells of one who has left: " << alone->others().toStdString();
  second.reset();
  ASSERT_EQ(alone->take(), State::Held);
  auto third = lock(LockUse::Shared, "third.pdf");
  EXPECT_EQ(third->take(), State::Busy);
  EXPECT_TRUE(third->others().endsWith(", alone: alone.pdf")) << third->others().toStdString();
  alone.reset();
  EXPECT_EQ(third->take(), State::Held);
  third.reset();
  EXPECT_EQ(filesBelow(folder()), QStringList());
}

TEST_F(FolderLockTest, KilledHolderIsNeitherInTheWayNorToldOf) {
  inKilledProcess([this] {
    // It stays open to the end of the process.
    static_cast<void>(lock(LockUse::Alone, "dead.pdf").release()->take());
  });
  EXPECT_EQ(filesBelow(folder()), QStringList(".folivex.lock"));
  auto living = lock(LockUse::Shared, "living.pdf");
  ASSERT_EQ(living->take(), State::Held);
  auto alone = lock(LockUse::Alone, "alone.pdf");
  EXPECT_EQ(alone->take(), State::Busy);
  EXPECT_TRUE(alone->others().endsWith(": living.pdf") && !alone->others().contains('\n'))
      << alone->others().toStdString();
  alone.reset();
  living.reset();
  EXPECT_EQ(filesBelow(folder()), QStringList());
}

TEST_F(FolderLockTest, PlantedLockFileIsRefusedAndWhatItLeadsToUnharmed) {
  QTemporaryDir elsewhere;
  const QString victim = elsewhere.filePath("victim");
  writeFile(victim, "precious");
  const QByteArray lockName = QFile::encodeName(at(".folivex.lock"));
  for (const bool symbolic : {true, false}) {
    ASSERT_EQ((symbolic ? symlink : link)(QFile::encodeName(victim).constData(), lockName), 0);
    for (const LockUse use : {LockUse::Shared, LockUse::Alone}) {
      auto refused = lock(use, "a.pdf");
      EXPECT_EQ(refused->take(), State::Refused);
      EXPECT_TRUE(refused->problem().startsWith(at(".folivex.lock: it is a link")));
    }
    EXPECT_EQ(contentOf(victim), "precious");
    ASSERT_TRUE(QFile::remove(at(".folivex.lock")));
  }
  writeFile(at("file"), "");
  for (const char* nowhere : {"none", "file"}) {
    EXPECT_EQ(FolderLock(at(nowhere), LockUse::Alone, {}).take(), State::NoPlace);
  }
}

TEST_F(FolderLockTest, WithoutDependableLocksNobodyWaitsAndNothingOfOthersIsRemoved) {
  const auto undependable = FolderLock::Locks::Undependable;
  auto plain = lock(LockUse::Shared, "plain.pdf", undependable);
  auto beside = lock(LockUse::Shared, "beside.pdf", undependable);
  ASSERT_EQ(plain->take(), State::Held);
  ASSERT_EQ(beside->take(), State::Held);
  beside.reset();
  const QString file = filesBelow(folder()).value(0);
  EXPECT_TRUE(file.startsWith(".folivex-run-")) << file.toStdString();
  // From a machine with locks and from one without.
  for (const auto locks : {FolderLock::Locks::AsFound, undependable}) {
    auto alone = lock(LockUse::Alone, "alone.pdf", locks);
    EXPECT_EQ(alone->take(), State::Refused);
    EXPECT_TRUE(alone->problem().startsWith(at(file)) && alone->problem().contains(": plain.pdf)"))
        << alone->problem().toStdString();
    EXPECT_EQ(filesBelow(folder()), QStringList(file));
  }
  plain.reset();

  for (const auto locks : {undependable, FolderLock::Locks::AsFound}) {
    auto alone = lock(LockUse::Alone, "alone.pdf", locks);
    ASSERT_EQ(alone->take(), State::Held);
    EXPECT_EQ(lock(LockUse::Shared, "a.pdf", undependable)->take(), State::Refused);
    EXPECT_EQ(lock(LockUse::Alone, "a.pdf", undependable)->take(), State::Refused);
    if (locks == undependable) {
      EXPECT_EQ(lock(LockUse::Shared, "a.pdf")->take(), State::Refused);
    }
  }
  EXPECT_EQ(filesBelow(folder()), QStringList());
}

TEST_F(FolderLockTest, PartsOfTheDeadGoAndNothingElse) {
  writeFile(at("mine.pdf.part"), "a person's");
  writeFile(at(".folivex-run-7"), "a run's");
  ASSERT_TRUE(QFile::link(at("mine.pdf.part"), at(".folivex-link.part")));
  ASSERT_EQ(mkfifo(QFile::encodeName(at(".folivex-pipe.part")).constData(), 0600), 0);
  const QStringList others = filesBelow(folder());
  writeFile(at(".folivex-dead.part"), "x");
  QFile living;
  ASSERT_EQ(openForLock(living, at(".folivex-living.part"), true), 0);
  ASSERT_EQ(lockFile(living, LockUse::Alone), LockResult::Locked);
  removeDeadParts(folder());
  EXPECT_EQ(filesBelow(folder()).size(), others.size() + 1);
  EXPECT_TRUE(QFile::exists(at(".folivex-living.part")));
  living.close();
  removeDeadParts(folder());
  EXPECT_EQ(filesBelow(folder()), others);
}
