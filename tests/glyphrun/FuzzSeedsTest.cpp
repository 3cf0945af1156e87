// Runs the stored inputs of the fuzz target, and damaged copies of them.

#include "Pages.h"

#include <fuzz/glyphrun_walk.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace glyphruntest {
namespace {

std::string contentsOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(FuzzSeeds, AllEndWell) {
  int seeds = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator(FOLIVEX_SOURCE_DIR "/fuzz/glyphrun_walk")) {
    const std::string bytes = contentsOf(entry.path());
    walkPdf(bytes.data(), bytes.size());
    ++seeds;
  }
  EXPECT_GT(seeds, 0);
}

TEST(FuzzSeeds, DamagedCopiesEndWell) {
  for (const auto& entry :
       std::filesystem::directory_iterator(FOLIVEX_SOURCE_DIR "/fuzz/glyphrun_walk")) {
    const std::string bytes = contentsOf(entry.path());
    std::uint32_t random = 12345;
    for (int round = 0; round < 40; ++round) {
      std::string damaged = bytes;
      for (int i = 0; i < 1 + round % 7; ++i) {
        random = random * 1664525 + 1013904223;
        damaged[random % damaged.size()] = static_cast<char>(random >> 24);
      }
      if (round % 10 == 9) {
        damaged.resize(random % damaged.size());
      }
      walkPdf(damaged.data(), damaged.size());
    }
  }
}

} // namespace
} // namespace glyphruntest
