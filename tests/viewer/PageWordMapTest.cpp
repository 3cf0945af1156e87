// Finding words by place, on words made in memory.
#include "app/viewer/PageWordMap.h"

#include "tests/support/Rows.h"

namespace folivex::test {
namespace {

ViewedWord wordAt(const char* text, int h, int v) {
  return {QString::fromUtf8(text), h, v, h, v, v, QRectF(h, v - 10, 30, 12)};
}

/// Two lines of three words, and one word that stands upon another.
const std::vector<ViewedWord>& somePage() {
  static const std::vector<ViewedWord> words = {
      wordAt("Account", 100, 50), wordAt("number:", 140, 50), wordAt("17", 400, 50),
      wordAt("Account", 90, 80),  wordAt("Number:", 145, 80), wordAt("18", 405, 80),
      wordAt("seal", 405, 80)};
  return words;
}

TEST(PageWordMaps, StepToTheWordThatAnEyeWouldGoTo) {
  const PageWordMap map(somePage());
  const std::tuple<int, WordStep, int> rows[] = {
      {-1, WordStep::Down, 0}, {0, WordStep::Left, 0}, {2, WordStep::Right, 3},
      {6, WordStep::Right, 6}, {1, WordStep::Down, 4}, {2, WordStep::Down, 5},
      {4, WordStep::Up, 1},    {0, WordStep::Up, 0},   {5, WordStep::Down, 5}};
  for (const auto& [from, step, to] : rows) {
    EXPECT_EQ(map.step(from, step), to) << from;
  }
  const std::vector<ViewedWord> none;
  EXPECT_EQ(PageWordMap(none).step(-1, WordStep::Right), -1);
}

TEST(PageWordMaps, FindTheWordsOfAMatch) {
  const PageWordMap map(somePage());
  forEachRow("viewer/matches.json", [&map](const SplitSetup&, const QStringList& row) {
    QString found;
    for (const int word : map.wordsOfMatch(row[0], row[1].toInt(), row[2].toInt())) {
      found += QString::number(word);
    }
    EXPECT_EQ(found, row[3]);
  });
}

TEST(PageWordMaps, FindATextOverWordsAndWithinThem) {
  const PageWordMap map(somePage());
  using Places = std::vector<std::vector<int>>;
  EXPECT_EQ(map.wordsWith("NUMBER:"), (Places{{1}, {4}}));
  EXPECT_EQ(map.wordsWith("t  number: 1"), (Places{{0, 1, 2}, {3, 4, 5}}));
  EXPECT_EQ(map.wordsWith("account"), (Places{{0}, {3}}));
  EXPECT_EQ(map.wordsWith("18 seal"), (Places{{5, 6}}));
  EXPECT_EQ(map.wordsWith("seal"), (Places{{6}}));
  EXPECT_TRUE(map.wordsWith("  ").empty());
  EXPECT_TRUE(map.wordsWith("1718").empty());
}

TEST(PageWordMaps, RangesHoldTheWordsThatASearchWouldTake) {
  const PageWordMap map(somePage());
  EXPECT_EQ(map.wordsIn({100, 140, 50, 80}), (std::vector<int>{0, 1}));
  EXPECT_EQ(map.wordsIn({405, 405, 80, 80}), (std::vector<int>{5, 6}));
  EXPECT_EQ(rangeOf(QRectF(320.6, 90.2, 4.1, 19.5), false), (PositionRange{320, 325, 90, 110}));
  EXPECT_EQ(rangeOf(QRectF(320.6, 90.2, 4.1, 19.5), true), (PositionRange{90, 110, 320, 325}));
  EXPECT_EQ(rangeOf(QRectF(-5, -7, 6, 9), false), (PositionRange{1, 1, 1, 2}));
  EXPECT_EQ(rangeText({320, 325, 90, 90}), "h 320-325, v 90");
}

} // namespace
} // namespace folivex::test
