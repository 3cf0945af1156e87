#include "tests/match/MemoryPages.h"

#include <gtest/gtest.h>

namespace folivex::test {
namespace {

using enum SplitMethod;

/// The start matches that a show-only run of `setup` tells, as "page word h,v" with "|" between.
std::string matchesOf(const SplitSetup& setup, const std::vector<MemoryPage>& pages) {
  Job job(setup, pages);
  job.run.showOnly = true;
  return job.scan().observer.matches.join(u'|').toStdString();
}

void ignoringCase(SplitSetup& setup) {
  setup.ignoreCase = true;
}

TEST(StartMatches, areThoseExpected) {
  struct Row {
    const char* fault;
    const char* searchText;
    std::function<void(SplitSetup&)> adjust;
    const char* pages;
    const char* matches;
  };
  const Row rows[] = {
      {"caseIsFolded", "Account:", nullptr, "account: Account:", "0 Account: 110,100"},
      {"caseIsNotFolded", "Account:", ignoringCase, "aCCount: Account", "0 aCCount: 50,100"},
      {"foreignLettersAreFolded", "\xC3\x89tat", ignoringCase, "\xC3\xA9tat \xC3\x89TAT",
       "0 \xC3\x89TAT 110,100"},
      {"partOfWordMatches", "Account", nullptr, "Account: MyAccount", ""},
      {"twoWordsMissedInLine", "Invoice No", nullptr, "x Invoice No", "0 Invoice No 170,100"},
      {"twoWordsMissedAcrossPages", "Invoice No", nullptr, "x Invoice|No y", "1 Invoice No 50,100"},
      {"twoWordsMissedAcrossEmptyPage", "Invoice No", nullptr, "x Invoice||No y",
       "2 Invoice No 50,100"},
      {"twoWordsKeepTheirCase", "Invoice No", ignoringCase, "INVOICE NO", "0 INVOICE NO 110,100"},
      {"softHyphenIsDropped", "Co-op", nullptr, "Co\xC2\xADop Co-op", "0 Co-op 110,100"},
      {"noBreakSpaceIsNoWord", "\xC2\xA0", nullptr, "x \xC2\xA0", "0 \xC2\xA0 110,100"},
      {"wordNumberIsKeptFromPageToPage", "[WORD2]", nullptr, "a b c|b d e",
       "0 b 110,100|1 d 110,100"},
      {"wordNumberIsTakenOnce", "[WORD2]", nullptr, "a b c b", "0 b 110,100|0 b 230,100"},
      {"shortPageMatchesEarlierWord", "[WORD3]", nullptr, "a b c|c b", "0 c 170,100"},
      {"wordNumberWithoutNumberMatches", "[WORD]", nullptr, "a [WORD] c", ""},
      {"landscapeAxesAreNotSwapped", "Acc", [](SplitSetup& setup) { setup.rotated = true; },
       "x Acc", "0 Acc 100,110"}};
  for (const Row& row : rows) {
    EXPECT_EQ(matchesOf(setupFor(MatchToNextMatch, row.searchText, row.adjust), pages(row.pages)),
              row.matches)
        << row.fault;
  }
}

TEST(PageWords, fillersAreNoWordsButCountInNumbers) {
  const MemoryPage words = {{QString(), 0, 0}, {"a", 10, 10}, {QString(), 5, 5}, {"b", 20, 10}};
  EXPECT_EQ(matchesOf(setupFor(MatchToNextMatch, "[WORD2]"), {words}), "0 a 10,10");
  EXPECT_EQ(matchesOf(setupFor(MatchToNextMatch, "[WORD4]"), {words}), "0 b 20,10");
  EXPECT_EQ(matchesOf(setupFor(MatchToNextMatch, "[WORD3]"), {words}), "");
  EXPECT_EQ(matchesOf(setupFor(MatchToNextMatch, "a b"), {words}), "0 a b 20,10");
}

TEST(PageWords, longWordIsCut) {
  const QString longWord = QString(254, u'a') + QStringLiteral("bcd");
  SplitSetup setup = setupFor(MatchToNextMatch, "");
  setup.findString = longWord.first(255);
  const std::string matches = matchesOf(setup, {{{longWord, 10, 20}}});
  EXPECT_EQ(matches, "0 " + setup.findString.toStdString() + " 10,20");
}

TEST(PageWords, ofOnePlaceStandSideBySide) {
  const int largest = std::numeric_limits<int>::max();
  SplitSetup setup = setupFor(MatchToNextMatch, "a");
  const MemoryPage words = {{"a", 100, 50}, {"a", 100, 50}, {"a", 90, 50},      {"a", 130, 50},
                            {"a", 130, 51}, {"a", 20, 52},  {"a", largest, 53}, {"a", 7, 53}};
  EXPECT_EQ(matchesOf(setup, {words, {{"a", 100, 50}}}),
            "0 a 100,50|0 a 110,50|0 a 120,50|0 a 130,50|0 a 130,51|0 a 20,52|"
            "0 a 2147483647,53|0 a 2147483647,53|1 a 100,50");
}

TEST(PositionMethods, takeSearchTextOnlyAtItsPlace) {
  SplitSetup setup = setupFor(MatchToNextMatchAtPosition, "Acc");
  setup.matchPosH = QStringLiteral("100-120");
  setup.matchPosV = QStringLiteral("100|140");
  EXPECT_EQ(matchesOf(setup, pages("Acc Acc;x Acc;x Acc")), "0 Acc 110,100|0 Acc 110,140");
  setup.findString.clear();
  EXPECT_EQ(matchesOf(setup, pages("a b c")), "0 b 110,100");
  setup.pageExtract = splitMethodTexts()[0];
  setup.findString = QStringLiteral("c");
  EXPECT_EQ(matchesOf(setup, pages("a b c")), "0 c 170,100") << "other methods ask for no place";
}

TEST(ShowOnlyRun, stopsWhenTheObserverSaysSo) {
  Job job(setupFor(MatchToNextMatch, "a"), pages("a b a b a"));
  job.run.showOnly = true;
  job.observer.stopAfter = 2;
  job.scan();
  EXPECT_EQ(job.observer.matches.size(), 2);
  EXPECT_EQ(job.run.matchesShown, 2);
  EXPECT_TRUE(job.run.userStop);
}

TEST(Listing, tellsEveryWordAndMatchesNone) {
  SplitSetup setup = setupFor(MatchToNextMatch, "a");
  Job job(setup, {{{"a", 10, 20}, {QString(), 0, 0}, {"b", 10, 20}}, {}});
  job.matcher.setListing(true);
  job.scan();
  EXPECT_EQ(job.observer.listed.join(u'|'), QStringLiteral("a 10,20|b 20,20"));
  EXPECT_EQ(job.observer.counts.join(u'|'), QStringLiteral("0:3|1:0"));
  EXPECT_EQ(job.observer.emptyPages, std::vector<int>{1});
  EXPECT_TRUE(job.saver.saved.isEmpty());
  EXPECT_TRUE(job.observer.matches.isEmpty());
}

TEST(EmptyPage, isAskedAboutInListingOnly) {
  Job job(setupFor(MatchToNextMatch, "a"), pages("a|"));
  job.scan();
  EXPECT_TRUE(job.observer.emptyPages.empty());
}

} // namespace
} // namespace folivex::test
