// Files written aside, on the file layer of Windows.
#include "common/AsideFile.h"
#include "common/Failure.h"
#include "common/FileLock.h"
#include "common/WindowsFile.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <fstream>
#include <iterator>

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

} // namespace
} // namespace common
