#include "engine/match/NearMisses.h"
#include "tests/match/MemoryPages.h"

#include <gtest/gtest.h>

namespace folivex::test {
namespace {

using enum SplitMethod;

std::string sentencesOf(NearMisses misses, const std::vector<MemoryPage>& pages) {
  MemoryPages source(pages);
  for (int i = 0; i < source.pageCount(); ++i) {
    misses.scanPage(i, source);
  }
  return misses.sentences().join(u'\n').toStdString();
}

void atPosition(SplitSetup& setup) {
  setup.pageExtract = splitMethodTexts()[2];
  setup.matchPosH = QStringLiteral("110");
  setup.matchPosV = QStringLiteral("100");
}

TEST(NearMisses, areThoseExpected) {
  struct Row {
    const char* fault;
    const char* searchText;
    std::function<void(SplitSetup&)> adjust;
    const char* pages;
    const char* sentences;
  };
  const Row rows[] = {
      {"matchIsNearMiss", "Account:", nullptr, "Account: x", ""},
      {"otherCaseIsMissed", "Account:", nullptr, "x|ACCOUNT: 1|ACCOUNT:",
       "Page 2, h 50, v 100: \"ACCOUNT:\" differs from the text in upper and lower case (2 times "
       "in all)."},
      {"attachedPunctuationIsMissed", "Account", nullptr,
       "x Account:", "Page 1, h 110, v 100: \"Account:\" differs from the text in punctuation."},
      {"splitWordIsMissed", "Account:", nullptr, "Acc ount:",
       "Page 1, h 110, v 100: \"Acc ount:\" has the letters of the text, but is divided into words "
       "differently."},
      {"joinedWordsAreMissed", "Invoice No", nullptr, "InvoiceNo",
       "Page 1, h 50, v 100: \"InvoiceNo\" has the letters of the text, but is divided into words "
       "differently."},
      {"wordsOfTwoPagesAreJoined", "Account:", nullptr, "x Acc|ount: y", ""},
      {"signBetweenWordsIsMissed", "Invoice No", nullptr, "Invoice - No",
       "Page 1, h 170, v 100: \"Invoice - No\" has the letters of the text, but is divided into "
       "words differently."},
      {"blankBehindSearchTextIsMissed", "Account: ", nullptr, "Account:",
       "Page 1, h 50, v 100: \"Account:\" differs from the text only in blanks that were typed "
       "into the setup."},
      {"farthestPlaceComesFirst", "Acc", atPosition, "Acc x|x;x Acc|x;x Acc",
       "Page 2, h 110, v 120: \"Acc\" would match, but does not stand at the position asked for (2 "
       "times in all).\n"
       "Page 1, h 50, v 100: \"Acc\" would match, but does not stand at the position asked for."},
      {"worseDifferenceComesFirst", "Acc", atPosition, "acc ACC|Acc",
       "Page 1, h 110, v 100: \"ACC\" differs from the text in upper and lower case.\n"
       "Page 2, h 50, v 100: \"Acc\" would match, but does not stand at the position asked for.\n"
       "Page 1, h 50, v 100: \"acc\" differs from the text in upper and lower case, and does not "
       "stand at the position asked for."},
      {"anyWordAtPositionIsMissed", "", atPosition, "far; near",
       "Page 1, h 50, v 100: \"far\" would match, but does not stand at the position asked for.\n"
       "Page 1, h 50, v 120: \"near\" would match, but does not stand at the position asked for."},
      {"signsAloneAreEverywhere", "***", nullptr, "--- ...", ""},
      {"pageTextIsTakenForPlaceHolder", "%1", nullptr, "(%1)",
       "Page 1, h 50, v 100: \"(%1)\" differs from the text in punctuation."},
      {"wordNumberHasNearMisses", "[WORD9]", nullptr, "WORD9", ""}};
  for (const Row& row : rows) {
    const SplitSetup setup = setupFor(MatchToNextMatch, row.searchText, row.adjust);
    EXPECT_EQ(sentencesOf(NearMisses::forSearchText(setup), pages(row.pages)), row.sentences)
        << row.fault;
  }
}

TEST(NearMisses, keepTheNearestOfMany) {
  SplitSetup setup = setupFor(MatchToNextMatchAtPosition, "");
  setup.matchPosH = QStringLiteral("5000");
  setup.matchPosV = QStringLiteral("10");
  NearMisses misses = NearMisses::forSearchText(setup);
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
