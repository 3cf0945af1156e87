// Ranges from a source's outline.
#include "engine/plan/BookmarkRanges.h"
#include "tests/support/Programs.h"

#include <gtest/gtest.h>

using namespace folivex;

namespace {

struct Row {
  const char* fault;
  std::vector<Bookmark> outline;
  SplitMethod method;
  const char* ranges; ///< "first-last title;", pages from 1
};

} // namespace

TEST(BookmarkRanges, Rows) {
  constexpr auto any = SplitMethod::Bookmarks;
  constexpr auto root = SplitMethod::RootBookmarks;
  constexpr auto second = SplitMethod::SecondLevelBookmarks;
  const std::vector<Bookmark> tree = {{"A", 0, 2},    {"A1", 1, 2}, {"A2", 1, 4},
                                      {"deep", 2, 5}, {"B", 0, 6},  {"B1", 1, 9}};
  const Row rows[] = {
      {"level mixed in", tree, root, "2-5 A;6-10 B;"},
      {"second level", tree, second, "2-3 A1;4-8 A2;9-10 B1;"},
      {"level left out", tree, any, "2-3 A;4-4 A2;5-5 deep;6-8 B;9-10 B1;"},
      {"entry without a page", {{"A", 0, 0}, {"B", 0, 3}, {"C", 0, 0}}, root, "3-10 B;"},
      {"page that the file does not have",
       {{"A", 0, 3}, {"B", 0, 11}, {"C", 0, -1}},
       root,
       "3-10 A;"},
      {"order of the outline taken for that of the pages",
       {{"late", 0, 8}, {"early", 0, 1}},
       root,
       "1-7 early;8-10 late;"},
      {"empty range", {{"first", 0, 4}, {"second", 0, 4}, {"C", 0, 5}}, root, "4-4 first;5-10 C;"},
      {"level that nothing has", {{"A", 0, 1}}, second, ""},
      {"no outline", {}, any, ""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.fault);
    QString ranges;
    for (const SplitRange& range : bookmarkRanges(row.outline, row.method, 10)) {
      ranges += QStringLiteral("%1-%2 %3;")
                    .arg(range.firstPage + 1)
                    .arg(range.lastPage + 1)
                    .arg(range.rangeText);
    }
    EXPECT_EQ(ranges, QString::fromLatin1(row.ranges));
  }
}
