#include "Splitting.h"

#include <algorithm>

namespace tests::cleftor {

namespace {

using testing::HasSubstr;

class WriteBehindTest : public SplittingTest {
protected:
  void SetUp() override {
    SplittingTest::SetUp();
    SetWriteBehind(1);
  }

  void TearDown() override {
    SetWriteBehind(0);
    CleftorFailedRange failed{};
    while (TakeFailedRange(&failed) != CLEFTOR_OK) {
    }
    SplittingTest::TearDown();
  }
};

TEST_F(WriteBehindTest, WritesWhatWritingAtOnceWrites) {
  ASSERT_EQ(open("everything"), CLEFTOR_OK);
  for (int page = 1; page <= 12; ++page) {
    SetKeepBookmarks(page % 2);
    ASSERT_EQ(split(page, 12, "behind" + std::to_string(page)), CLEFTOR_OK) << errorText();
  }
  EXPECT_EQ(DrainRanges(-1), 0);
  EXPECT_EQ(GetProcessingPage(), 12);
  SetWriteBehind(0);
  for (int page = 1; page <= 12; ++page) {
    SetKeepBookmarks(page % 2);
    ASSERT_EQ(split(page, 12, "once"), CLEFTOR_OK) << errorText();
    EXPECT_TRUE(contentsOf(output("once")) == contentsOf(output("behind" + std::to_string(page))))
        << "from page " << page;
  }
  EXPECT_EQ(TakeFailedRange(nullptr), CLEFTOR_OK);
}

TEST_F(WriteBehindTest, OfManyWithOneTargetTheLastStays) {
  ASSERT_EQ(open("compressed"), CLEFTOR_OK);
  for (int i = 0; i < 300; ++i) {
    ASSERT_EQ(split(1 + i % 29, 30), CLEFTOR_OK);
  }
  ASSERT_EQ(split(30, 30), CLEFTOR_OK);
  PdfTextDumpCloseFile();
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
  CleftorFailedRange failed{};
  ASSERT_EQ(TakeFailedRange(&failed), CLEFTOR_CANNOT_WRITE);
  EXPECT_EQ(narrow(failed.target), output("no such folder/a.pdf").string());
  EXPECT_THAT(narrow(failed.reason), HasSubstr("No such file"));
  EXPECT_EQ(failed.first, 1);
  EXPECT_EQ(failed.last, 2);
  ASSERT_EQ(TakeFailedRange(&failed), CLEFTOR_CANNOT_WRITE);
  EXPECT_EQ(failed.last, 6);
  EXPECT_EQ(TakeFailedRange(&failed), CLEFTOR_OK);
  EXPECT_TRUE(fs::exists(output("good.pdf")));
}

/** Whatever is left is the tail of what was handed over, and the rest is there or has failed. */
TEST_F(WriteBehindTest, WhatIsNotLeftIsDone) {
  ASSERT_EQ(open("clinging"), CLEFTOR_OK);
  constexpr int count = 60;
  for (int i = 0; i < count; ++i) {
    ASSERT_EQ(split(1, 6, (i % 10 == 3 ? "none/" : "") + std::to_string(i)), CLEFTOR_OK);
  }
  int failures = 0;
  for (int left = count; left > 0;) {
    left = DrainRanges(1);
    for (; TakeFailedRange(nullptr) != CLEFTOR_OK; ++failures) {
    }
    for (int i = 0; i < count - left; ++i) {
      EXPECT_EQ(fs::exists(output(std::to_string(i))), i % 10 != 3) << i;
    }
    EXPECT_GE(failures, (count - left + 6) / 10);
  }
  EXPECT_EQ(failures, count / 10);
}

/** A range of more pages than may wait goes through, and what follows it. */
TEST_F(WriteBehindTest, RangesOfAnySizeFindRoom) {
  ASSERT_EQ(open("compressed"), CLEFTOR_OK);
  for (int i = 0; i < 12; ++i) {
    ASSERT_EQ(split(1, 30, std::to_string(i)), CLEFTOR_OK);
  }
  ASSERT_EQ(open("plain"), CLEFTOR_OK);
  EXPECT_EQ(files().size(), 12U);
}

} // namespace

} // namespace tests::cleftor
