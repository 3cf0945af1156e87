#include "Splitting.h"

namespace tests::cleftor {

namespace {

class KeepingTest : public SplittingTest {};

/// A row is made of a source, with its bookmarks or not, and ranges of its pages in one file.
TEST_F(KeepingTest, WhatGoesWithItsPages) {
  folivex::test::expectFacts("cleftor/keeping.txt", [this](const QStringList& how) {
    SetKeepBookmarks(how[1] == "bookmarks" ? 1 : 0);
    EXPECT_EQ(open(how[0].toStdString()), CLEFTOR_OK);
    std::vector<int32_t> ends;
    for (const QString& page : how.mid(2).join('-').split('-')) {
      ends.push_back(page.toInt());
    }
    EXPECT_EQ(SplitPdfRanges(wide(output().string()).c_str(), ends.data(),
                             static_cast<int32_t>(ends.size() / 2), GetPageCount2()),
              CLEFTOR_OK)
        << errorText();
    EXPECT_EQ(GetProcessingPage(), ends.back());
    return QString::fromStdString(output().string());
  });
}

TEST_F(KeepingTest, RangesThatAreNoneAreRefused) {
  ASSERT_EQ(open("everything"), CLEFTOR_OK);
  const int32_t ranges[] = {6, 6, 12, 13};
  EXPECT_EQ(SplitPdfRanges(u"none.pdf", ranges, 0, 12), CLEFTOR_BAD_RANGE);
  EXPECT_EQ(SplitPdfRanges(u"none.pdf", nullptr, 2, 12), CLEFTOR_BAD_RANGE);
  EXPECT_EQ(SplitPdfRanges(u"none.pdf", ranges, 2, 12), CLEFTOR_BAD_RANGE);
}

} // namespace

} // namespace tests::cleftor
