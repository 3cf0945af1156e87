#include "engine/match/NearMisses.h"
#include "tests/match/MemoryPages.h"

namespace folivex::test {
namespace {

TEST(NearMisses, areThoseExpected) {
  forEachRow("match/near-misses.json", [](const SplitSetup& setup, const QStringList& row) {
    NearMisses misses = NearMisses::forSearchText(setup);
    MemoryPages source(pages(row[0]));
    for (int i = 0; i < source.pageCount(); ++i) {
      misses.scanPage(i, source);
    }
    EXPECT_EQ(misses.sentences().join(u'\n'), row[1]);
  });
}

TEST(NearMisses, keepTheNearestOfMany) {
  NearMisses misses = NearMisses::forSearchText(
      setupOf({{"PAGEEXTRACT", "From match to next match using position h,v"},
               {"MATCHPOSH", "5000"},
               {"MATCHPOSV", "10"},
               {"FINDSTRING", ""}}));
  MemoryPage words;
  for (int i = 0; i < 2000; ++i) {
    words.push_back({QString::number(i), i, 10});
  }
  MemoryPages source({words});
  misses.scanPage(0, source);
  EXPECT_EQ(misses.best(1000).size(), 32U);
  EXPECT_EQ(misses.best(2).at(0).h, 1999);
  EXPECT_EQ(misses.best(2).at(1).h, 1998);
}

} // namespace
} // namespace folivex::test
