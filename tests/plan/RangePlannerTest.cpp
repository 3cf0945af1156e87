#include "tests/match/MemoryPages.h"

#include <gtest/gtest.h>

namespace folivex::test {
namespace {

using enum SplitMethod;

void byNextWord(SplitSetup& setup) {
  nameBy(setup, FileNameMethod::NextWord);
}

void atOwnPosition(SplitSetup& setup) {
  byNextWord(setup);
  setup.matchPosH = QStringLiteral("50");
  setup.matchPosV = QStringLiteral("100");
}

void untilTotal(SplitSetup& setup) {
  byNextWord(setup);
  setup.extractUntil = QStringLiteral("Total");
}

void untilTotalAtPosition(SplitSetup& setup) {
  atOwnPosition(setup);
  setup.extractUntil = QStringLiteral("Total");
  setup.untilMatchPosH = 50;
  setup.untilMatchPosV = 120;
}

void byRestOfLine(SplitSetup& setup) {
  nameBy(setup, FileNameMethod::AfterTextRestOfLine);
  setup.addBWords = QStringLiteral("_");
}

TEST(RangesOfJob, nextMatch) {
  expectSaved(setupFor(MatchToNextMatch, "Acc", byNextWord),
              {{"pagesBeforeFirstMatchAreInNoOutput", "cover|Acc A|x|Acc B", "1-2 A|3-3 B"},
               {"lastRangeRunsToLastPage", "Acc A|x|y|Acc B|x|y|z|Acc C|x|y", "0-2 A|3-6 B|7-9 C"},
               {"twoMatchesOnOnePageEndBeforeTheyBegin", "x|Acc A;Acc B|x", "1-1 A|1-2 B"},
               {"matchOnLastWordOpensOnNextPage", "Acc A|x Acc|B y|z", "0-0 A|2-3 B"},
               {"matchOnLastWordOfDocumentOpensNothing", "Acc A|x|y Acc", "0-1 A"},
               {"emptyPageStaysInOpenRange", "Acc A||Acc B", "0-1 A|2-2 B"},
               {"noMatchSavesNothing", "x|y", ""}});
  expectSaved(setupFor(MatchToNextMatch, "Acc",
                       [](SplitSetup& setup) {
                         byNextWord(setup);
                         setup.pageExtract = QStringLiteral("matched page only");
                       }),
              {{"unknownMethodTextIsTheFirst", "Acc A|x", "0-1 A"}});
  expectSaved(setupFor(MatchedPageOnly, "Acc", byNextWord),
              {{"matchedPageTakesFollowingPages", "Acc A|x|Acc B|y|z", "0-0 A|2-2 B"}});
  expectSaved(setupFor(MatchToNextMatchAtPosition, "Acc", atOwnPosition),
              {{"rightTextAtOtherPlaceSplits", "Acc A|x Acc Y|z;Acc Z", "0-2 Acc"}});
  expectSaved(setupFor(MatchToNextMatchAtPosition, "",
                       [](SplitSetup& setup) {
                         atOwnPosition(setup);
                         nameBy(setup, FileNameMethod::PositionMatch);
                       }),
              {{"emptySearchTextMatchesNoWordAtPosition", "A x|B y|C z", "0-0 A|1-1 B|2-2 C"}});
}

TEST(RangesOfJob, unique) {
  expectSaved(
      setupFor(MatchToNextUniqueMatch, "Acc", byNextWord),
      {{"sameTextDoesNotMerge", "Acc A|x|y|Acc A|x|y|z|Acc B|x|y", "0-2 A|0-6 A again|7-9 B"},
       {"thirdEqualRangeForgetsWhereTheFirstBegan", "cover|Acc A|Acc A|Acc A|Acc B",
        "1-1 A|1-2 A again|1-3 A again|4-4 B"},
       {"lastRangeDoesNotMerge", "Acc A|Acc B|Acc B|x", "0-0 A|1-1 B|1-3 B again"},
       {"textsThatAreNotNeighboursMerge", "Acc A|Acc B|Acc A", "0-0 A|1-1 B|2-2 A"},
       {"unfinishedMergeLosesLastPageWhenNoWordFollows", "Acc A|Acc A|x Acc",
        "0-0 A|0-1 A again|0-2 A again"}});
  expectSaved(setupFor(MatchToNextUniqueMatch, "Acc", byRestOfLine),
              {{"onlyFirstWordsOfRestOfLineAreCompared", "Acc ACME Ltd|Acc ACME Inc|Acc ACME Inc|x",
                "0-0 ACME_Ltd|1-1 ACME_Inc|1-3 ACME_Inc again"},
               {"uncleanedRestOfLineIsCompared", "Acc AS Oslo|Acc A/S Oslo|Acc B Bergen",
                "0-0 AS_Oslo|0-1 AS_Oslo again|2-2 B_Bergen"}});
  expectSaved(setupFor(MatchToNextUniqueMatchAtPosition, "", atOwnPosition),
              {{"rangeMergedByItsCollectedTextIsRenamed", "A B|B C", "0-0 B|0-1 B again"}});
  expectSaved(setupFor(MatchToNextUniqueMatchAtPosition, "Acc",
                       [](SplitSetup& setup) {
                         atOwnPosition(setup);
                         nameBy(setup, FileNameMethod::PositionMatch);
                       }),
              {{"positionIsIgnored", "Acc A|x Acc|Acc B|y", "0-1 Acc|0-3 Acc again"}});
}

TEST(RangesOfJob, until) {
  expectSaved(
      setupFor(MatchToUntil, "Acc", untilTotal),
      {{"pagesBehindUntilAreOutput", "x|y|Acc A|x|Total y|x|y|z|Acc B|Total", "2-4 A|8-9 B"},
       {"startIsTakenWhileAwaitingUntil", "Acc A|Acc B|Total", "0-2 A"},
       {"untilBeforeAnyStartSaves", "Total|Acc A|x Total", "1-2 A"},
       {"untilRightBehindStartIsMissed", "Acc Total|Acc B", "0-0 Total|1-1 B"}});
  expectSaved(
      setupFor(MatchToUntil, "Total", untilTotal),
      {{"startWordAlsoEndsItsOwnRange", "Total A|x|y Total|z|Total B|Total", "0-2 A|4-5 B"}});
  expectSaved(setupFor(MatchToUntil, "Acc",
                       [](SplitSetup& setup) {
                         untilTotal(setup);
                         setup.extractUntil.clear();
                       }),
              {{"emptyUntilTextEndsRanges", "Acc A|x|Acc B", "0-2 A"}});
  expectSaved(setupFor(MatchToUntil, "Acc",
                       [](SplitSetup& setup) {
                         untilTotal(setup);
                         setup.extractUntil = QStringLiteral("Grand Total");
                       }),
              {{"untilOfTwoWordsIsMissedAcrossPages", "Acc A|x Grand|Total y|z", "0-2 A"}});
  expectSaved(
      setupFor(MatchToUntilAtPosition, "Acc", untilTotalAtPosition),
      {{"untilBeforeAnyStartOpens", "x;Total y|Acc A", "1-1 A"},
       {"untilAtPositionIsInclusive", "Acc A|x|y;Total B|x|y;Total C", "0-1 A|2-3 B|4-4 C"},
       {"untilAtOtherPlaceEndsRange", "Acc A|Total x|x Total|y;Total B", "0-2 A|3-3 B"},
       {"startWordStillSplitsBehindTheFirst", "x Acc|Acc A|Acc B|x;Total C|Acc D", "1-2 A|3-4 C"},
       {"untilOnStartPageEndsBeforeIt", "x|Acc A;Total B|y", "1-1 A|1-2 B"}});
}

TEST(RangesOfPartOfDocument, endWithLastScannedPage) {
  SplitSetup setup = setupFor(MatchToNextMatch, "Acc");
  byNextWord(setup);
  Job job(setup, pages("Acc A|Acc B|x|Acc C|y"));
  job.scan(1, 2);
  EXPECT_EQ(job.saver.saved, QStringList{QStringLiteral("1-2 B")});
  EXPECT_EQ(job.run.pendingStart, -1);
}

TEST(OnePageDocument, isNotComparedWithPreviousRange) {
  SplitSetup setup = setupFor(MatchToNextUniqueMatch, "Acc");
  byNextWord(setup);
  Job job(setup, pages("Acc A;Acc A"));
  job.scan();
  EXPECT_EQ(job.saver.saved.join(u'|'), QStringLiteral("0-0 A|0-0 A"));
}

TEST(ShowOnlyRun, followsRangesAndSavesNone) {
  for (int method = 0; method <= static_cast<int>(MatchedPageOnly); ++method) {
    SplitSetup setup = setupFor(static_cast<SplitMethod>(method), "Acc");
    untilTotalAtPosition(setup);
    Job job(setup, pages("Acc A|Acc A;Total|Acc B"));
    job.run.showOnly = true;
    job.matcher.beginPage();
    job.matcher.scanPage(0, job.source);
    EXPECT_EQ(job.run.pendingStart, 0) << method;
    job.scan(1);
    EXPECT_TRUE(job.saver.saved.isEmpty()) << method;
    EXPECT_EQ(job.run.pendingStart, -1) << method;
    EXPECT_EQ(job.run.matchesShown, job.observer.matches.size()) << method;
  }
}

/// Shows another text than it was given, as removing texts from names does.
class ShorteningSaver : public RecordingSaver {
public:
  using RecordingSaver::RecordingSaver;
  void saveRange(SplitRange& range) override {
    range.rangeText.chop(1);
    RecordingSaver::saveRange(range);
  }
};

TEST(UniqueRanges, mergeThoughTheShownTextDiffers) {
  SplitSetup setup = setupFor(MatchToNextUniqueMatch, "Acc");
  byNextWord(setup);
  RunState run;
  ShorteningSaver saver(setup);
  RangePlanner planner(setup, run, saver);
  for (const int page : {0, 3, 7}) {
    planner.closeAtMatch(page);
    planner.openAt(page);
    planner.texts().rangeText = page < 7 ? QStringLiteral("A1") : QStringLiteral("B1");
  }
  planner.closeAtEnd(9, 10);
  EXPECT_EQ(saver.saved.join(u'|'), QStringLiteral("0-2 A|0-6 A again|7-9 B"));
}

} // namespace
} // namespace folivex::test
