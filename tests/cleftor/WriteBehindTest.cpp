#include "Splitting.h"

#include <algorithm>
#include <array>

namespace tests::cleftor {

namespace {

using testing::HasSubstr;

class WriteBehindTest : public SplittingTest {
protected:
  void SetUp() override {
    SplittingTest::SetUp();
    SetWriteBehind(1);
    while (TakeFinishedRange(nullptr) != 0) {
    }
  }

  void TearDown() override {
    SetWriteBehind(0);
    SplittingTest::TearDown();
  }
};

/// So many ranges that the second thread joins in; each keeps the settings of its call.
TEST_F(WriteBehindTest, WritesWhatWritingAtOnceWrites) {
  ASSERT_EQ(open("everything"), CLEFTOR_OK);
  constexpr int count = 480;
  const auto first = [](int range) { return 1 + range % 12; };
  const auto keep = [](int range) { return range / 12 % 2; };
  for (int range = 0; range < count; ++range) {
    SetKeepBookmarks(keep(range));
    ASSERT_EQ(split(first(range), 12, "behind" + std::to_string(range)), CLEFTOR_OK);
  }
  EXPECT_EQ(DrainRanges(-1), 0);
  EXPECT_EQ(GetProcessingPage(), 12);
  SetWriteBehind(0);
  std::array<std::string, 24> atOnce;
  for (int range = 0; range < 24; ++range) {
    SetKeepBookmarks(keep(range));
    ASSERT_EQ(split(first(range), 12, "once"), CLEFTOR_OK) << errorText();
    atOnce[static_cast<size_t>(range)] = contentsOf(output("once"));
  }
  for (int range = 0; range < count; ++range) {
    EXPECT_TRUE(contentsOf(output("behind" + std::to_string(range))) ==
                atOnce[static_cast<size_t>(range % 24)])
        << range;
  }
  CleftorFinishedRange finished{};
  for (int range = 0; range < count; ++range) {
    ASSERT_EQ(TakeFinishedRange(&finished), 1);
    EXPECT_EQ(finished.code, CLEFTOR_OK);
    EXPECT_EQ(narrow(finished.target), output("behind" + std::to_string(range)).string());
  }
  EXPECT_EQ(TakeFinishedRange(&finished), 0);
}

TEST_F(WriteBehindTest, OfManyWithOneTargetTheLastStays) {
  ASSERT_EQ(open("compressed"), CLEFTOR_OK);
  for (int i = 0; i < 300; ++i) {
    ASSERT_EQ(split(1 + i % 29, 30), CLEFTOR_OK);
  }
  ASSERT_EQ(split(30, 30), CLEFTOR_OK);
  ASSERT_EQ(open("plain"), CLEFTOR_OK);
  EXPECT_THAT(run("pdftotext " + output().string() + " -"), testing::StartsWith("Page number 30"));
  EXPECT_THAT(files(), testing::ElementsAre("out.pdf"));
}

TEST_F(WriteBehindTest, FailuresAreToldOnceAndOutliveTheSource) {
  ASSERT_EQ(open("plain"), CLEFTOR_OK);
  EXPECT_EQ(split(5, 7), CLEFTOR_BAD_RANGE);
  ASSERT_EQ(split(1, 2, "no such folder/a.pdf"), CLEFTOR_OK);
  ASSERT_EQ(split(3, 4, "good.pdf"), CLEFTOR_OK);
  ASSERT_EQ(split(5, 6, "no such folder/b.pdf"), CLEFTOR_OK);
  PdfTextDumpCloseFile();
  SetWriteBehind(0);
  CleftorFinishedRange range{};
  ASSERT_EQ(TakeFinishedRange(&range), 1);
  EXPECT_EQ(range.code, CLEFTOR_CANNOT_WRITE);
  EXPECT_EQ(narrow(range.target), output("no such folder/a.pdf").string());
  EXPECT_THAT(narrow(range.reason), HasSubstr("No such file"));
  EXPECT_EQ(range.first, 1);
  EXPECT_EQ(range.last, 2);
  ASSERT_EQ(TakeFinishedRange(&range), 1);
  EXPECT_EQ(range.code, CLEFTOR_OK);
  EXPECT_EQ(range.file.size, fs::file_size(output("good.pdf")));
  EXPECT_EQ(range.file.hasDigest, 0);
  ASSERT_EQ(TakeFinishedRange(&range), 1);
  EXPECT_EQ(range.code, CLEFTOR_CANNOT_WRITE);
  EXPECT_EQ(range.last, 6);
  EXPECT_EQ(TakeFinishedRange(&range), 0);
  EXPECT_TRUE(fs::exists(output("good.pdf")));
}

/// Whatever is left is the tail of what was handed over, and the rest is there or has failed; the
/// failures come in the order of the calls.
TEST_F(WriteBehindTest, WhatIsNotLeftIsDone) {
  ASSERT_EQ(open("clinging"), CLEFTOR_OK);
  constexpr int count = 300;
  for (int i = 0; i < count; ++i) {
    ASSERT_EQ(split(1, 3, (i % 10 == 3 ? "none/" : "") + std::to_string(i)), CLEFTOR_OK);
  }
  std::vector<std::string> failures;
  int taken = 0;
  for (int left = count; left > 0;) {
    left = DrainRanges(1);
    CleftorFinishedRange range{};
    while (TakeFinishedRange(&range) != 0) {
      ++taken;
      if (range.code != CLEFTOR_OK) {
        failures.push_back(fs::path(narrow(range.target)).filename().string());
      }
    }
    EXPECT_GE(taken, count - left);
    for (int i = 0; i < count - left; ++i) {
      EXPECT_EQ(fs::exists(output(std::to_string(i))), i % 10 != 3) << i;
    }
    EXPECT_GE(failures.size(), static_cast<size_t>((count - left + 6) / 10));
  }
  std::vector<std::string> expected;
  for (int i = 3; i < count; i += 10) {
    expected.push_back(std::to_string(i));
  }
  EXPECT_EQ(failures, expected);
}

/// Also of a file whose bytes did not stay in memory until the last one was known.
TEST_F(WriteBehindTest, TheDigestIsThatOfTheFile) {
  SetDigests(1);
  PdfBuilder bulky;
  constexpr size_t side = 1500;
  const int picture = bulky.addStream(std::string(side * side, 'x'),
                                      "/Subtype/Image/ColorSpace/DeviceGray/BitsPerComponent 8"
                                      "/Width 1500/Height 1500");
  bulky.addPage("/Im Do", "/XObject<</Im " + PdfBuilder::ref(picture) + ">>");
  bulky.write(output("bulky.pdf").string());
  for (const fs::path& name : {source("plain"), output("bulky.pdf")}) {
    ASSERT_EQ(PdfTextDumpOpenFile(wide(name.string()).c_str(), u""), CLEFTOR_OK);
    ASSERT_EQ(split(1, 1), CLEFTOR_OK);
    DrainRanges(-1);
    CleftorFinishedRange range{};
    ASSERT_EQ(TakeFinishedRange(&range), 1);
    ASSERT_EQ(range.file.hasDigest, 1);
    std::string hex;
    for (const uint8_t byte : range.file.sha256) {
      hex += "0123456789abcdef"[byte >> 4];
      hex += "0123456789abcdef"[byte & 15];
    }
    EXPECT_EQ(run("sha256sum " + output().string()).substr(0, 64), hex) << name;
  }
  EXPECT_GT(fs::file_size(output()), 2'000'000U);
  SetDigests(0);
}

/// What was opened is still read, but the words that chose these pages may be of the other one.
TEST_F(WriteBehindTest, NothingIsWrittenOfASourceThatIsAnotherOneNow) {
  const fs::path place = output("source.pdf");
  fs::copy_file(source("compressed"), place);
  ASSERT_EQ(PdfTextDumpOpenFile(wide(place.string()).c_str(), u""), CLEFTOR_OK);
  ASSERT_EQ(split(1, 1, "before.pdf"), CLEFTOR_OK);
  ASSERT_EQ(DrainRanges(-1), 0);
  const fs::path other = output("other.pdf");
  fs::copy_file(source("everything"), other);
  fs::rename(other, place);
  for (int i = 0; i < 300; ++i) {
    ASSERT_EQ(split(1 + i % 30, 1 + i % 30, std::to_string(i)), CLEFTOR_OK);
  }
  PdfTextDumpCloseFile();
  CleftorFinishedRange range{};
  ASSERT_EQ(TakeFinishedRange(&range), 1);
  EXPECT_EQ(range.code, CLEFTOR_OK);
  for (int i = 0; i < 300; ++i) {
    ASSERT_EQ(TakeFinishedRange(&range), 1);
    EXPECT_EQ(range.code, CLEFTOR_SOURCE_CHANGED) << i;
  }
  EXPECT_THAT(files(), testing::UnorderedElementsAre("before.pdf", "source.pdf"));
}

} // namespace

} // namespace tests::cleftor
