// The file is the old one or the new one at every moment, whatever happens to the process.
#include "workshop.h"

#include "melder/melder.h"

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <random>
#include <sstream>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace melder_test {

namespace {

constexpr int kAppends = 8;

std::string appender(const fs::path& file, const fs::path& part, int times) {
  return MELDER_APPENDER " '" + file.string() + "' '" + part.string() + "' " +
         std::to_string(times);
}

pid_t startAppender(const fs::path& file, const fs::path& part) {
  const pid_t child = fork();
  if (child == 0) {
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    execl(MELDER_APPENDER, "melder_appender", file.c_str(), part.c_str(),
          std::to_string(kAppends).c_str(), "wait", nullptr);
    _exit(127);
  }
  return child;
}

void kill9(pid_t child) {
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
}

/** From now on this process gets `error` from the system call. */
bool breakCall(int number, int error) {
  sock_filter program[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(number), 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<unsigned>(error)),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)};
  const sock_fprog filter = {.len = 4, .filter = program};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
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
  const fs::path twin = folder() / "undisturbed" / "linked.pdf";
  fs::create_directory(twin.parent_path());
  size_t pages = 3;
  for (int round = 0; round < 50; ++round) {
    fs::copy_file(file, twin, fs::copy_options::overwrite_existing);
    const auto begin = std::chrono::steady_clock::now();
    const Outcome undisturbed = run(appender(twin, sample("one.pdf"), kAppends));
    const auto took = std::chrono::steady_clock::now() - begin;
    ASSERT_EQ(undisturbed.code, 0) << undisturbed.text;
    std::vector<size_t> sizes = {fs::file_size(file)};
    std::istringstream printed(undisturbed.text);
    for (size_t size = 0; printed >> size;) {
      sizes.push_back(size);
    }
    ASSERT_EQ(sizes.size(), size_t{kAppends} + 1);

    const pid_t child = startAppender(file, sample("one.pdf"));
    const auto whole = std::chrono::duration_cast<std::chrono::microseconds>(took).count();
    std::uniform_int_distribution<long long> moment(0, whole);
    std::this_thread::sleep_for(std::chrono::microseconds(moment(random)));
    kill9(child);

    const std::string after = bytesOf(file);
    const auto state = std::ranges::find(sizes, after.size());
    ASSERT_NE(state, sizes.end()) << "round " << round << ": " << after.size() << " bytes";
    ASSERT_EQ(after, bytesOf(twin).substr(0, after.size())) << "round " << round;
    pages += static_cast<size_t>(state - sizes.begin());
  }
  // What the last killed process left beside the file goes with the next append.
  ASSERT_TRUE(append(sample("one.pdf"), file)) << lastError();
  EXPECT_EQ(pageTexts(file).size(), pages + 1);
  expectSound(file);
}

TEST_F(Safety, DyingInTheMiddleOfAWriteLeavesTheOldFile) {
  const fs::path file = receiver("plain.pdf");
  ASSERT_TRUE(append(sample("one.pdf"), file)) << lastError();
  const std::string old = bytesOf(file);
  for (const size_t room : {1U, 1000U, 5000U, 20000U}) {
    SCOPED_TRACE(room);
    const int end = inChild([&] {
      limitFileSize(old.size() + room);
      return append(sample("turned.pdf"), file) && append(sample("form.pdf"), file) ? 0 : 1;
    });
    EXPECT_TRUE(end == -SIGXFSZ || end == 0) << end;
    const std::string now = bytesOf(file);
    EXPECT_TRUE(now.starts_with(old));
    fs::copy_file(file, folder() / "state.pdf", fs::copy_options::overwrite_existing);
    EXPECT_GE(pageTexts(folder() / "state.pdf").size(), 4U);
    expectSound(folder() / "state.pdf");
    writeBytes(file, old);
  }
  ASSERT_TRUE(append(sample("one.pdf"), file)) << lastError();
}

TEST_F(Safety, AFullDiskLeavesTheOldFileAndNothingBeside) {
  const fs::path file = receiver("plain.pdf");
  const std::string old = bytesOf(file);
  for (const size_t room : {0U, 300U, 15000U}) {
    SCOPED_TRACE(room);
    const int end = inChild([&] {
      signal(SIGXFSZ, SIG_IGN);
      limitFileSize(old.size() + room);
      if (append(sample("one.pdf"), file) || GetStatus() != MELDER_CANNOT_WRITE ||
          lastError().find("/plain.pdf: cannot write: ") == std::string::npos ||
          !litter().empty()) {
        return 1;
      }
      // With room again it works, in the same process.
      limitFileSize(RLIM_INFINITY);
      const bool works = append(sample("one.pdf"), file);
      FinishAppends();
      return works ? 0 : 2;
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

TEST_F(Safety, WithoutAnExchangeOfNamesItStillWorks) {
  const fs::path file = receiver("plain.pdf");
  const int end = inChild([&] {
    if (!breakCall(SYS_renameat2, EINVAL) || !breakCall(SYS_copy_file_range, EOPNOTSUPP)) {
      return 3;
    }
    for (int i = 0; i < 5; ++i) {
      if (!append(sample("one.pdf"), file)) {
        return 1;
      }
    }
    return litter().empty() ? 0 : 2;
  });
  EXPECT_EQ(end, 0);
  EXPECT_EQ(pageTexts(file).size(), 8U);
  expectSound(file);
}

TEST_F(Safety, WhoHoldsTheOldFileKeepsTheOldFile) {
  const fs::path file = receiver("plain.pdf");
  const std::string old = bytesOf(file);
  fs::create_hard_link(file, folder() / "backup.pdf");
  ASSERT_TRUE(append(sample("one.pdf"), file)) << lastError();
  const std::string held = bytesOf(file);
  const int reader = open(file.c_str(), O_RDONLY);
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(append(sample("one.pdf"), file)) << lastError();
  }
  std::string read(held.size() + 1000, '\0');
  const ssize_t got = pread(reader, read.data(), read.size(), 0);
  close(reader);
  EXPECT_EQ(read.substr(0, static_cast<size_t>(got)), held);
  EXPECT_EQ(bytesOf(folder() / "backup.pdf"), old);
  EXPECT_EQ(pageTexts(file).size(), 7U);
}

TEST_F(Safety, ALinkStaysALinkAndTheModeStays) {
  const fs::path file = receiver("plain.pdf");
  fs::permissions(file, fs::perms(0640));
  fs::create_directory(folder() / "links");
  const fs::path link = folder() / "links" / "to.pdf";
  fs::create_symlink("../plain.pdf", link);
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(append(sample("one.pdf"), link)) << lastError();
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0640));
  }
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(pageTexts(file).size(), 6U);
}

TEST_F(Safety, AFileThatOthersChangeMeanwhileIsReadAnew) {
  const fs::path file = receiver("plain.pdf");
  ASSERT_TRUE(append(sample("one.pdf"), file)) << lastError();
  fs::remove(file);
  fs::copy_file(sample("linked.pdf"), file);
  ASSERT_TRUE(append(sample("one.pdf"), file)) << lastError();
  EXPECT_EQ(pageTexts(file), (std::vector<std::string>{"linked 1", "linked 2", "linked 3", "one"}));
  fs::remove(file);
  EXPECT_FALSE(append(sample("one.pdf"), file));
  EXPECT_EQ(GetStatus(), MELDER_CANNOT_OPEN);
  EXPECT_FALSE(fs::exists(file));
}

TEST_F(Safety, AProcessThatJustEndsTidiesUp) {
  const fs::path file = receiver("plain.pdf");
  const Outcome ended = run(appender(file, sample("one.pdf"), 3) + " leave");
  EXPECT_EQ(ended.code, 0) << ended.text;
  EXPECT_TRUE(litter().empty());
  EXPECT_EQ(pageTexts(file).size(), 6U);
}

TEST_F(Safety, TwoProcessesLoseNoPage) {
  const fs::path file = receiver("plain.pdf");
  const std::string command = appender(file, sample("one.pdf"), 25);
  const Outcome both =
      run("sh -c \"" + command + " >/dev/null & " + command + " >/dev/null; wait\"");
  EXPECT_EQ(both.code, 0) << both.text;
  EXPECT_EQ(pageTexts(file).size(), 53U);
  ASSERT_TRUE(append(sample("one.pdf"), file)) << lastError();
  expectSound(file);
}

} // namespace melder_test
