// The text and CSV report, byte for byte.
#include "engine/report/Reports.h"
#include "tests/support/Programs.h"
#include "tests/support/SmallDisk.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

using namespace folivex;
using namespace folivex::test;

namespace {

const QByteArray mark = "\xEF\xBB\xBF";

/// What a text report's line end becomes on disk.
QByteArray onDisk(QByteArray text) {
  return mark + text.replace("\n", "\r\r\n");
}

class ReportsTest : public testing::Test {
protected:
  QString at(const char* name) const { return m_folder.filePath(QLatin1String(name)); }

  Reports::Opened open(const ReportPaths& paths) {
    return m_reports.open(paths, QStringLiteral("/in/a.pdf"), QString::fromUtf8("Kontó:"),
                          QDateTime(QDate(2026, 3, 9), QTime(8, 5, 7)));
  }
  Reports::Opened open() { return open({at("r.txt"), at("r.csv"), nullReport()}); }

  QTemporaryDir m_folder;
  Reports m_reports;
};

const QByteArray textHead = "\t\t\t\tFolivex v4.00 Report\t\t\t03/09/26 08:05:07\n\n"
                            "\tPDF Filename: /in/a.pdf                     \n"
                            "\tFind: Kontó:\n\n";
const QByteArray csvHead = "Folivex v4.00 SA Report,,03/09/26,08:05:07\n\n"
                           "PDF Filename:,/in/a.pdf                     \n"
                           "Find:,Kontó:\n\n"
                           "Start Page,End Page,Matched,Output File\n";

const ReportLine first{1, 3, QStringLiteral("1001"), QStringLiteral("/out/1001.pdf")};
const ReportLine longOne{9998, 10000, QStringLiteral("a text of more than thirty characters"),
                         QStringLiteral("/out/b,c.pdf")};
const ReportLine foreign{4, 12, QString::fromUtf8("Élodie Brûlé 東京 🙂"),
                         QString::fromUtf8("/out/Élodie 🙂.pdf")};

const QByteArray textLines =
    "Page: 1  - 3 \t1001                          \tOutput file:/out/1001.pdf\n"
    "Page: 9998 - 10000\ta text of more than thirty characters\tOutput "
    "file:/out/b,c.pdf\n";
const QByteArray csvLines = "1 ,3 ,1001                          ,/out/1001.pdf\n"
                            "9998,10000,a text of more than thirty characters,/out/b,c.pdf\n";

} // namespace

TEST_F(ReportsTest, WholeReport) {
  ASSERT_EQ(open().error, RunError::None);
  m_reports.writeRange(first);
  m_reports.writeRange(longOne);
  m_reports.writeTotals(2);
  ASSERT_EQ(m_reports.close().error, RunError::None);
  EXPECT_EQ(contentOf(at("r.txt")), onDisk(textHead + textLines + "\n\t2 PDF file(s)\n"));
  EXPECT_EQ(contentOf(at("r.csv")), onDisk(csvHead + csvLines + "\n,2, PDF file(s)\n"));
}

TEST_F(ReportsTest, LinesOfMissingOutputsAreDropped) {
  for (const bool withoutText : {false, true}) {
    SCOPED_TRACE(withoutText);
    ASSERT_EQ(open({withoutText ? nullReport() : at("r.txt"), at("r.csv"), {}}).error,
              RunError::None);
    m_reports.writeRange(foreign);
    m_reports.writeRange(first);
    m_reports.writeRange(foreign);
    m_reports.flush();
    m_reports.writeRange(longOne);
    m_reports.writeRange(foreign);
    m_reports.dropRanges([](const QString& path, int firstPage) {
      return path == foreign.outputPath && firstPage == foreign.firstPage;
    });
    m_reports.writeTotals(2);
    ASSERT_EQ(m_reports.close().error, RunError::None);
    EXPECT_EQ(contentOf(at("r.csv")), onDisk(csvHead + csvLines + "\n,2, PDF file(s)\n"));
    if (!withoutText) {
      EXPECT_EQ(contentOf(at("r.txt")), onDisk(textHead + textLines + "\n\t2 PDF file(s)\n"));
    }
  }
}

TEST_F(ReportsTest, SwitchedOffReportLeavesTheOtherAlone) {
  ASSERT_EQ(open({nullReport(), at("r.csv"), nullReport()}).error, RunError::None);
  m_reports.writeRange(first);
  m_reports.writeRange(longOne);
  EXPECT_EQ(m_reports.close().error, RunError::None);
  EXPECT_EQ(contentOf(at("r.csv")), onDisk(csvHead + csvLines));
  EXPECT_EQ(filesBelow(m_folder.path()), QStringList{QStringLiteral("r.csv")});
}

TEST_F(ReportsTest, LongerReportOfAnEarlierRunIsGone) {
  writeFile(at("r.txt"), QByteArray(100'000, 'x'));
  ASSERT_EQ(open().error, RunError::None);
  ASSERT_EQ(m_reports.close().error, RunError::None);
  EXPECT_EQ(contentOf(at("r.txt")), onDisk(textHead));
}

// A disk that fills up is told when the reports are closed, and by name.
TEST_F(ReportsTest, FullDiskIsTold) {
  ASSERT_EQ(open({nullReport(), at("r.csv"), nullReport()}).error, RunError::None);
  const SmallDisk full(64);
  m_reports.writeRange(first);
  const Reports::Opened closed = m_reports.close();
  EXPECT_EQ(closed.error, RunError::CsvReport);
  EXPECT_TRUE(closed.message.contains(at("r.csv"))) << closed.message.toStdString();
}
