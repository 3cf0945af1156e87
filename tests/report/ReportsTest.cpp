// The text and CSV report and the listing of word positions, byte for byte.
#include "engine/report/Reports.h"
#include "engine/report/PagePositions.h"
#include "tests/support/Programs.h"
#include "tests/support/RecordingOperator.h"
#include "tests/support/SmallDisk.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

using namespace folivex;
using namespace folivex::test;

namespace {

class ReportsTest : public testing::Test {
protected:
  QString at(const char* name) const { return m_folder.filePath(QLatin1String(name)); }

  /// What lies there, with the line ends of the text.
  QByteArray content(const char* name) const {
    QByteArray bytes = contentOf(at(name));
    EXPECT_TRUE(bytes.startsWith("\xEF\xBB\xBF"));
    return bytes.mid(3).replace("\r\r\n", "\n");
  }

  void open(bool text = true) {
    const ReportPaths paths{text ? at("r.txt") : nullReport(), at("r.csv"), nullReport()};
    ASSERT_EQ(m_reports
                  .open(paths, QStringLiteral("/in/a.pdf"), QString::fromUtf8("Kontó:"),
                        QDateTime(QDate(2026, 3, 9), QTime(8, 5, 7)))
                  .error,
              RunError::None);
  }

  QTemporaryDir m_folder;
  Reports m_reports;
};

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

TEST_F(ReportsTest, LinesOfMissingOutputsAreDroppedAndASwitchedOffReportLeavesTheOtherAlone) {
  for (const bool withText : {false, true}) {
    SCOPED_TRACE(withText);
    open(withText);
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
    EXPECT_TRUE(content("r.csv").endsWith("Output File\n" + csvLines + "\n,2, PDF file(s)\n"));
    EXPECT_EQ(filesBelow(m_folder.path()).size(), withText ? 2 : 1);
  }
  EXPECT_TRUE(content("r.txt").endsWith("Kontó:\n\n" + textLines + "\n\t2 PDF file(s)\n"));
}

TEST_F(ReportsTest, LongerReportOfAnEarlierRunIsGone) {
  writeFile(at("r.txt"), QByteArray(100'000, 'x'));
  open();
  ASSERT_EQ(m_reports.close().error, RunError::None);
  EXPECT_FALSE(content("r.txt").contains("xx"));
}

// A killed run closes nothing: what is on the disk then must not pass for all.
TEST_F(ReportsTest, UntilTheyAreClosedTheySayThatTheRunIsUnfinished) {
  const QByteArray textEnd = "\n\tThis run was not finished.\n";
  const QByteArray csvEnd = "\n,This run was not finished.\n";
  open();
  const QByteArray textHead = content("r.txt").chopped(textEnd.size());
  const QByteArray csvHead = content("r.csv").chopped(csvEnd.size());
  EXPECT_TRUE(content("r.txt").endsWith("Kontó:\n\n" + textEnd));
  EXPECT_TRUE(content("r.csv").endsWith("Output File\n" + csvEnd));
  m_reports.writeRange(first);
  m_reports.flush();
  m_reports.writeRange(longOne);
  m_reports.flush();
  EXPECT_EQ(content("r.txt"), textHead + textLines + textEnd);
  EXPECT_EQ(content("r.csv"), csvHead + csvLines + csvEnd);
  m_reports.dropRanges([](const QString&, int firstPage) { return firstPage == first.firstPage; });
  ASSERT_EQ(m_reports.close().error, RunError::None);
  EXPECT_EQ(content("r.txt"), textHead + textLines.mid(textLines.indexOf('\n') + 1));
  EXPECT_EQ(content("r.csv"), csvHead + csvLines.mid(csvLines.indexOf('\n') + 1));
}

// A disk that fills up is told when the reports are closed, and by name.
TEST_F(ReportsTest, FullDiskIsTold) {
  open(false);
  const SmallDisk full(64);
  m_reports.writeRange(first);
  const Reports::Opened closed = m_reports.close();
  EXPECT_EQ(closed.error, RunError::CsvReport);
  EXPECT_TRUE(closed.message.contains(at("r.csv"))) << closed.message.toStdString();
}

TEST_F(ReportsTest, WordPositionsOfAPage) {
  const QString path = pagePositionsPath(m_folder.path() + QLatin1Char('/'));
  const QByteArray head = "Folivex v4.00  -= Quillmark =-\nView file: " + path.toUtf8() +
                          "\nSource PDF File: /in/a.pdf, Page no: 7\n\n"
                          "Below are the coordinate positions of every word on the current page "
                          "in view,\nto optionally match on this position enter the coordinates "
                          "in the main screen 'At position' boxes\n"
                          "i.e. h=horizontal position, v=vertical position\n\n"
                          "Word                \tHoriz\tVert\n"
                          "----                \t-----\t----\n\n";
  const QString help = QStringLiteral(
      "No words on page!, maybe Blank page/Graphics only or needs OCR'ing first?  Do you want to "
      "learn how to OCR a pdf?");
  writeFile(path, QByteArray(10'000, 'x'));
  RecordingOperator person;
  PagePositions listing(person);
  ASSERT_EQ(listing.open(path, QStringLiteral("/in/a.pdf"), 7), QString());
  listing.onListedWord(u"Account:", 57, 118);
  listing.onListedWord(u"Żółć", -4, 1200);
  listing.onListedWord(u"a-word-of-more-than-twenty-characters", 1, 2);
  ASSERT_TRUE(listing.close());
  EXPECT_EQ(content("page_positions.txt"), head + "Account:            \t57 \t118\n"
                                                  "Żółć                \t-4 \t1200\n"
                                                  "a-word-of-more-than-twenty-characters\t1  \t2  "
                                                  "\n");

  // An empty page says what to do.
  person.answer = Answer::Yes;
  ASSERT_EQ(listing.open(path, QStringLiteral("/in/a.pdf"), 7), QString());
  listing.onEmptyPage(6);
  ASSERT_TRUE(listing.close());
  const QByteArray said = content("page_positions.txt");
  EXPECT_TRUE(said.startsWith(
      head + "No text found!!!, to OCR/make text searchable a pdf try check 'OCR first' checkbox "
             "option - if that doesn't help then see our example video on how to OCR a pdf (make "
             "it text seatchable): http"))
      << said.toStdString();
  EXPECT_TRUE(said.endsWith("\n"));
  EXPECT_EQ(person.questions, QStringList{help});
  ASSERT_EQ(person.opened.size(), 1);
  EXPECT_TRUE(person.opened.front().startsWith(QStringLiteral("http")));

  EXPECT_EQ(listing.open(at("no/x.txt"), QStringLiteral("/in/a.pdf"), 7),
            "file error! can't write to page positions file: " + at("no/x.txt"));
}
