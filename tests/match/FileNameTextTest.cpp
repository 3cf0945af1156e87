// Which words of the pages name a range.
#include "tests/match/MemoryPages.h"

#include <gtest/gtest.h>

namespace folivex::test {
namespace {

using enum SplitMethod;

/// Names by `method`, with "_" between words, after the text "Name:".
auto named(FileNameMethod method, const std::function<void(SplitSetup&)>& more = nullptr) {
  return [method, more](SplitSetup& setup) {
    nameBy(setup, method);
    setup.addBWords = QStringLiteral("_");
    setup.extractFileName = QStringLiteral("Name:");
    if (more) {
      more(setup);
    }
  };
}

auto matchedWord() {
  return named(FileNameMethod::MatchedWord);
}
auto nextWord() {
  return named(FileNameMethod::NextWord);
}
auto afterText() {
  return named(FileNameMethod::AfterText);
}
auto restOfLine(const std::function<void(SplitSetup&)>& more = nullptr) {
  return named(FileNameMethod::AfterTextRestOfLine, more);
}
auto andNextPage(const std::function<void(SplitSetup&)>& more = nullptr) {
  return named(FileNameMethod::AfterTextRestOfLineAndNextPage, more);
}

TEST(TextsOfRanges, areThoseExpected) {
  expectSaved(setupFor(MatchToNextMatch, "Acc", matchedWord()),
              {{"matchedWordIsTheNextOne", "Acc A", "0-0 Acc"}});
  expectSaved(setupFor(MatchToNextMatch, "Acc No", matchedWord()),
              {{"matchedWordsAreTheLastOneOnly", "Acc No A", "0-0 Acc No"}});
  expectSaved(setupFor(MatchToNextMatch, "acc", [](SplitSetup& setup) { setup.ignoreCase = true; }),
              {{"matchedWordIsThatOfTheNextRange", "Acc A|ACC B", "0-0 Acc|1-1 ACC"}});
  expectSaved(setupFor(MatchToNextMatch, "Acc", nextWord()),
              {{"nextWordIsLaterOne", "Acc A B", "0-0 A"},
               {"filenameAfterTextNamesOtherMethods", "Acc A Name: B", "0-0 A"}});
  expectSaved(
      setupFor(MatchToNextMatch, "Acc", afterText()),
      {{"wordBehindTextIsMissed", "Acc A;Name: Ann|Acc B;Name: Bob", "0-0 Ann|1-1 Bob"},
       {"laterTextOfRangeIsTaken", "Acc A;Name: Ann|Name: Zoe|Acc B;Name: Bob", "0-1 Ann|2-2 Bob"},
       {"textInFrontOfFirstMatchIsTaken", "Name: Ann Acc A", "0-0 A"}});
  expectSaved(
      setupFor(MatchToUntil, "Acc",
               named(FileNameMethod::AfterText,
                     [](SplitSetup& setup) { setup.extractUntil = QStringLiteral("Total"); })),
      {{"textBehindTheEndOfRangeIsTaken", "Acc A Total|Name: Ann|Acc B Name: Bob",
        "0-0 A|2-2 Bob"}});
  expectSaved(setupFor(MatchToNextMatch, "Acc",
                       named(FileNameMethod::AfterText,
                             [](SplitSetup& setup) { setup.ignoreCase = true; })),
              {{"textIsFoldedWithTheSearchText", "ACC A name: Ann", "0-0 A"}});
  expectSaved(
      setupFor(MatchToNextMatch, "Acc",
               named(FileNameMethod::AfterText,
                     [](SplitSetup& setup) { setup.extractFileName = QStringLiteral("Bill to"); })),
      {{"textOfTwoWordsIsMissed", "Acc A Bill|to Ann", "0-1 Ann"}});
  expectSaved(setupFor(MatchToNextMatch, "Name:", afterText()),
              {{"searchTextAsFilenameTextAlternates", "Name: A|Name: B|Name: C|Name: D",
                "0-0 A|1-1 B|2-2 C|3-3 D"}});
  expectSaved(
      setupFor(MatchToNextMatch, "Acc", restOfLine()),
      {{"restOfLineRunsOn", "Acc A B;C D", "0-0 A_B"},
       {"restOfLineBehindTextKeepsItsStart", "Acc A B;Name: Ann Lee;C", "0-0 Ann_Lee"},
       {"restOfLineLeaksIntoNextRange", "Acc A B|Acc C|Acc D", "0-0 A_B|1-1 C|2-2 D"},
       {"restOfLineRunsOnBehindMatchInLine", "x|Acc A|Acc B Acc C", "1-1 A|2-2 B_Acc|2-2 C"},
       {"separatorFollowsPunctuation", "Acc A- B, C: D+ E\xE2\x80\x93 F", "0-0 A-B,C:_D+E–F"}});
  expectSaved(
      setupFor(MatchToUntil, "Acc",
               restOfLine([](SplitSetup& setup) { setup.extractUntil = QStringLiteral("Total"); })),
      {{"restOfLineRunsOnBehindUntil", "Acc A Total B|Acc C Total", "0-0 A_Total|1-1 C_Total"}});
  expectSaved(setupFor(MatchToNextMatch, "Name:", restOfLine()),
              {{"searchTextAsFilenameTextLosesLine", "Name: A B|Name: C D|Name: E F",
                "0-0 A_B|1-1 C_D|2-2 E_F"}});
  expectSaved(setupFor(MatchToNextMatchAtPosition, "Acc:", restOfLine([](SplitSetup& setup) {
                         setup.matchPosV = QStringLiteral("100");
                       })),
              {{"matchedWordAtPositionIsLost", "Acc: A B|Acc: C", "0-0 Acc:_A_B|1-1 Acc:_C"}});
  expectSaved(setupFor(MatchToNextMatchAtPosition, "Acc:",
                       named(FileNameMethod::NextWord,
                             [](SplitSetup& setup) { setup.matchPosV = QStringLiteral("100"); })),
              {{"lastRangeAtPositionForgetsItsLine", "Acc: A|Acc: B", "0-0 A|1-1 Acc:"}});
  expectSaved(setupFor(MatchToNextMatch, "Acc",
                       restOfLine([](SplitSetup& setup) { setup.takenWordsForFileName = 2; })),
              {{"tooManyWordsAreTaken", "Acc A B C;D", "0-0 A_B"},
               {"wordsInFrontOfTextCount", "Acc A Name: Ann Lee C", "0-0 Ann_Lee"}});
  expectSaved(setupFor(MatchToNextMatch, "Acc", restOfLine([](SplitSetup& setup) {
                         setup.firstCharOfWord = QStringLiteral("No");
                       })),
              {{"stopWordIsTaken", "Acc A no Nov B", "0-0 A_no"}});
  expectSaved(setupFor(MatchToNextMatch, "Acc",
                       restOfLine([](SplitSetup& setup) { setup.untilHHPosLessThan = 170; })),
              {{"wordsBehindStopPositionAreTaken", "Acc A B C", "0-0 A"}});
  expectSaved(setupFor(MatchToNextMatch, "Acc",
                       restOfLine([](SplitSetup& setup) { setup.untilHHPosLessThan = 0; })),
              {{"zeroStopPositionStops", "Acc A B", "0-0 A_B"}});
  expectSaved(setupFor(MatchToNextMatch, "Acc",
                       restOfLine([](SplitSetup& setup) { setup.addBWords.clear(); })),
              {{"noSeparatorMeansBlank", "Acc A B", "0-0 AB"}});
  expectSaved(setupFor(MatchToNextMatch, "Acc", andNextPage()),
              {{"firstLineOfNextPageIsMissed", "Acc A;Name: Ann Lee|Street 5;Town|x",
                "0-2 Ann_Lee_Street_5"},
               {"lineBehindMatchIsNotTaken", "Acc A B;C|D E;F", "0-1 A_B_D_E"},
               {"firstLineIsTakenOfEveryPage", "Acc A|B|C|D", "0-3 A_B"},
               {"lineIsTakenTwice", "Acc A|Name: Ann|x", "0-2 Ann_x"}});
  expectSaved(setupFor(MatchToNextMatch, "Acc",
                       andNextPage([](SplitSetup& setup) { setup.takenWordsForFileName = 1; })),
              {{"stopOfLineStopsNextPage", "Acc A B|C D", "0-1 A_C"}});
}

TEST(FirstLineOfNextPage, beginsAtTheFirstWordThatIsNoBlank) {
  SplitSetup setup = setupFor(MatchToNextMatch, "Acc");
  nameBy(setup, FileNameMethod::AfterTextRestOfLineAndNextPage);
  const MemoryPage second = {{" ", 10, 5}, {"B", 10, 20}, {"C", 10, 30}, {"D", 30, 20}};
  EXPECT_EQ(savedBy(setup, {page("Acc A"), second}), "0-1 A_B");
}

TEST(CollectedText, isCutAtItsCapacity) {
  SplitSetup setup = setupFor(MatchToNextMatch, "Acc");
  nameBy(setup, FileNameMethod::AfterTextRestOfLine);
  setup.untilHHPosLessThan = 0;
  MemoryPage words = {{"Acc", 0, 10}};
  for (int i = 1; i <= 5; ++i) {
    words.push_back({QString(254, u'w'), i * 10, 10});
  }
  Job job(setup, {words});
  job.scan();
  EXPECT_EQ(job.saver.ranges.at(0).restOfLine, QString(maxCollectedLength, u'w'));

  // A letter beyond the basic plane is kept or dropped as a whole.
  const QString fits(6, u'w');
  words.at(5).text = fits + QString::fromUtf8("\xF0\x9F\x98\x80");
  Job pair(setup, {words});
  pair.scan();
  EXPECT_EQ(pair.saver.ranges.at(0).restOfLine, QString(1016, u'w') + fits);
}

} // namespace
} // namespace folivex::test
