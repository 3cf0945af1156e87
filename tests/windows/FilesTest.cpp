// Files written aside, on the file layer of Windows.
#include "common/AsideFile.h"
#include "common/Failure.h"
#include "common/FileLock.h"
#include "common/Paths.h"
#include "common/WindowsFile.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <fstream>
#include <iterator>
#include <vector>

namespace common {
namespace {

namespace fs = std::filesystem;

std::string utf8(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

class Files : public testing::Test {
protected:
  Files() { fs::create_directories(m_folder); }
  ~Files() override { fs::remove_all(m_folder); }

  static void write(const fs::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
  }
  static std::string read(const fs::path& path) {
    int error = 0;
    std::FILE* const file = files::openToRead(path, Links::Followed, error);
    std::string bytes;
    for (int c = file != nullptr ? std::fgetc(file) : EOF; c != EOF; c = std::fgetc(file)) {
      bytes += static_cast<char>(c);
    }
    if (file != nullptr) {
      std::fclose(file);
    }
    return bytes;
  }
  /// Writes "new" to `path`; empty, or why not.
  static std::string replace(const fs::path& path, AsideOptions options = {}) {
    try {
      AsideFile file(utf8(path), std::move(options));
      file.append("new");
      const FileIdentity kept = file.keep();
      EXPECT_EQ(FileIdentity::of(utf8(path)), kept) << "another file than the one written";
      return {};
    } catch (const Failure& failure) {
      return failure.what();
    }
  }
  size_t entries() const {
    return static_cast<size_t>(std::distance(fs::directory_iterator(m_folder), {}));
  }

  fs::path m_folder =
      fs::temp_directory_path() / (L"folivex Äpfel " + std::to_wstring(GetCurrentProcessId()));
  fs::path m_target = m_folder / L"Zoë 中.pdf";
};

TEST_F(Files, AFileThatIsOpenElsewhereIsToldAndStays) {
  write(m_target, "old");
  for (const std::string& model : {std::string(), utf8(m_target)}) {
    const HANDLE viewer = CreateFileW(m_target.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, 0, nullptr);
    EXPECT_NE(replace(m_target, {.model = model}).find("another program has it open"),
              std::string::npos);
    EXPECT_EQ(read(m_target), "old");
    EXPECT_EQ(entries(), 1U) << "the part was left";
    CloseHandle(viewer);
  }
  EXPECT_EQ(replace(m_target, {.outlastsPowerFailure = true}), "");
  EXPECT_EQ(read(m_target), "new");
}

TEST_F(Files, WhoReadsItMeanwhileGoesOnReadingTheOldOne) {
  write(m_target, "old");
  int error = 0;
  std::FILE* const reader = files::openToRead(m_target, Links::Followed, error);
  ASSERT_NE(reader, nullptr);
  const FileLock lock(utf8(m_target));
  EXPECT_EQ(replace(m_target, {.model = utf8(m_target)}), "");
  EXPECT_EQ(std::fgetc(reader), 'o');
  EXPECT_EQ(read(m_target), "new");
  std::fclose(reader);
}

TEST_F(Files, ANameIsTakenOnce) {
  int error = 0;
  std::unique_ptr<PartFile> claim = PartFile::make(m_target, files::Readers::Usual, error);
  ASSERT_NE(claim, nullptr);
  EXPECT_EQ(PartFile::make(m_target, files::Readers::Usual, error), nullptr);
  EXPECT_EQ(error, EBUSY);
  EXPECT_EQ(files::removeUnused(PartFile::placeFor(m_target)), EBUSY);
  write(m_target, "somebody else's");
  EXPECT_NE(replace(m_target, {.claim = std::move(claim)}).find("has put a file there"),
            std::string::npos);
  EXPECT_EQ(read(m_target), "somebody else's");
  EXPECT_EQ(entries(), 1U);
}

TEST_F(Files, WhatADeadProcessLeftIsRemoved) {
  write(PartFile::placeFor(m_target), "half");
  EXPECT_EQ(replace(m_target), "");
  EXPECT_EQ(entries(), 1U);
  fs::create_directory(PartFile::placeFor(m_target));
  EXPECT_NE(replace(m_target), "");
  EXPECT_EQ(read(m_target), "new");
}

/// The same size within one second: only the number of the file and fine times tell.
TEST_F(Files, AnotherFileUnderTheNameShows) {
  EXPECT_EQ(replace(m_target), "");
  const auto first = FileIdentity::of(utf8(m_target));
  EXPECT_EQ(replace(m_target), "");
  const auto second = FileIdentity::of(utf8(m_target));
  EXPECT_NE(first, second);
  EXPECT_NE(second->number, 0U);
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  EXPECT_LT(std::chrono::abs(now - std::chrono::nanoseconds(second->changed)),
            std::chrono::hours(1));
  EXPECT_EQ(FileIdentity::of(utf8(m_folder / "none")), std::nullopt);
}

TEST_F(Files, LongPathsAndOnesOfTheSystemItself) {
  fs::path deep = m_folder;
  for (int i = 0; i < 4; ++i) {
    deep /= std::wstring(70, L'x');
    ASSERT_TRUE(CreateDirectoryW(files::longForm(deep).c_str(), nullptr)) << i;
  }
  ASSERT_GT(deep.native().size(), 260U);
  const fs::path target = deep / L"a.pdf";
  EXPECT_EQ(replace(target), "");
  EXPECT_EQ(read(target), "new");
  EXPECT_EQ(replace(target, {.model = utf8(target)}), "");
  EXPECT_EQ(files::removeUnused(target), 0);
  for (int i = 0; i < 4; ++i, deep = deep.parent_path()) {
    ASSERT_TRUE(RemoveDirectoryW(files::longForm(deep).c_str())) << i;
  }
  int error = -1;
  for (const fs::path& none : {m_folder, fs::path("nul")}) {
    EXPECT_EQ(files::openToRead(none, Links::Followed, error), nullptr);
    EXPECT_EQ(error, 0) << none;
  }
  EXPECT_EQ(files::openToRead(m_folder / "none", Links::Followed, error), nullptr);
  EXPECT_EQ(error, ENOENT);
}

/// Processes of this program, each of which runs one of the tests below that is no test by itself.
class Others {
public:
  /// The folder is what they find in FOLIVEX_TEST_FOLDER.
  Others(const wchar_t* test, int count, const fs::path& folder) {
    SetEnvironmentVariableW(L"FOLIVEX_TEST_FOLDER", folder.c_str());
    wchar_t program[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    for (int i = 0; i < count; ++i) {
      std::wstring line = L'"' + std::wstring(program) + L"\" --gtest_also_run_disabled_tests " +
                          L"--gtest_brief=1 --gtest_filter=InAnother.DISABLED_" + test;
      STARTUPINFOW start{};
      start.cb = sizeof start;
      PROCESS_INFORMATION made{};
      EXPECT_TRUE(CreateProcessW(program, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                                 &start, &made));
      CloseHandle(made.hThread);
      m_processes.emplace_back(made.hProcess);
    }
  }
  void kill() const {
    for (const files::Handle& process : m_processes) {
      TerminateProcess(process.get(), 1);
      WaitForSingleObject(process.get(), INFINITE);
    }
  }
  void wait() const {
    for (const files::Handle& process : m_processes) {
      DWORD code = 1;
      WaitForSingleObject(process.get(), INFINITE);
      GetExitCodeProcess(process.get(), &code);
      EXPECT_EQ(code, 0U);
    }
  }

private:
  std::vector<files::Handle> m_processes;
};

fs::path folderOfOthers() {
  wchar_t folder[MAX_PATH] = {};
  GetEnvironmentVariableW(L"FOLIVEX_TEST_FOLDER", folder, MAX_PATH);
  return folder;
}

constexpr int names = 40;
constexpr int processes = 6;

TEST(InAnother, DISABLED_ClaimsNames) {
  const std::string own = std::to_string(GetCurrentProcessId());
  std::ofstream won(folderOfOthers() / ("won-" + own));
  for (int name = 0; name < names; ++name) {
    const fs::path target = folderOfOthers() / (std::to_string(name) + ".pdf");
    int error = 0;
    std::unique_ptr<PartFile> claim = PartFile::make(target, files::Readers::Usual, error);
    try {
      if (claim != nullptr) {
        AsideFile file(utf8(target), {.claim = std::move(claim)});
        file.append(own);
        file.keep();
        won << name << '\n';
      }
    } catch (const Failure&) {
      // Somebody else has it by now.
    }
  }
}

TEST(InAnother, DISABLED_AddsLines) {
  const std::string path = utf8(folderOfOthers() / "lines.pdf");
  for (int line = 0; line < names; ++line) {
    const FileLock lock(path);
    int error = 0;
    std::FILE* const old = files::openToRead(pathOf(path), Links::Refused, error);
    ASSERT_NE(old, nullptr);
    AsideFile file(path, {.model = path});
    for (int c = std::fgetc(old); c != EOF; c = std::fgetc(old)) {
      file.append(std::string(1, static_cast<char>(c)));
    }
    std::fclose(old);
    file.append("x");
    file.keep();
  }
}

TEST(InAnother, DISABLED_HoldsAName) {
  int error = 0;
  const auto part = PartFile::make(folderOfOthers() / "held.pdf", files::Readers::Usual, error);
  Sleep(INFINITE);
}

TEST_F(Files, ManyProcessesNeverGetOneName) {
  Others(L"ClaimsNames", processes, m_folder).wait();
  std::vector<std::string> winners(names);
  for (const fs::directory_entry& entry : fs::directory_iterator(m_folder)) {
    const std::string title = utf8(entry.path().filename());
    std::ifstream won(entry.path());
    for (int name = 0; title.starts_with("won-") && won >> name;) {
      EXPECT_EQ(winners[static_cast<size_t>(name)], "") << name << " was won twice";
      winners[static_cast<size_t>(name)] = title.substr(4);
    }
  }
  for (int name = 0; name < names; ++name) {
    EXPECT_EQ(read(m_folder / (std::to_string(name) + ".pdf")), winners[static_cast<size_t>(name)]);
  }
  EXPECT_EQ(entries(), size_t{names} + processes) << "a part was left";
}

TEST_F(Files, WhatTwoProcessesAddIsAllThere) {
  write(m_folder / "lines.pdf", "");
  Others(L"AddsLines", 2, m_folder).wait();
  EXPECT_EQ(read(m_folder / "lines.pdf"), std::string(2 * names, 'x'));
  EXPECT_EQ(entries(), 1U);
}

TEST_F(Files, WhatAKilledProcessHeldIsFreeAgain) {
  const fs::path target = m_folder / "held.pdf";
  const Others holder(L"HoldsAName", 1, m_folder);
  int error = 0;
  while (PartFile::make(target, files::Readers::Usual, error) != nullptr) {
    Sleep(1); // until the other one has it
  }
  EXPECT_EQ(error, EBUSY);
  EXPECT_NE(replace(target), "");
  holder.kill();
  EXPECT_EQ(replace(target), "");
  EXPECT_EQ(entries(), 1U);
}

} // namespace
} // namespace common
