#include "engine/base/Text.h"
#include "engine/match/MatchText.h"
#include "engine/match/PositionRule.h"
#include "engine/match/WordRing.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <limits>

namespace folivex::test {
namespace {

struct PositionRow {
  const char* name;
  QStringView ruleH;
  QStringView ruleV;
  int h;
  int v;
  int length;
  bool holds;
};

class PositionRules : public testing::TestWithParam<PositionRow> {};

TEST_P(PositionRules, holdOrNot) {
  const PositionRow& row = GetParam();
  EXPECT_EQ(PositionRule(row.ruleH, row.ruleV).holds(row.h, row.v, row.length), row.holds);
}

const std::vector<PositionRow> positionRows = {
    {"rangeIsRefused", u"120-125", u"320", 123, 320, 8, true},
    {"rangeIsOpenAtItsEnd", u"120-125", u"320", 125, 320, 8, true},
    {"rangeTakesTooMuch", u"120-125", u"320", 126, 320, 8, false},
    {"otherLineIsTaken", u"120-125", u"320", 123, 321, 8, false},
    {"rangeFromNegativeIsRefused", u"-5-7", u"320", 3, 320, 8, true},
    {"alternativeIsRefused", u"320-325|400", u"10", 400, 10, 8, true},
    {"alternativeWithoutRangeIsRefused", u"320|400", u"10|20", 320, 20, 8, true},
    {"betweenRangeAndAlternativeIsTaken", u"320-325|400", u"10", 360, 10, 8, false},
    {"zeroIsNotAnywhereOnLine", u"0", u"320", 77, 320, 8, true},
    {"zeroIsNotAnywhereOnColumn", u"77", u"0", 77, 5, 8, true},
    {"emptyIsNotZero", u"", u"320", 77, 320, 8, true},
    {"twoZerosTakeEverything", u"", u"", 77, 320, 8, false},
    {"minusIsTakenForRange", u"-1", u"320", 77, 320, 1, true},
    {"lengthIsNotCompared", u"-1", u"320", 77, 320, 2, false},
    {"lengthOnColumnIsRefused", u"77", u"-8", 77, 5, 8, true},
    {"zeroGoesWithRangeOfOtherAxis", u"0", u"320-330", 77, 325, 8, false},
    {"smallestNumberOverflows", u"-99999999999", u"320", 77, 320, 2, false},
    {"blanksInFrontStopTheNumber", u" 120", u"320", 120, 320, 8, true}};

INSTANTIATE_TEST_SUITE_P(Rows, PositionRules, testing::ValuesIn(positionRows),
                         [](const auto& row) { return row.param.name; });

TEST(LeadingInteger, readsAsFarAsDigitsGoAndNeverOverflows) {
  EXPECT_EQ(leadingInteger(u" \t-12abc"), -12);
  EXPECT_EQ(leadingInteger(u"+7]"), 7);
  EXPECT_EQ(leadingInteger(u"- 7"), 0);
  EXPECT_EQ(leadingInteger(u"\u0663"), 0);
  EXPECT_EQ(leadingInteger(u"99999999999999999999999"), std::numeric_limits<int>::max());
  EXPECT_EQ(leadingInteger(u"-99999999999999999999999"), std::numeric_limits<int>::min());
}

TEST(EqualTexts, foldLatinLettersAlone) {
  EXPECT_TRUE(equalTexts(u"Account:", u"aCCOUNT:", Qt::CaseInsensitive));
  EXPECT_FALSE(equalTexts(u"Account:", u"account:", Qt::CaseSensitive));
  EXPECT_FALSE(equalTexts(u"\u00C9tat", u"\u00E9tat", Qt::CaseInsensitive));
  EXPECT_FALSE(equalTexts(u"[", u"{", Qt::CaseInsensitive));
  EXPECT_FALSE(equalTexts(u"Account", u"Account:", Qt::CaseInsensitive));
}

bool ringMatches(const QString& pattern, const QStringList& words) {
  WordRing ring(pattern, Qt::CaseSensitive);
  for (const QString& word : words) {
    ring.push(word);
  }
  return ring.matches();
}

TEST(WordRing, comparesItsWordsAsOneText) {
  EXPECT_TRUE(ringMatches(QStringLiteral("Invoice No"), {"x", "Invoice", "No"}));
  EXPECT_FALSE(ringMatches(QStringLiteral("Invoice No"), {"Invoice", "x", "No"}));
  EXPECT_FALSE(ringMatches(QStringLiteral("Invoice No"), {"InvoiceN", "o"}));
  EXPECT_FALSE(ringMatches(QStringLiteral("Invoice No"), {"Invoice", "No."}));
  EXPECT_FALSE(ringMatches(QStringLiteral("Invoice No"), {"Invoice"}));
  EXPECT_FALSE(ringMatches(QStringLiteral("Invoice"), {"Invoice"})) << "one word needs no ring";
  // A word that holds a blank fills the pattern before all slots are full.
  EXPECT_TRUE(ringMatches(QStringLiteral("A B C"), {"A B", "C"}));
  EXPECT_FALSE(ringMatches(QStringLiteral("A B C"), {"x", "A B", "C"}));
}

TEST(WordRing, cutsJoinedWordsAtTheirCapacity) {
  const QString word(255, u'w');
  const QStringList words{word, word, word, word, word};
  const QString whole = words.join(u' ');
  EXPECT_FALSE(ringMatches(whole, words));
  // Four words fill the room to the last character.
  const QString full = whole.first(maxCollectedLength);
  EXPECT_TRUE(ringMatches(full, {word, word, word, word}));
  EXPECT_TRUE(ringMatches(full, {word, word, word, word + u'x'})) << "cut behind the pattern's end";
  EXPECT_FALSE(ringMatches(whole.first(maxCollectedLength - 1), {word, word, word, word}));
}

} // namespace
} // namespace folivex::test
