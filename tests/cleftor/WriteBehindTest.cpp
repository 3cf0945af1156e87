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
  DrainRanges();
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

/** However far the writing had come: every range is a whole file or a failure, and never both. */
TEST_F(WriteBehindTest, GivingUpLosesTrackOfNoRange) {
  ASSERT_EQ(open("clinging"), CLEFTOR_OK);
  constexpr int count = 60;
  for (int i = 0; i < count; ++i) {
    ASSERT_EQ(split(1, 6, std::to_string(i)), CLEFTOR_OK);
  }
  DropRanges();
  DrainRanges();
  int dropped = 0;
  CleftorFailedRange failed{};
  for (int32_t code = 0; (code = TakeFailedRange(&failed)) != CLEFTOR_OK; ++dropped) {
    EXPECT_EQ(code, CLEFTOR_DROPPED);
    EXPECT_FALSE(fs::exists(narrow(failed.target)));
  }
  EXPECT_EQ(static_cast<int>(files().size()) + dropped, count);
  ASSERT_EQ(split(2, 2, "after"), CLEFTOR_OK);
  ASSERT_EQ(open("plain"), CLEFTOR_OK);
  EXPECT_TRUE(fs::exists(output("after")));
}

} // namespace

} // namespace tests::cleftor
