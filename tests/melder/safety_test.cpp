// The file is the old one or the new one at every moment, whatever happens to the process.
#include "workshop.h"

#include "melder/melder.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <random>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace melder_test {

namespace {

constexpr int kAppends = 8;

pid_t startAppender(const fs::path& file, const fs::path& part, int times) {
  const pid_t child = fork();
  if (child == 0) {
    execl(MELDER_APPENDER, "melder_appender", file.c_str(), part.c_str(),
          std::to_string(times).c_str(), nullptr);
    _exit(127);
  }
  return child;
}

void limitFileSize(uintmax_t bytes) {
  const rlimit limit = {.rlim_cur = bytes, .rlim_max = RLIM_INFINITY};
  setrlimit(RLIMIT_FSIZE, &limit);
}

} // namespace

using Safety = Workshop;

TEST_F(Safety, FiftyKillsLeaveOneOfTheStatesAnUndisturbedRunGoesThrough) {
  std::mt19937 random(20240229);
  const fs::path file = receiver("linked.pdf");
  const fs::path twin = folder() / "twin.pdf";
  fs::copy_file(file, twin);
  std::vector<std::string> states = {bytesOf(twin)};
  const auto begin = std::chrono::steady_clock::now();
  for (int done = 0; done < kAppends; ++done) {
    ASSERT_TRUE(append(sample("one.pdf"), twin)) << lastError();
    states.push_back(bytesOf(twin));
  }
  const auto took = std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::steady_clock::now() - begin);
  std::uniform_int_distribution<long long> moment(0, took.count());
  for (int round = 0; round < 50; ++round) {
    writeBytes(file, states.front());
    const pid_t child = startAppender(file, sample("one.pdf"), kAppends);
    std::this_thread::sleep_for(std::chrono::microseconds(moment(random)));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    ASSERT_TRUE(std::ranges::find(states, bytesOf(file)) != states.end()) << "round " << round;
  }
  for (const std::string& left : litter()) {
    fs::remove(left);
  }
}

TEST_F(Safety, AFullDiskLeavesTheOldFileAndNothingBeside) {
  const fs::path file = receiver("plain.pdf");
  const std::string old = bytesOf(file);
  for (const size_t room : {size_t{1}, old.size() / 2, old.size() + 300}) {
    SCOPED_TRACE(room);
    const int end = inChild([&] {
      signal(SIGXFSZ, SIG_IGN);
      limitFileSize(room);
      const bool refused = !append(sample("one.pdf"), file) && GetStatus() == MELDER_CANNOT_WRITE;
      if (!refused || lastError().find("/plain.pdf") == std::string::npos || !litter().empty()) {
        return 1;
      }
      // With room again it works, in the same process.
      limitFileSize(RLIM_INFINITY);
      return append(sample("one.pdf"), file) ? 0 : 2;
    });
    EXPECT_EQ(end, 0);
    EXPECT_EQ(pageTexts(file), (std::vector<std::string>{"plain 1", "plain 2", "plain 3", "one"}));
    writeBytes(file, old);
  }
}

TEST_F(Safety, AFolderOrFileThatCannotBeWrittenIsRefused) {
  const fs::path file = receiver("plain.pdf");
  const std::string old = bytesOf(file);
  constexpr uid_t kNobody = 65534;
  const auto tryAsNobody = [&] {
    return inChild([&] {
      // Bits of permission say nothing to the superuser.
      if (geteuid() == 0 && (setresgid(kNobody, kNobody, kNobody) != 0 ||
                             setresuid(kNobody, kNobody, kNobody) != 0)) {
        return 2;
      }
      const bool refused = !append(sample("one.pdf"), file) && GetStatus() == MELDER_CANNOT_WRITE;
      return refused && lastError().find("plain.pdf") != std::string::npos ? 0 : 1;
    });
  };
  fs::permissions(file, fs::perms(0444));
  EXPECT_EQ(tryAsNobody(), 0) << "the file";
  fs::permissions(file, fs::perms(0666));
  fs::permissions(folder(), fs::perms(0555));
  EXPECT_EQ(tryAsNobody(), 0) << "the folder";
  fs::permissions(folder(), fs::perms(0755));
  EXPECT_EQ(bytesOf(file), old);
}

TEST_F(Safety, LinksModeAndOtherNamesOfTheFileStay) {
  const fs::path file = receiver("plain.pdf");
  const std::string old = bytesOf(file);
  fs::permissions(file, fs::perms(0640));
  fs::create_hard_link(file, folder() / "backup.pdf");
  fs::create_directory(folder() / "links");
  const fs::path link = folder() / "links" / "to.pdf";
  fs::create_symlink("../plain.pdf", link);
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(append(sample("one.pdf"), link)) << lastError();
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0640));
  }
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(pageTexts(file).size(), 5U);
  EXPECT_EQ(bytesOf(folder() / "backup.pdf"), old);
}

TEST_F(Safety, TwoProcessesLoseNoPage) {
  const fs::path file = receiver("plain.pdf");
  const pid_t one = startAppender(file, sample("one.pdf"), 25);
  const pid_t other = startAppender(file, sample("one.pdf"), 25);
  waitpid(one, nullptr, 0);
  waitpid(other, nullptr, 0);
  EXPECT_EQ(pageTexts(file).size(), 53U);
  expectSound(file);
}

TEST_F(Safety, TheSameFilesGiveTheSameBytes) {
  for (const char* name : {"linked.pdf", "packed.pdf"}) {
    SCOPED_TRACE(name);
    const fs::path file = receiver(name);
    const fs::path again = folder() / "again.pdf";
    fs::copy_file(file, again, fs::copy_options::overwrite_existing);
    for (const char* part : {"layers.pdf", "form.pdf", "linked.pdf"}) {
      ASSERT_TRUE(append(sample(part), file)) << lastError();
      ASSERT_TRUE(append(sample(part), again)) << lastError();
    }
    EXPECT_TRUE(bytesOf(file) == bytesOf(again));
  }
}

} // namespace melder_test
