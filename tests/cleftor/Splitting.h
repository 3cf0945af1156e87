#pragma once

#include <tests/support/PdfBuilder.h>
#include <tests/support/PdfFacts.h>
#include <tests/support/Utf16.h>

#include <cleftor/cleftor.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tests::cleftor {

namespace fs = std::filesystem;

using folivex::test::narrow;
using folivex::test::wide;
using testpdf::PdfBuilder;

/// Runs a command, which must succeed; its standard output.
std::string run(const std::string& command);

/// The text of a file, empty when there is none.
std::string contentsOf(const fs::path& file);

/// Makes the PDFs of all tests; each is name.pdf in the folder.
void makeSources(const fs::path& folder);

/// Opens sources that are made once for the whole program, and splits into a folder of each test.
class SplittingTest : public testing::Test {
protected:
  void SetUp() override;
  void TearDown() override;

  /// The source of that name, as makeSources calls it.
  static fs::path source(const std::string& name);

  int32_t open(const std::string& name, const std::string& password = {});

  /// Writes pages first..last of the open source; the result, and the file in output().
  int32_t split(int32_t first, int32_t last, const std::string& name = "out.pdf");
  fs::path output(const std::string& name = "out.pdf") const { return folder_ / name; }

  /// The facts of out.pdf that begin with a word.
  std::vector<std::string> facts(const std::string& beginning) const;

  static std::string errorText() { return narrow(CleftorLastErrorText()); }

  /// Names of all files in the test's folder.
  std::vector<std::string> files() const;

  fs::path folder_;
};

} // namespace tests::cleftor
