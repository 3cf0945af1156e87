// Which words of the pages name a range.
#include "tests/match/MemoryPages.h"

#include <gtest/gtest.h>

namespace folivex::test {
namespace {

using enum SplitMethod;

class TextsOfRanges : public testing::TestWithParam<JobRow> {};

TEST_P(TextsOfRanges, areThoseExpected) {
  EXPECT_EQ(savedBy(GetParam()), GetParam().saved);
}

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

const std::vector<JobRow> rows = {
    {"matchedWordIsTheNextOne", MatchToNextMatch, "Acc", matchedWord(), {"Acc A"}, "0-0 Acc"},
    {"matchedWordsAreTheLastOneOnly",
     MatchToNextMatch,
     "Acc No",
     matchedWord(),
     {"Acc No A"},
     "0-0 Acc No"},
    {"matchedWordIsThatOfTheNextRange",
     MatchToNextMatch,
     "acc",
     [](SplitSetup& setup) { setup.ignoreCase = true; },
     {"Acc A", "ACC B"},
     "0-0 Acc\n1-1 ACC"},
    {"nextWordIsLaterOne", MatchToNextMatch, "Acc", nextWord(), {"Acc A B"}, "0-0 A"},
    {"filenameAfterTextNamesOtherMethods",
     MatchToNextMatch,
     "Acc",
     nextWord(),
     {"Acc A Name: B"},
     "0-0 A"},

    {"wordBehindTextIsMissed",
     MatchToNextMatch,
     "Acc",
     afterText(),
     {"Acc A\nName: Ann", "Acc B\nName: Bob"},
     "0-0 Ann\n1-1 Bob"},
    {"laterTextOfRangeIsTaken",
     MatchToNextMatch,
     "Acc",
     afterText(),
     {"Acc A\nName: Ann", "Name: Zoe", "Acc B\nName: Bob"},
     "0-1 Ann\n2-2 Bob"},
    {"textInFrontOfFirstMatchIsTaken",
     MatchToNextMatch,
     "Acc",
     afterText(),
     {"Name: Ann Acc A"},
     "0-0 A"},
    {"textBehindTheEndOfRangeIsTaken",
     MatchToUntil,
     "Acc",
     named(FileNameMethod::AfterText,
           [](SplitSetup& setup) { setup.extractUntil = QStringLiteral("Total"); }),
     {"Acc A Total", "Name: Ann", "Acc B Name: Bob"},
     "0-0 A\n2-2 Bob"},
    {"textIsFoldedWithTheSearchText",
     MatchToNextMatch,
     "Acc",
     named(FileNameMethod::AfterText, [](SplitSetup& setup) { setup.ignoreCase = true; }),
     {"ACC A name: Ann"},
     "0-0 A"},
    {"textOfTwoWordsIsMissed",
     MatchToNextMatch,
     "Acc",
     named(FileNameMethod::AfterText,
           [](SplitSetup& setup) { setup.extractFileName = QStringLiteral("Bill to"); }),
     {"Acc A Bill", "to Ann"},
     "0-1 Ann"},
    {"searchTextAsFilenameTextAlternates",
     MatchToNextMatch,
     "Name:",
     afterText(),
     {"Name: A", "Name: B", "Name: C", "Name: D"},
     "0-0 A\n1-1 B\n2-2 C\n3-3 D"},

    {"restOfLineRunsOn", MatchToNextMatch, "Acc", restOfLine(), {"Acc A B\nC D"}, "0-0 A_B"},
    {"restOfLineBehindTextKeepsItsStart",
     MatchToNextMatch,
     "Acc",
     restOfLine(),
     {"Acc A B\nName: Ann Lee\nC"},
     "0-0 Ann_Lee"},
    {"restOfLineLeaksIntoNextRange",
     MatchToNextMatch,
     "Acc",
     restOfLine(),
     {"Acc A B", "Acc C", "Acc D"},
     "0-0 A_B\n1-1 C\n2-2 D"},
    {"restOfLineRunsOnBehindMatchInLine",
     MatchToNextMatch,
     "Acc",
     restOfLine(),
     {"x", "Acc A", "Acc B Acc C"},
     "1-1 A\n2-2 B_Acc\n2-2 C"},
    {"restOfLineRunsOnBehindUntil",
     MatchToUntil,
     "Acc",
     restOfLine([](SplitSetup& setup) { setup.extractUntil = QStringLiteral("Total"); }),
     {"Acc A Total B", "Acc C Total"},
     "0-0 A_Total\n1-1 C_Total"},
    {"searchTextAsFilenameTextLosesLine",
     MatchToNextMatch,
     "Name:",
     restOfLine(),
     {"Name: A B", "Name: C D", "Name: E F"},
     "0-0 A_B\n1-1 C_D\n2-2 E_F"},
    {"matchedWordAtPositionIsLost",
     MatchToNextMatchAtPosition,
     "Acc:",
     restOfLine([](SplitSetup& setup) { setup.matchPosV = QStringLiteral("100"); }),
     {"Acc: A B", "Acc: C"},
     "0-0 Acc:_A_B\n1-1 Acc:_C"},
    {"lastRangeAtPositionForgetsItsLine",
     MatchToNextMatchAtPosition,
     "Acc:",
     named(FileNameMethod::NextWord,
           [](SplitSetup& setup) { setup.matchPosV = QStringLiteral("100"); }),
     {"Acc: A", "Acc: B"},
     "0-0 A\n1-1 Acc:"},

    {"tooManyWordsAreTaken",
     MatchToNextMatch,
     "Acc",
     restOfLine([](SplitSetup& setup) { setup.takenWordsForFileName = 2; }),
     {"Acc A B C\nD"},
     "0-0 A_B"},
    {"wordsInFrontOfTextCount",
     MatchToNextMatch,
     "Acc",
     restOfLine([](SplitSetup& setup) { setup.takenWordsForFileName = 2; }),
     {"Acc A Name: Ann Lee C"},
     "0-0 Ann_Lee"},
    {"stopWordIsTaken",
     MatchToNextMatch,
     "Acc",
     restOfLine([](SplitSetup& setup) { setup.firstCharOfWord = QStringLiteral("No"); }),
     {"Acc A no Nov B"},
     "0-0 A_no"},
    {"wordsBehindStopPositionAreTaken",
     MatchToNextMatch,
     "Acc",
     restOfLine([](SplitSetup& setup) { setup.untilHHPosLessThan = 170; }),
     {"Acc A B C"},
     "0-0 A"},
    {"zeroStopPositionStops",
     MatchToNextMatch,
     "Acc",
     restOfLine([](SplitSetup& setup) { setup.untilHHPosLessThan = 0; }),
     {"Acc A B"},
     "0-0 A_B"},
    {"separatorFollowsPunctuation",
     MatchToNextMatch,
     "Acc",
     restOfLine(),
     {"Acc A- B, C: D+ E\xE2\x80\x93 F"},
     "0-0 A-B,C:_D+E\xE2\x80\x93"
     "F"},
    {"noSeparatorMeansBlank",
     MatchToNextMatch,
     "Acc",
     restOfLine([](SplitSetup& setup) { setup.addBWords.clear(); }),
     {"Acc A B"},
     "0-0 AB"},

    {"firstLineOfNextPageIsMissed",
     MatchToNextMatch,
     "Acc",
     andNextPage(),
     {"Acc A\nName: Ann Lee", "Street 5\nTown", "x"},
     "0-2 Ann_Lee_Street_5"},
    {"lineBehindMatchIsNotTaken",
     MatchToNextMatch,
     "Acc",
     andNextPage(),
     {"Acc A B\nC", "D E\nF"},
     "0-1 A_B_D_E"},
    {"firstLineIsTakenOfEveryPage",
     MatchToNextMatch,
     "Acc",
     andNextPage(),
     {"Acc A", "B", "C", "D"},
     "0-3 A_B"},
    {"lineIsTakenTwice",
     MatchToNextMatch,
     "Acc",
     andNextPage(),
     {"Acc A", "Name: Ann", "x"},
     "0-2 Ann_x"},
    {"stopOfLineStopsNextPage",
     MatchToNextMatch,
     "Acc",
     andNextPage([](SplitSetup& setup) { setup.takenWordsForFileName = 1; }),
     {"Acc A B", "C D"},
     "0-1 A_C"}};

INSTANTIATE_TEST_SUITE_P(Rows, TextsOfRanges, testing::ValuesIn(rows),
                         [](const auto& row) { return row.param.name; });

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
