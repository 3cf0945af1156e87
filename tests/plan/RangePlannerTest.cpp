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

class RangesOfJob : public testing::TestWithParam<JobRow> {};

TEST_P(RangesOfJob, areThoseExpected) {
  EXPECT_EQ(savedBy(GetParam()), GetParam().saved);
}

const std::vector<JobRow> nextMatchRows = {
    {"pagesBeforeFirstMatchAreInNoOutput",
     MatchToNextMatch,
     "Acc",
     byNextWord,
     {"cover", "Acc A", "x", "Acc B"},
     "1-2 A\n3-3 B"},
    {"lastRangeRunsToLastPage",
     MatchToNextMatch,
     "Acc",
     byNextWord,
     {"Acc A", "x", "y", "Acc B", "x", "y", "z", "Acc C", "x", "y"},
     "0-2 A\n3-6 B\n7-9 C"},
    {"twoMatchesOnOnePageEndBeforeTheyBegin",
     MatchToNextMatch,
     "Acc",
     byNextWord,
     {"x", "Acc A\nAcc B", "x"},
     "1-1 A\n1-2 B"},
    {"matchOnLastWordOpensOnNextPage",
     MatchToNextMatch,
     "Acc",
     byNextWord,
     {"Acc A", "x Acc", "B y", "z"},
     "0-0 A\n2-3 B"},
    {"matchOnLastWordOfDocumentOpensNothing",
     MatchToNextMatch,
     "Acc",
     byNextWord,
     {"Acc A", "x", "y Acc"},
     "0-1 A"},
    {"emptyPageStaysInOpenRange",
     MatchToNextMatch,
     "Acc",
     byNextWord,
     {"Acc A", "", "Acc B"},
     "0-1 A\n2-2 B"},
    {"noMatchSavesNothing", MatchToNextMatch, "Acc", byNextWord, {"x", "y"}, ""},
    {"unknownMethodTextIsTheFirst",
     MatchToNextMatch,
     "Acc",
     [](SplitSetup& setup) {
       byNextWord(setup);
       setup.pageExtract = QStringLiteral("matched page only");
     },
     {"Acc A", "x"},
     "0-1 A"},
    {"matchedPageTakesFollowingPages",
     MatchedPageOnly,
     "Acc",
     byNextWord,
     {"Acc A", "x", "Acc B", "y", "z"},
     "0-0 A\n2-2 B"},
    {"rightTextAtOtherPlaceSplits",
     MatchToNextMatchAtPosition,
     "Acc",
     atOwnPosition,
     {"Acc A", "x Acc Y", "z\nAcc Z"},
     "0-2 Acc"},
    {"emptySearchTextMatchesNoWordAtPosition",
     MatchToNextMatchAtPosition,
     "",
     [](SplitSetup& setup) {
       atOwnPosition(setup);
       nameBy(setup, FileNameMethod::PositionMatch);
     },
     {"A x", "B y", "C z"},
     "0-0 A\n1-1 B\n2-2 C"}};

INSTANTIATE_TEST_SUITE_P(NextMatch, RangesOfJob, testing::ValuesIn(nextMatchRows),
                         [](const auto& row) { return row.param.name; });

const std::vector<JobRow> uniqueRows = {
    {"sameTextDoesNotMerge",
     MatchToNextUniqueMatch,
     "Acc",
     byNextWord,
     {"Acc A", "x", "y", "Acc A", "x", "y", "z", "Acc B", "x", "y"},
     "0-2 A\n0-6 A again\n7-9 B"},
    {"thirdEqualRangeForgetsWhereTheFirstBegan",
     MatchToNextUniqueMatch,
     "Acc",
     byNextWord,
     {"cover", "Acc A", "Acc A", "Acc A", "Acc B"},
     "1-1 A\n1-2 A again\n1-3 A again\n4-4 B"},
    {"lastRangeDoesNotMerge",
     MatchToNextUniqueMatch,
     "Acc",
     byNextWord,
     {"Acc A", "Acc B", "Acc B", "x"},
     "0-0 A\n1-1 B\n1-3 B again"},
    {"textsThatAreNotNeighboursMerge",
     MatchToNextUniqueMatch,
     "Acc",
     byNextWord,
     {"Acc A", "Acc B", "Acc A"},
     "0-0 A\n1-1 B\n2-2 A"},
    {"unfinishedMergeLosesLastPageWhenNoWordFollows",
     MatchToNextUniqueMatch,
     "Acc",
     byNextWord,
     {"Acc A", "Acc A", "x Acc"},
     "0-0 A\n0-1 A again\n0-2 A again"},
    {"onlyFirstWordsOfRestOfLineAreCompared",
     MatchToNextUniqueMatch,
     "Acc",
     byRestOfLine,
     {"Acc ACME Ltd", "Acc ACME Inc", "Acc ACME Inc", "x"},
     "0-0 ACME_Ltd\n1-1 ACME_Inc\n1-3 ACME_Inc again"},
    {"uncleanedRestOfLineIsCompared",
     MatchToNextUniqueMatch,
     "Acc",
     byRestOfLine,
     {"Acc AS Oslo", "Acc A/S Oslo", "Acc B Bergen"},
     "0-0 AS_Oslo\n0-1 AS_Oslo again\n2-2 B_Bergen"},
    {"rangeMergedByItsCollectedTextIsRenamed",
     MatchToNextUniqueMatchAtPosition,
     "",
     atOwnPosition,
     {"A B", "B C"},
     "0-0 B\n0-1 B again"},
    {"positionIsIgnored",
     MatchToNextUniqueMatchAtPosition,
     "Acc",
     [](SplitSetup& setup) {
       atOwnPosition(setup);
       nameBy(setup, FileNameMethod::PositionMatch);
     },
     {"Acc A", "x Acc", "Acc B", "y"},
     "0-1 Acc\n0-3 Acc again"}};

INSTANTIATE_TEST_SUITE_P(Unique, RangesOfJob, testing::ValuesIn(uniqueRows),
                         [](const auto& row) { return row.param.name; });

const std::vector<JobRow> untilRows = {
    {"pagesBehindUntilAreOutput",
     MatchToUntil,
     "Acc",
     untilTotal,
     {"x", "y", "Acc A", "x", "Total y", "x", "y", "z", "Acc B", "Total"},
     "2-4 A\n8-9 B"},
    {"startIsTakenWhileAwaitingUntil",
     MatchToUntil,
     "Acc",
     untilTotal,
     {"Acc A", "Acc B", "Total"},
     "0-2 A"},
    {"untilBeforeAnyStartSaves",
     MatchToUntil,
     "Acc",
     untilTotal,
     {"Total", "Acc A", "x Total"},
     "1-2 A"},
    {"untilRightBehindStartIsMissed",
     MatchToUntil,
     "Acc",
     untilTotal,
     {"Acc Total", "Acc B"},
     "0-0 Total\n1-1 B"},
    {"startWordAlsoEndsItsOwnRange",
     MatchToUntil,
     "Total",
     untilTotal,
     {"Total A", "x", "y Total", "z", "Total B", "Total"},
     "0-2 A\n4-5 B"},
    {"emptyUntilTextEndsRanges",
     MatchToUntil,
     "Acc",
     [](SplitSetup& setup) {
       untilTotal(setup);
       setup.extractUntil.clear();
     },
     {"Acc A", "x", "Acc B"},
     "0-2 A"},
    {"untilOfTwoWordsIsMissedAcrossPages",
     MatchToUntil,
     "Acc",
     [](SplitSetup& setup) {
       untilTotal(setup);
       setup.extractUntil = QStringLiteral("Grand Total");
     },
     {"Acc A", "x Grand", "Total y", "z"},
     "0-2 A"},
    {"untilBeforeAnyStartOpens",
     MatchToUntilAtPosition,
     "Acc",
     untilTotalAtPosition,
     {"x\nTotal y", "Acc A"},
     "1-1 A"},
    {"untilAtPositionIsInclusive",
     MatchToUntilAtPosition,
     "Acc",
     untilTotalAtPosition,
     {"Acc A", "x", "y\nTotal B", "x", "y\nTotal C"},
     "0-1 A\n2-3 B\n4-4 C"},
    {"untilAtOtherPlaceEndsRange",
     MatchToUntilAtPosition,
     "Acc",
     untilTotalAtPosition,
     {"Acc A", "Total x", "x Total", "y\nTotal B"},
     "0-2 A\n3-3 B"},
    {"startWordStillSplitsBehindTheFirst",
     MatchToUntilAtPosition,
     "Acc",
     untilTotalAtPosition,
     {"x Acc", "Acc A", "Acc B", "x\nTotal C", "Acc D"},
     "1-2 A\n3-4 C"},
    {"untilOnStartPageEndsBeforeIt",
     MatchToUntilAtPosition,
     "Acc",
     untilTotalAtPosition,
     {"x", "Acc A\nTotal B", "y"},
     "1-1 A\n1-2 B"}};

INSTANTIATE_TEST_SUITE_P(Until, RangesOfJob, testing::ValuesIn(untilRows),
                         [](const auto& row) { return row.param.name; });

TEST(RangesOfPartOfDocument, endWithLastScannedPage) {
  SplitSetup setup = setupFor(MatchToNextMatch, "Acc");
  byNextWord(setup);
  Job job(setup, pages({"Acc A", "Acc B", "x", "Acc C", "y"}));
  job.scan(1, 2);
  EXPECT_EQ(job.saver.saved, QStringList{QStringLiteral("1-2 B")});
  EXPECT_EQ(job.run.pendingStart, -1);
}

TEST(OnePageDocument, isNotComparedWithPreviousRange) {
  SplitSetup setup = setupFor(MatchToNextUniqueMatch, "Acc");
  byNextWord(setup);
  Job job(setup, pages({"Acc A\nAcc A"}));
  job.scan();
  EXPECT_EQ(job.saver.saved.join(u'|'), QStringLiteral("0-0 A|0-0 A"));
}

TEST(ShowOnlyRun, followsRangesAndSavesNone) {
  for (int method = 0; method <= static_cast<int>(MatchedPageOnly); ++method) {
    SplitSetup setup = setupFor(static_cast<SplitMethod>(method), "Acc");
    untilTotalAtPosition(setup);
    Job job(setup, pages({"Acc A", "Acc A\nTotal", "Acc B"}));
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
