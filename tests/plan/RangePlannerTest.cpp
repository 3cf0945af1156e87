#include "tests/match/MemoryPages.h"

namespace folivex::test {
namespace {

TEST(RangesOfJob, areThoseExpected) {
  expectSaved("plan/ranges.json");
}

TEST(RangesOfPartOfDocument, endWithLastScannedPage) {
  Job job(setupOf({{"FINDSTRING", "Acc"}, {"EXTRACT", "Next word as filename"}}),
          pages("Acc A|Acc B|x|Acc C|y"));
  job.scan(1, 2);
  EXPECT_EQ(job.recorder.saved, QStringList{"1-2 B"});
  EXPECT_EQ(job.run.pendingStart, -1);
}

TEST(ShowOnlyRun, followsRangesAndSavesNone) {
  for (int method = 0; method <= static_cast<int>(SplitMethod::MatchedPageOnly); ++method) {
    const SplitSetup setup = setupOf({{"PAGEEXTRACT", splitMethodTexts().at(method)},
                                      {"FINDSTRING", "Acc"},
                                      {"EXTRACTUNTIL", "Total"},
                                      {"MATCHPOSH", "50"},
                                      {"MATCHPOSV", "100"},
                                      {"UNTILMATCHPOSH", "50"},
                                      {"UNTILMATCHPOSV", "120"}});
    Job job(setup, pages("Acc A|Acc A;Total|Acc B"));
    job.run.showOnly = true;
    job.matcher.beginPage();
    job.matcher.scanPage(0, job.source);
    EXPECT_EQ(job.run.pendingStart, 0) << method;
    job.scan(1);
    EXPECT_TRUE(job.recorder.saved.isEmpty()) << method;
    EXPECT_EQ(job.run.pendingStart, -1) << method;
    EXPECT_EQ(job.run.matchesShown, job.recorder.matches.size()) << method;
  }
}

TEST(UniqueRanges, mergeThoughTheShownTextDiffers) {
  Job job(setupOf({{"PAGEEXTRACT", "From match to next unique match"},
                   {"FINDSTRING", "Acc"},
                   {"EXTRACT", "Next word as filename"}}),
          pages("Acc A1|x|x|Acc A1|x|x|x|Acc B1|x|x"));
  job.recorder.chopped = 1;
  EXPECT_EQ(job.scan().recorder.saved.join(u'|'), "0-2 A|0-6 A again|7-9 B");
}

} // namespace
} // namespace folivex::test
