#ifndef TESTS_MELDER_WORKSHOP_H
#define TESTS_MELDER_WORKSHOP_H

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace melder_test {

namespace fs = std::filesystem;

/** What a command printed, and how it ended. */
struct Outcome {
  int code = -1;
  std::string text;
};

/** Runs a command line of the shell with a limit of time. */
[[nodiscard]] Outcome run(const std::string& command);
[[nodiscard]] std::string bytesOf(const fs::path& file);
void writeBytes(const fs::path& file, const std::string& bytes);
/** Runs `work` in a child process; returns its result, or minus the signal that ended it. */
[[nodiscard]] int inChild(const std::function<int()>& work);
/** Pages, texts, links, fields and so on as independent readers see them, one fact a line. */
[[nodiscard]] std::vector<std::string> look(const fs::path& file);
/** The lines that begin so. */
[[nodiscard]] std::vector<std::string> linesOf(const std::vector<std::string>& lines,
                                               const std::string& beginning);
/** The first words of each page, as pdftotext reads them. */
[[nodiscard]] std::vector<std::string> pageTexts(const fs::path& file);
[[nodiscard]] std::string lastError();

/** A folder of its own with the sample parts in it. */
class Workshop : public testing::Test {
protected:
  void SetUp() override;
  void TearDown() override;

  [[nodiscard]] static fs::path sample(const std::string& name);
  /** A copy of a sample that a test may append to. */
  [[nodiscard]] fs::path receiver(const std::string& name) const;
  [[nodiscard]] fs::path folder() const { return m_folder; }
  [[nodiscard]] static bool append(const fs::path& addition, const fs::path& existing);
  /** Hidden files of the folder. */
  [[nodiscard]] std::vector<std::string> litter() const;
  /** Checks that qpdf finds nothing wrong. */
  static void expectSound(const fs::path& file);

private:
  fs::path m_folder;
};

} // namespace melder_test

#endif
