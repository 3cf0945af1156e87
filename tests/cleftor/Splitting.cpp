#include "Splitting.h"

#include <array>
#include <codecvt>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace tests::cleftor {

namespace {

fs::path temporary(const std::string& name) {
  return fs::temp_directory_path() / ("cleftor-" + name + "-" + std::to_string(getpid()));
}

/// The made sources, gone with the program.
class Sources {
public:
  Sources() : folder_(temporary("sources")) {
    fs::create_directories(folder_);
    int status = 0;
    run("/usr/bin/python3 " CLEFTOR_TEST_SCRIPTS "/make_sources.py " + folder_.string(), status);
    if (status != 0) {
      std::fprintf(stderr, "the sources could not be made\n");
      std::abort();
    }
  }
  ~Sources() { fs::remove_all(folder_); }
  Sources(const Sources&) = delete;
  Sources& operator=(const Sources&) = delete;

  const fs::path& folder() const { return folder_; }

private:
  fs::path folder_;
};

const fs::path& sourceFolder() {
  static const Sources sources;
  return sources.folder();
}

} // namespace

std::u16string wide(const std::string& utf8) {
  return std::wstring_convert<std::codecvt_utf8_utf16<char16_t>, char16_t>().from_bytes(utf8);
}

std::string narrow(const char16_t* text) {
  return std::wstring_convert<std::codecvt_utf8_utf16<char16_t>, char16_t>().to_bytes(text);
}

std::string run(const std::string& command, int& status) {
  // The checker runs on hostile files, and a sanitizer that this program needs is not for others.
  std::FILE* const pipe = popen(("LD_PRELOAD= timeout 60 " + command + " 2>&1").c_str(), "r");
  std::string out;
  std::array<char, 4096> buffer{};
  for (size_t got = 0; (got = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;) {
    out.append(buffer.data(), got);
  }
  status = WEXITSTATUS(pclose(pipe));
  return out;
}

std::string run(const std::string& command) {
  int status = 0;
  std::string out = run(command, status);
  EXPECT_EQ(status, 0) << command << "\n" << out;
  return out;
}

std::string contentsOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void writeFile(const fs::path& file, const std::string& bytes) {
  std::ofstream(file, std::ios::binary) << bytes;
}

void SplittingTest::SetUpTestSuite() {
  sourceFolder();
}

void SplittingTest::SetUp() {
  folder_ = temporary(testing::UnitTest::GetInstance()->current_test_info()->name());
  fs::create_directories(folder_);
}

void SplittingTest::TearDown() {
  PdfTextDumpCloseFile();
  SetKeepBookmarks(0);
  fs::remove_all(folder_);
}

fs::path SplittingTest::source(const std::string& name) {
  return sourceFolder() / (name + ".pdf");
}

int32_t SplittingTest::open(const std::string& name, const std::string& password) {
  return PdfTextDumpOpenFile(wide(source(name).string()).c_str(), wide(password).c_str());
}

int32_t SplittingTest::split(int32_t first, int32_t last, const std::string& name) {
  return SplitPdfPages(wide(output(name).string()).c_str(), first, last, GetPageCount2());
}

std::vector<std::string> SplittingTest::factsOf(const fs::path& file) const {
  run("qpdf --check " + file.string());
  std::istringstream text(
      run("/usr/bin/python3 " CLEFTOR_TEST_SCRIPTS "/describe.py " + file.string()));
  std::vector<std::string> lines;
  for (std::string line; std::getline(text, line);) {
    // The reader's binding complains about itself.
    if (line.rfind("swig/python", 0) != 0) {
      lines.push_back(line);
    }
  }
  return lines;
}

std::vector<std::string> SplittingTest::facts(const std::string& name) const {
  return factsOf(output(name));
}

std::vector<std::string> SplittingTest::facts(const std::string& name,
                                              const std::string& beginning) const {
  std::vector<std::string> found;
  for (const std::string& line : facts(name)) {
    if (line.rfind(beginning, 0) == 0) {
      found.push_back(line);
    }
  }
  return found;
}

std::vector<std::string> SplittingTest::files() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder_)) {
    names.push_back(entry.path().filename().string());
  }
  return names;
}

} // namespace tests::cleftor
