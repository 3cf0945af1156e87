#include "engine/base/Text.h"
#include "engine/match/MatchText.h"
#include "engine/match/PositionRule.h"
#include "engine/match/WordRing.h"
#include "tests/support/Rows.h"

#include <limits>

namespace folivex::test {
namespace {

TEST(PositionRules, holdOrNot) {
  forEachRow("match/positions.json", [](const SplitSetup& setup, const QStringList& row) {
    const PositionRule rule(setup.matchPosH, setup.matchPosV);
    EXPECT_EQ(rule.holds(row[0].toInt(), row[1].toInt(), row[2].toInt()), row[3] == u"yes");
  });
}

TEST(LeadingInteger, readsAsFarAsDigitsGoAndNeverOverflows) {
  EXPECT_EQ(leadingInteger(u" \t-12abc"), -12);
  EXPECT_EQ(leadingInteger(u"+7]"), 7);
  EXPECT_EQ(leadingInteger(u"- 7"), 0);
  EXPECT_EQ(leadingInteger(u"\u0663"), 0);
  EXPECT_EQ(leadingInteger(u"99999999999999999999999"), std::numeric_limits<int>::max());
  EXPECT_EQ(leadingInteger(u"-99999999999999999999999"), std::numeric_limits<int>::min());
}

TEST(EqualTexts, foldLatinLettersAlone) {
  EXPECT_FALSE(equalTexts(u"[", u"{", Qt::CaseInsensitive));
  EXPECT_TRUE(equalTexts(u"AZ", u"az", Qt::CaseInsensitive));
}

bool ringMatches(const QString& pattern, const QStringList& words) {
  WordRing ring(pattern, Qt::CaseSensitive);
  for (const QString& word : words) {
    ring.push(word);
  }
  return ring.matches();
}

TEST(WordRing, comparesItsWordsAsOneText) {
  EXPECT_FALSE(ringMatches("Invoice", {"Invoice"})) << "one word needs no ring";
  // A word that holds a blank fills the pattern before all slots are full.
  EXPECT_TRUE(ringMatches("A B C", {"A B", "C"}));
  EXPECT_FALSE(ringMatches("A B C", {"x", "A B", "C"}));
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
