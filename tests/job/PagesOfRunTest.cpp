// Which pages of a source a run looks at, and the ranges from a source's outline.
#include "engine/job/PageWindow.h"
#include "engine/plan/BookmarkRanges.h"
#include "engine/setup/SplitMethod.h"
#include "tests/support/Rows.h"

using namespace folivex;
using namespace folivex::test;

TEST(PageWindow, Rows) {
  forEachRow("job/page-windows.json", [](const SplitSetup& setup, const QStringList& row) {
    const PageWindow window = pageWindow(setup.startFromPage, setup.startEndPage, row[0].toInt());
    EXPECT_EQ(window.first, row[1].toInt());
    EXPECT_EQ(window.end, row[2].toInt());
  });
}

TEST(BookmarkRanges, Rows) {
  forEachRow("job/bookmark-ranges.json", [](const SplitSetup& setup, const QStringList& row) {
    std::vector<Bookmark> outline;
    for (const QString& entry : row[0].split(u';', Qt::SkipEmptyParts)) {
      const QStringList parts = entry.split(u' ');
      outline.push_back({parts[2], parts[0].toInt(), parts[1].toInt()});
    }
    QStringList ranges;
    for (const SplitRange& range : bookmarkRanges(outline, splitMethodOf(setup.pageExtract), 10)) {
      ranges += QStringLiteral("%1-%2 %3")
                    .arg(range.firstPage + 1)
                    .arg(range.lastPage + 1)
                    .arg(range.rangeText);
    }
    EXPECT_EQ(ranges.join(u';'), row[1]);
  });
}
