// The file is the old one or the new one at every moment, whatever happens to the process.
#include "tests/melder/Workshop.h"
#include "tests/support/SmallDisk.h"

#include <QRegularExpression>

#include <chrono>
#include <random>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace folivex::test;

namespace {

class Safety : public Workshop {
protected:
  /// A process that appends one page so many times; it ends with the code of its failure.
  static pid_t appender(const QString& file, int times, bool isNobody = false) {
    const pid_t child = fork();
    if (child == 0) {
      constexpr uid_t nobody = 65534;
      // Bits of permission say nothing to the superuser.
      if (isNobody && geteuid() == 0 &&
          (setresgid(nobody, nobody, nobody) != 0 || setresuid(nobody, nobody, nobody) != 0)) {
        _exit(2);
      }
      int32_t status = MELDER_OK;
      while (status == MELDER_OK && times-- > 0) {
        status = append(sample("one.pdf"), file);
      }
      _exit(-status);
    }
    return child;
  }
  static int endOf(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
};

} // namespace

TEST_F(Safety, AKillLeavesTheOldOrTheNewFileAndAHiddenOneAtMost) {
  constexpr int appends = 8;
  const QString twin = receiver("linked.pdf");
  QByteArrayList states{contentOf(twin)};
  const auto begin = std::chrono::steady_clock::now();
  for (int done = 0; done < appends; ++done) {
    ASSERT_EQ(append(sample("one.pdf"), twin), MELDER_OK) << lastError();
    states += contentOf(twin);
  }
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
  std::mt19937 random(20240229);
  std::uniform_real_distribution<> share(0, 1);
  const QString file = at("file.pdf");
  for (int round = 0; round < 50; ++round) {
    writeFile(file, states.front());
    const pid_t child = appender(file, appends);
    std::this_thread::sleep_for(took * share(random));
    kill(child, SIGKILL);
    endOf(child);
    ASSERT_TRUE(states.contains(contentOf(file))) << "round " << round;
    const QStringList there = filesBelow(m_folder.path());
    const QStringList parts = there.filter(QRegularExpression("^\\.folivex-.*\\.part$"));
    ASSERT_LE(parts.size(), 1);
    ASSERT_EQ(there.size(), 2 + parts.size()) << there.join(' ').toStdString();
  }
  ASSERT_EQ(append(sample("one.pdf"), file), MELDER_OK) << "and removes what is left";
}

TEST_F(Safety, AFullDiskLeavesTheOldFileAndNothingBeside) {
  const QString file = receiver("plain.pdf");
  const QByteArray old = contentOf(file);
  for (const qsizetype room : {qsizetype{1}, old.size() / 2, old.size() + 300}) {
    {
      const SmallDisk full(static_cast<rlim_t>(room));
      EXPECT_EQ(append(sample("one.pdf"), file), MELDER_CANNOT_WRITE) << room;
    }
    EXPECT_NE(lastError().find("/plain.pdf"), std::string::npos) << lastError();
    EXPECT_EQ(contentOf(file), old);
    EXPECT_EQ(filesBelow(m_folder.path()), QStringList("plain.pdf"));
  }
  // With room again it works, in the same process.
  ASSERT_EQ(append(sample("one.pdf"), file), MELDER_OK) << lastError();
  EXPECT_EQ(pageTexts(file), (QStringList{"plain 1", "plain 2", "plain 3", "one"}));
}

TEST_F(Safety, AFolderOrFileThatCannotBeWrittenIsRefused) {
  const QString file = receiver("plain.pdf");
  const QByteArray old = contentOf(file);
  for (const QString& place : {m_folder.path(), QFileInfo(sample("one.pdf")).path()}) {
    fs::permissions(pathOf(place), fs::perms(0755));
  }
  fs::permissions(pathOf(file), fs::perms(0444));
  EXPECT_EQ(endOf(appender(file, 1, true)), -MELDER_CANNOT_WRITE) << "the file";
  fs::permissions(pathOf(file), fs::perms(0666));
  fs::permissions(pathOf(m_folder.path()), fs::perms(0555));
  EXPECT_EQ(endOf(appender(file, 1, true)), -MELDER_CANNOT_WRITE) << "the folder";
  fs::permissions(pathOf(m_folder.path()), fs::perms(0755));
  EXPECT_EQ(contentOf(file), old);
}

TEST_F(Safety, ModeAndOtherNamesOfTheFileStay) {
  const fs::path file = pathOf(receiver("plain.pdf"));
  const QByteArray old = contentOf(at("plain.pdf"));
  fs::permissions(file, fs::perms(0640));
  fs::create_hard_link(file, pathOf(at("backup.pdf")));
  for (int i = 0; i < 2; ++i) {
    ASSERT_EQ(append(sample("one.pdf"), at("plain.pdf")), MELDER_OK) << lastError();
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0640));
  }
  EXPECT_EQ(pageTexts(at("plain.pdf")).size(), 5);
  EXPECT_EQ(contentOf(at("backup.pdf")), old);
}

/// Whoever may put a link into the folder must not choose the file that changes.
TEST_F(Safety, LinksAreNotFollowed) {
  const QString file = receiver("plain.pdf");
  const QByteArray old = contentOf(file);
  for (const QString& to : {file, at("nothing.pdf")}) {
    QFile::remove(at("link.pdf"));
    ASSERT_TRUE(QFile::link(to, at("link.pdf")));
    EXPECT_EQ(append(sample("one.pdf"), at("link.pdf")), MELDER_CANNOT_WRITE);
    EXPECT_NE(lastError().find("it is a link"), std::string::npos) << lastError();
  }
  EXPECT_FALSE(QFile::exists(at("nothing.pdf")));
  // Where a new file was asked for, it takes the link's place.
  QFile::remove(at("link.pdf"));
  ASSERT_TRUE(QFile::link(file, at("link.pdf")));
  ASSERT_NE(getAppendPDFFile(utf16(file), utf16(file), utf16(at("link.pdf"))), 0) << lastError();
  EXPECT_FALSE(QFileInfo(at("link.pdf")).isSymLink());
  EXPECT_EQ(contentOf(file), old);
}

TEST_F(Safety, TwoProcessesLoseNoPage) {
  const QString file = receiver("plain.pdf");
  const pid_t one = appender(file, 25);
  const pid_t other = appender(file, 25);
  EXPECT_EQ(endOf(one), 0);
  EXPECT_EQ(endOf(other), 0);
  EXPECT_EQ(pageTexts(file).size(), 53);
}

TEST_F(Safety, TheSameFilesGiveTheSameBytes) {
  for (const char* name : {"linked.pdf", "packed.pdf"}) {
    const QStringList parts{"layers.pdf", "form.pdf", "linked.pdf"};
    EXPECT_TRUE(contentOf(receiver(name, parts)) == contentOf(receiver(name, parts))) << name;
  }
}
