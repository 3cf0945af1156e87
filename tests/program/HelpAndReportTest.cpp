// Help from every window, and what a report of a problem knows of all of them.
#include "app/help/CProblemReportDlg.h"
#include "app/help/HelpWindow.h"
#include "batch/CBatchList.h"
#include "tests/program/ProgramWindowsBench.h"

#include <QPlainTextEdit>
#include <QTextBrowser>

namespace folivex::testing {
namespace {

using HelpAndReport = ProgramWindowsBench;

TEST_F(HelpAndReport, IsAskedForInEachWindow) {
  trigger("prepareList");
  QTest::keyClick(control<QWidget>(opened<CBatchList>(), "list"), Qt::Key_F1);
  auto* page = control<QTextBrowser>(opened<HelpWindow>(), "helpPage");
  EXPECT_TRUE(page->source().toString().endsWith(QStringLiteral("/batch.html")));
  const auto opens = [&](const char* action, const QString& place, const char* name, bool byKey) {
    const DialogScript next([&](QDialog* dialog) {
      auto* asks = control<QWidget>(dialog, name);
      byKey ? QTest::keyClick(asks, Qt::Key_F1) : QTest::mouseClick(asks, Qt::LeftButton);
      EXPECT_TRUE(page->source().toString().endsWith(place)) << action;
      dialog->reject();
    });
    trigger(action);
  };
  opens("updateCheck", "/updates.html", "address", true);
  opens("openOtherSettings", "/other-settings.html", "OTHERSETTINGSREMOVETEXT", true);
  opens("openReportOptions", "/reports.html", "help", false);
}

TEST_F(HelpAndReport, TheReportKnowsTheLibrariesAndTheLastMessageBoxOfAnyWindow) {
  trigger("prepareList");
  m_dialogs.files = {{QStringLiteral("/no/such/list.lst")}};
  opened<CBatchList>()->findChild<QAction*>(QStringLiteral("appendList"))->trigger();
  ASSERT_EQ(m_dialogs.messages.size(), 1); // the list file cannot be read
  const QString told = m_dialogs.messages[0].section(u'/', 0, 0).trimmed();
  EXPECT_FALSE(told.isEmpty());
  const DialogScript dialog([&told](QDialog* shown) {
    const QString report = control<QPlainTextEdit>(shown, "reportText")->toPlainText();
    for (const QString& part : {QString("GlyphrunU interface "), QString("CleftorU interface "),
                                QString("MelderU interface "), told}) {
      EXPECT_TRUE(report.contains(part)) << report.toStdString();
    }
    shown->reject();
  });
  trigger("problemReport");
}

} // namespace
} // namespace folivex::testing
