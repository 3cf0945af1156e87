// Which pages of a source a run looks at.
#include "engine/job/PageWindow.h"

#include <gtest/gtest.h>

#include <climits>

using namespace folivex;

TEST(PageWindow, Rows) {
  struct Row {
    const char* fault;
    int from;
    int to;
    int pages;
    int first;
    int end;
  };
  const Row rows[] = {
      {"whole file", 1, 0, 10, 0, 10},
      {"start at 0", 0, 0, 10, 0, 10},
      {"negative start", -3, 0, 10, 0, 10},
      {"last page left out", 2, 5, 10, 1, 5},
      {"end at the page count", 1, 10, 10, 0, 10},
      {"end behind the file", 1, 11, 10, 0, 10},
      {"pages off the end", 1, -2, 10, 0, 8},
      {"all but one off the end", 1, -9, 10, 0, 1},
      {"all pages off the end", 1, -10, 10, 0, 10},
      {"overflow", 1, INT_MIN, 10, 0, 10},
      {"start behind the file", INT_MAX, 0, 10, INT_MAX - 1, 10},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.fault);
    const PageWindow window = pageWindow(row.from, row.to, row.pages);
    EXPECT_EQ(window.first, row.first);
    EXPECT_EQ(window.end, row.end);
  }
}
