// Help from every window, and what a report of a problem knows of all of them.
#include "app/help/CProblemReportDlg.h"
#include "app/help/HelpWindow.h"
#include "app/program/LibraryVersions.h"
#include "app/program/ProgramWindows.h"
#include "batch/CBatchList.h"
#include "tests/support/BuiltLibraries.h"
#include "tests/support/WindowBench.h"
#include "widgets/WindowMemory.h"

#include <QAction>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTextBrowser>

namespace folivex::testing {
namespace {

class HelpAndReport : public ::testing::Test {
protected:
  HelpAndReport() : m_memory(m_folder.filePath(QStringLiteral("window.ini"))) {
    EXPECT_EQ(test::loadBuiltLibraries(), QString());
    m_temporaryBefore = qgetenv("TMPDIR");
    qputenv("TMPDIR", QFile::encodeName(m_folder.path()));
    m_windows = std::make_unique<ProgramWindows>(m_dialogs, m_memory);
    main().show();
    m_windows->start({});
  }
  ~HelpAndReport() override {
    m_windows.reset();
    qputenv("TMPDIR", m_temporaryBefore);
  }

  MainWindow& main() { return m_windows->main(); }
  void trigger(const char* action) {
    main().findChild<QAction*>(QString::fromLatin1(action))->trigger();
  }
  template <typename Window> static Window* opened() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (auto* one = dynamic_cast<Window*>(window); one != nullptr && one->isVisible()) {
        return one;
      }
    }
    return nullptr;
  }

  QTemporaryDir m_folder;
  QByteArray m_temporaryBefore;
  ScriptedDialogs m_dialogs;
  WindowMemory m_memory;
  std::unique_ptr<ProgramWindows> m_windows;
};

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
