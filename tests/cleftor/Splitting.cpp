#include "Splitting.h"

#include <QTemporaryDir>

#include <fstream>

namespace tests::cleftor {

std::string run(const std::string& command) {
  // The checker runs on hostile files, and a sanitizer that this program needs is not for others.
  const auto ended = folivex::test::runProgram(
      "/bin/sh", {"-c", QString::fromStdString("LD_PRELOAD= timeout 60 " + command + " 2>&1")});
  EXPECT_EQ(ended.exitCode, 0) << command << "\n" << ended.out.toStdString();
  return ended.out.toStdString();
}

std::string contentsOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void SplittingTest::SetUp() {
  folder_ = fs::path(source("out")).parent_path() / "outputs";
  fs::create_directories(folder_);
}

void SplittingTest::TearDown() {
  PdfTextDumpCloseFile();
  SetKeepBookmarks(0);
  fs::remove_all(folder_);
}

fs::path SplittingTest::source(const std::string& name) {
  static const QTemporaryDir folder;
  [[maybe_unused]] static const bool isMade = [] {
    makeSources(folder.path().toStdString());
    return true;
  }();
  return folder.filePath(QString::fromStdString(name + ".pdf")).toStdString();
}

int32_t SplittingTest::open(const std::string& name, const std::string& password) {
  return PdfTextDumpOpenFile(wide(source(name).string()).c_str(), wide(password).c_str());
}

int32_t SplittingTest::split(int32_t first, int32_t last, const std::string& name) {
  return SplitPdfPages(wide(output(name).string()).c_str(), first, last, GetPageCount2());
}

std::vector<std::string> SplittingTest::facts(const std::string& beginning) const {
  std::vector<std::string> lines;
  for (const QString& fact : folivex::test::factsOf(QString::fromStdString(output().string()))) {
    if ((fact + ' ').startsWith(QString::fromStdString(beginning) + ' ')) {
      lines.push_back(fact.toStdString());
    }
  }
  return lines;
}

std::vector<std::string> SplittingTest::files() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder_)) {
    names.push_back(entry.path().filename().string());
  }
  return names;
}

} // namespace tests::cleftor
