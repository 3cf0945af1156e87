#include "Splitting.h"

#include <QTemporaryDir>

#include <array>
#include <cstdio>
#include <fstream>

namespace tests::cleftor {

std::string run(const std::string& command) {
  // The checker runs on hostile files, and a sanitizer that this program needs is not for others.
  std::FILE* const pipe = popen(("LD_PRELOAD= timeout 60 " + command + " 2>&1").c_str(), "r");
  std::string out;
  std::array<char, 4096> buffer{};
  for (size_t got = 0; (got = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;) {
    out.append(buffer.data(), got);
  }
  EXPECT_EQ(pclose(pipe), 0) << command << "\n" << out;
  return out;
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
  run("qpdf --check " + output().string());
  std::istringstream text(run("/usr/bin/python3 " FOLIVEX_SOURCE_DIR "/tests/cleftor/describe.py " +
                              output().string()));
  std::vector<std::string> lines;
  for (std::string line; std::getline(text, line);) {
    // The reader's binding complains about itself.
    if (line.rfind(beginning, 0) == 0 && line.rfind("swig/python", 0) != 0) {
      lines.push_back(line);
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
