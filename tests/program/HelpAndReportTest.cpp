// Help from every window, and what a report of a problem knows of all of them.
#include "app/help/CProblemReportDlg.h"
#include "app/help/HelpWindow.h"
#include "app/program/LibraryVersions.h"
#include "batch/CBatchList.h"
#include "tests/program/ProgramWindowsBench.h"

#include <QPlainTextEdit>
#include <QTextBrowser>

namespace folivex::testing {
namespace {

using HelpAndReport = ProgramWindowsBench;

TEST_F(HelpAndReport, F1AsksForThePageOfTheWindowItIsPressedIn) {
  trigger("prepareList");
  auto* list = opened<CBatchList>();
  ASSERT_NE(list, nullptr);
  QTest::keyClick(control<QWidget>(list, "list"), Qt::Key_F1);
  auto* help = opened<HelpWindow>();
  ASSERT_NE(help, nullptr);
  auto* page = control<QTextBrowser>(help, "helpPage");
  EXPECT_TRUE(page->source().toString().endsWith(QStringLiteral("/batch.html")));
  {
    const NextDialog updates([&](QDialog* dialog) {
      QTest::keyClick(control<QWidget>(dialog, "address"), Qt::Key_F1);
      EXPECT_TRUE(page->source().toString().endsWith(QStringLiteral("/updates.html")));
      dialog->reject();
    });
    trigger("updateCheck");
  }
}

TEST_F(HelpAndReport, TheReportKnowsTheLibrariesAndTheLastMessageBoxOfAnyWindow) {
  ASSERT_EQ(libraryVersions().size(), 3U);
  trigger("prepareList");
  auto* list = opened<CBatchList>();
  ASSERT_NE(list, nullptr);
  m_dialogs.files = {{QStringLiteral("/no/such/list.lst")}};
  list->findChild<QAction*>(QStringLiteral("appendList"))->trigger();
  ASSERT_EQ(m_dialogs.messages.size(), 1); // the list file cannot be read
  QString report;
  {
    const NextDialog dialog([&report](QDialog* shown) {
      report = control<QPlainTextEdit>(shown, "reportText")->toPlainText();
      shown->reject();
    });
    trigger("problemReport");
  }
  for (const char* library : {"GlyphrunU", "CleftorU", "MelderU"}) {
    EXPECT_TRUE(report.contains(QStringLiteral("%1 interface ").arg(QLatin1String(library))))
        << report.toStdString();
  }
  const QString told = m_dialogs.messages[0].section(u'/', 0, 0).trimmed();
  EXPECT_TRUE(!told.isEmpty() && report.contains(told)) << told.toStdString();
}

} // namespace
} // namespace folivex::testing
