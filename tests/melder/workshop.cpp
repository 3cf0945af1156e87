#include "workshop.h"

#include "melder/melder.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace melder_test {

namespace {

std::string quoted(const fs::path& file) {
  return "'" + file.string() + "'";
}

fs::path newFolder() {
  std::string name = (fs::temp_directory_path() / "melder-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) {
    std::abort();
  }
  fs::permissions(name, fs::perms(0755));
  return name;
}

} // namespace

Outcome run(const std::string& command) {
  Outcome outcome;
  std::FILE* pipe = popen(("timeout 120 " + command + " 2>&1").c_str(), "r");
  if (pipe == nullptr) {
    return outcome;
  }
  std::array<char, 4096> chunk = {};
  size_t got = 0;
  while ((got = std::fread(chunk.data(), 1, chunk.size(), pipe)) > 0) {
    outcome.text.append(chunk.data(), got);
  }
  const int status = pclose(pipe);
  outcome.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return outcome;
}

std::string bytesOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::ostringstream all;
  all << in.rdbuf();
  return all.str();
}

void writeBytes(const fs::path& file, const std::string& bytes) {
  std::ofstream(file, std::ios::binary)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

int inChild(const std::function<int()>& work) {
  const pid_t child = fork();
  if (child == 0) {
    _exit(work());
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

std::vector<std::string> look(const fs::path& file) {
  const Outcome seen =
      run(std::string(MELDER_PYTHON " " MELDER_SCRIPTS "/look.py ") + quoted(file));
  EXPECT_EQ(seen.code, 0) << seen.text;
  std::vector<std::string> lines;
  std::istringstream text(seen.text);
  for (std::string line; std::getline(text, line);) {
    lines.push_back(line);
  }
  return lines;
}

std::vector<std::string> linesOf(const std::vector<std::string>& lines,
                                 const std::string& beginning) {
  std::vector<std::string> found;
  for (const std::string& line : lines) {
    if (line.starts_with(beginning)) {
      found.push_back(line);
    }
  }
  return found;
}

std::vector<std::string> pageTexts(const fs::path& file) {
  const Outcome text = run("pdftotext " + quoted(file) + " -");
  EXPECT_EQ(text.code, 0) << text.text;
  std::vector<std::string> pages;
  std::istringstream rest(text.text);
  for (std::string page; std::getline(rest, page, '\f');) {
    pages.push_back(page.substr(0, page.find('\n')));
  }
  return pages;
}

std::string lastError() {
  return fs::path(std::u16string(MelderLastErrorText())).string();
}

void Workshop::SetUp() {
  m_folder = newFolder();
}

void Workshop::TearDown() {
  EXPECT_TRUE(litter().empty()) << "left behind: " << litter().front();
  fs::remove_all(m_folder);
}

fs::path Workshop::sample(const std::string& name) {
  return fs::path(MELDER_SAMPLES) / name;
}

fs::path Workshop::receiver(const std::string& name) const {
  fs::copy_file(sample(name), m_folder / name, fs::copy_options::overwrite_existing);
  return m_folder / name;
}

bool Workshop::append(const fs::path& addition, const fs::path& existing) {
  return getAppendPDFToFile(addition.u16string().c_str(), existing.u16string().c_str(), u"") != 0;
}

std::vector<std::string> Workshop::litter() const {
  std::vector<std::string> found;
  for (const auto& entry : fs::recursive_directory_iterator(m_folder)) {
    if (entry.path().filename().string().starts_with(".")) {
      found.push_back(entry.path().string());
    }
  }
  return found;
}

void Workshop::expectSound(const fs::path& file) {
  const Outcome check = run("qpdf --check " + quoted(file));
  EXPECT_EQ(check.code, 0) << check.text;
}

} // namespace melder_test
