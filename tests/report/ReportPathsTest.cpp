// Where the reports of a run go.
#include "engine/report/ReportPaths.h"
#include "tests/support/Programs.h"
#include "tests/support/Rows.h"

#include <QTemporaryDir>

using namespace folivex;
using namespace folivex::test;

TEST(ReportPaths, Rows) {
  forEachRow("report/paths.json", [](const SplitSetup& setup, const QStringList& row) {
    const ReportPaths paths = reportPaths(setup, row[1], QStringLiteral("/out"), row[0] == u"yes");
    const auto expected = [&row](char report, const char* ending) {
      return row[3].contains(QLatin1Char(report)) ? row[2] + ending : nullReport();
    };
    EXPECT_EQ(QDir::fromNativeSeparators(paths.text), expected('t', "_report.txt"));
    EXPECT_EQ(QDir::fromNativeSeparators(paths.csv), expected('c', "_report.csv"));
    EXPECT_EQ(paths.emailCsv, expected('e', "_email_report.csv"));
  });
  EXPECT_EQ(nullReport(), "nul");
  // A source that was named without a folder has none to write its outputs to either.
  EXPECT_EQ(reportPaths(SplitSetup(), "a.pdf", QString(), false).text, "a.pdf_report.txt");
}

TEST(ReportPaths, ProbeLeavesNothingAndSparesAFileOfItsName) {
  const QTemporaryDir folder;
  const QString before = QDir::currentPath();
  ASSERT_TRUE(QDir::setCurrent(folder.path()));
  EXPECT_TRUE(currentFolderIsWritable());
  EXPECT_TRUE(QDir(folder.path()).isEmpty());
  writeFile("perm.dat", "mine");
  EXPECT_TRUE(currentFolderIsWritable());
  EXPECT_EQ(contentOf("perm.dat"), "mine");
  ASSERT_TRUE(QDir::setCurrent(before));
}
