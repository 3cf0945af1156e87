// Where the reports of a run go.
#include "engine/report/ReportPaths.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstring>
#include <functional>

using namespace folivex;

namespace {

struct Row {
  const char* fault;
  std::function<void(SplitSetup&)> arrange;
  bool folderWritable;
  const char* source;
  const char* stem;
  const char* reports; ///< t: text, c: CSV, e: e-mail
};

constexpr auto nothing = [](SplitSetup&) {};

} // namespace

TEST(ReportPaths, Rows) {
  const auto inFolder = [](const char* folder) {
    return [folder](SplitSetup& setup) {
      setup.reportOptionsCurrent = false;
      setup.reportOptionsOutputFolder = QString::fromUtf8(folder);
    };
  };
  const Row rows[] = {
      {"ending cut off the source's name", nothing, true, "/in/a.pdf", "/in/a.pdf", "tc"},
      {"blank at the end of the source kept", nothing, true, "/in/a.pdf ", "/in/a.pdf", "tc"},
      {"not writable, yet beside the source", nothing, false, "/in/a.pdf", "/out/a.pdf", "tc"},
      {"not writable, separator of another system", nothing, false, "c:\\in\\a.pdf", "/out/a.pdf",
       "tc"},
      {"report folder ignored", inFolder("/reports"), true, "/in/a.pdf", "/reports/a.pdf", "tc"},
      {"report folder ignored where nothing is writable", inFolder("/reports"), false, "/in/a.pdf",
       "/reports/a.pdf", "tc"},
      {"report folder of one character used", inFolder("/"), true, "/in/a.pdf", "/in/a.pdf", "tc"},
      {"report folder used against the current-folder switch",
       [](SplitSetup& setup) { setup.reportOptionsOutputFolder = QStringLiteral("/reports"); },
       true, "/in/a.pdf", "/in/a.pdf", "tc"},
      {"text report not switched off", [](SplitSetup& setup) { setup.reportOptionsTxt = false; },
       true, "/in/a.pdf", "/in/a.pdf", "c"},
      {"csv report not switched off", [](SplitSetup& setup) { setup.reportOptionsCsv = false; },
       true, "/in/a.pdf", "/in/a.pdf", "t"},
      {"e-mail report missing", [](SplitSetup& setup) { setup.emailEnable = true; }, true,
       "/in/a.pdf", "/in/a.pdf", "tce"}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.fault);
    SplitSetup setup;
    row.arrange(setup);
    const ReportPaths paths = reportPaths(setup, QString::fromUtf8(row.source),
                                          QStringLiteral("/out"), row.folderWritable);
    const auto expected = [&row](char report, const char* ending) {
      return std::strchr(row.reports, report) != nullptr ? std::string(row.stem) + ending : "nul";
    };
    EXPECT_EQ(paths.text.toStdString(), expected('t', "_report.txt"));
    EXPECT_EQ(paths.csv.toStdString(), expected('c', "_report.csv"));
    EXPECT_EQ(paths.emailCsv.toStdString(), expected('e', "_email_report.csv"));
  }
}

// A source that was named without a folder has none to write its outputs to either.
TEST(ReportPaths, NoFolderDoesNotMeanTheRoot) {
  const ReportPaths paths = reportPaths(SplitSetup(), QStringLiteral("a.pdf"), QString(), false);
  EXPECT_EQ(paths.text, QStringLiteral("a.pdf_report.txt"));
}

TEST(ReportPaths, ProbeLeavesNothingAndSparesAFileOfItsName) {
  const QTemporaryDir folder;
  const QString before = QDir::currentPath();
  ASSERT_TRUE(QDir::setCurrent(folder.path()));
  EXPECT_TRUE(currentFolderIsWritable());
  EXPECT_TRUE(QDir(folder.path()).isEmpty());

  QFile own(QStringLiteral("perm.dat"));
  ASSERT_TRUE(own.open(QIODevice::WriteOnly));
  own.write("mine");
  own.close();
  EXPECT_TRUE(currentFolderIsWritable());
  ASSERT_TRUE(own.open(QIODevice::ReadOnly));
  EXPECT_EQ(own.readAll(), "mine");
  ASSERT_TRUE(QDir::setCurrent(before));
}
