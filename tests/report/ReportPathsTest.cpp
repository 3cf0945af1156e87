// Where the reports of a run go.
#include "engine/report/ReportPaths.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <functional>

using namespace folivex;

namespace {

struct Row {
  const char* fault;
  std::function<void(SplitSetup&)> arrange;
  bool folderWritable;
  const char* source;
  const char* text;
  const char* csv;
  const char* email;
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
      {"ending cut off the source's name", nothing, true, "/in/a.pdf", "/in/a.pdf_report.txt",
       "/in/a.pdf_report.csv", "nul"},
      {"blank at the end of the source kept", nothing, true, "/in/a.pdf ", "/in/a.pdf_report.txt",
       "/in/a.pdf_report.csv", "nul"},
      {"not writable, yet beside the source", nothing, false, "/in/a.pdf", "/out/a.pdf_report.txt",
       "/out/a.pdf_report.csv", "nul"},
      {"not writable, separator of another system", nothing, false, "c:\\in\\a.pdf",
       "/out/a.pdf_report.txt", "/out/a.pdf_report.csv", "nul"},
      {"report folder ignored", inFolder("/reports"), true, "/in/a.pdf",
       "/reports/a.pdf_report.txt", "/reports/a.pdf_report.csv", "nul"},
      {"report folder ignored where nothing is writable", inFolder("/reports"), false, "/in/a.pdf",
       "/reports/a.pdf_report.txt", "/reports/a.pdf_report.csv", "nul"},
      {"report folder of one character used", inFolder("/"), true, "/in/a.pdf",
       "/in/a.pdf_report.txt", "/in/a.pdf_report.csv", "nul"},
      {"report folder used against the current-folder switch",
       [](SplitSetup& setup) { setup.reportOptionsOutputFolder = QStringLiteral("/reports"); },
       true, "/in/a.pdf", "/in/a.pdf_report.txt", "/in/a.pdf_report.csv", "nul"},
      {"text report not switched off", [](SplitSetup& setup) { setup.reportOptionsTxt = false; },
       true, "/in/a.pdf", "nul", "/in/a.pdf_report.csv", "nul"},
      {"csv report not switched off", [](SplitSetup& setup) { setup.reportOptionsCsv = false; },
       true, "/in/a.pdf", "/in/a.pdf_report.txt", "nul", "nul"},
      {"e-mail report missing", [](SplitSetup& setup) { setup.emailEnable = true; }, true,
       "/in/a.pdf", "/in/a.pdf_report.txt", "/in/a.pdf_report.csv", "/in/a.pdf_email_report.csv"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.fault);
    SplitSetup setup;
    row.arrange(setup);
    const ReportPaths paths = reportPaths(setup, QString::fromUtf8(row.source),
                                          QStringLiteral("/out"), row.folderWritable);
    EXPECT_EQ(paths.text.toStdString(), row.text);
    EXPECT_EQ(paths.csv.toStdString(), row.csv);
    EXPECT_EQ(paths.emailCsv.toStdString(), row.email);
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
