// Which words match, and which words name a range.
#include "engine/match/MatchText.h"
#include "tests/match/MemoryPages.h"

namespace folivex::test {
namespace {

const QString restOfLine =
    QStringLiteral("USE 'use as filename name after text' - take rest of line");

/// The start matches that a show-only run of `setup` tells, as "page word h,v" with "|" between.
QString matchesOf(const SplitSetup& setup, const std::vector<MemoryPage>& pages) {
  Job job(setup, pages);
  job.run.showOnly = true;
  return job.scan().recorder.matches.join(u'|');
}

QString matchesOf(const QString& searchText, const std::vector<MemoryPage>& pages) {
  return matchesOf(setupOf({{"FINDSTRING", searchText}}), pages);
}

TEST(PageMatcher, Matches) {
  forEachRow("match/matches.json", [](const SplitSetup& setup, const QStringList& row) {
    EXPECT_EQ(matchesOf(setup, pages(row[0])), row[1]);
  });
}

TEST(PageMatcher, FileNameTexts) {
  expectSaved("match/file-name-texts.json");
}

TEST(PageWords, fillersAreNoWordsButCountInNumbers) {
  const MemoryPage words = {{QString(), 0, 0}, {"a", 10, 10}, {QString(), 5, 5}, {"b", 20, 10}};
  EXPECT_EQ(matchesOf("[WORD2]", {words}), "0 a 10,10");
  EXPECT_EQ(matchesOf("[WORD4]", {words}), "0 b 20,10");
  EXPECT_EQ(matchesOf("[WORD3]", {words}), "");
  EXPECT_EQ(matchesOf("a b", {words}), "0 a b 20,10");
}

TEST(PageWords, longWordIsCut) {
  const QString cut = QString(254, u'a') + u'b';
  EXPECT_EQ(matchesOf(cut, {{{cut + QStringLiteral("cd"), 10, 20}}}), "0 " + cut + " 10,20");
}

TEST(PageWords, ofOnePlaceStandSideBySide) {
  const int largest = std::numeric_limits<int>::max();
  const MemoryPage words = {{"a", 100, 50}, {"a", 100, 50}, {"a", 90, 50},      {"a", 130, 50},
                            {"a", 130, 51}, {"a", 20, 52},  {"a", largest, 53}, {"a", 7, 53}};
  EXPECT_EQ(matchesOf("a", {words, {{"a", 100, 50}}}),
            "0 a 100,50|0 a 110,50|0 a 120,50|0 a 130,50|0 a 130,51|0 a 20,52|"
            "0 a 2147483647,53|0 a 2147483647,53|1 a 100,50");
}

TEST(ShowOnlyRun, stopsWhenTheObserverSaysSo) {
  Job job(setupOf({{"FINDSTRING", "a"}}), pages("a b a b a"));
  job.run.showOnly = true;
  job.recorder.stopAfter = 2;
  job.scan();
  EXPECT_EQ(job.recorder.matches.size(), 2);
  EXPECT_EQ(job.run.matchesShown, 2);
  EXPECT_TRUE(job.run.userStop);
}

TEST(Listing, tellsEveryWordAndMatchesNone) {
  const std::vector<MemoryPage> words = {{{"a", 10, 20}, {QString(), 0, 0}, {"b", 10, 20}}, {}};
  Job job(setupOf({{"FINDSTRING", "a"}}), words);
  job.matcher.setListing(true);
  job.scan();
  EXPECT_EQ(job.recorder.told.join(u'|'), "0: 3 words|a 10,20|b 20,20|1: empty|1: 0 words");
  EXPECT_EQ(job.recorder.saved + job.recorder.matches, QStringList());
  Job ordinary(setupOf({{"FINDSTRING", "a"}}), words);
  EXPECT_EQ(ordinary.scan().recorder.told.filter("empty"), QStringList());
}

TEST(FirstLineOfNextPage, beginsAtTheFirstWordThatIsNoBlank) {
  const MemoryPage second = {{" ", 10, 5}, {"B", 10, 20}, {"C", 10, 30}, {"D", 30, 20}};
  EXPECT_EQ(
      savedBy(setupOf({{"FINDSTRING", "Acc"}, {"EXTRACT", restOfLine + " + 1st line next page"}}),
              {pages("Acc A")[0], second}),
      "0-1 A_B");
}

TEST(CollectedText, isCutAtItsCapacity) {
  const SplitSetup setup =
      setupOf({{"FINDSTRING", "Acc"}, {"EXTRACT", restOfLine}, {"UNTILHHPOSLESSTHAN", "0"}});
  MemoryPage words = {{"Acc", 0, 10}};
  for (int i = 1; i <= 5; ++i) {
    words.push_back({QString(254, u'w'), i * 10, 10});
  }
  EXPECT_EQ(Job(setup, {words}).scan().recorder.lastLine, QString(maxCollectedLength, u'w'));
  // A letter beyond the basic plane is kept or dropped as a whole.
  words.at(5).text = QString(6, u'w') + QStringLiteral("😀");
  EXPECT_EQ(Job(setup, {words}).scan().recorder.lastLine, QString(1016 + 6, u'w'));
}

} // namespace
} // namespace folivex::test
