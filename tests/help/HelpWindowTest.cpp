// The window of the help, driven by its controls.
#include "app/help/HelpWindow.h"
#include "app/help/HelpPages.h"
#include "tests/support/Programs.h"
#include "tests/support/WindowBench.h"
#include "widgets/Theme.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollBar>
#include <QTextBrowser>
#include <QTreeWidget>
#include <QWindow>

namespace folivex::test {
namespace {

using namespace folivex::testing;

class Help : public ::testing::Test {
protected:
  Help() { m_window.openTopic(QStringLiteral("main-window")); }

  QTextBrowser* page() { return control<QTextBrowser>(&m_window, "helpPage"); }
  QString place() { return page()->source().toString().section(u'/', -1); }

  ScriptedDialogs m_dialogs;
  HelpWindow m_window{m_dialogs};
};

TEST_F(Help, OpensTopicsAndFindsTheWayBack) {
  EXPECT_FALSE(control<QWidget>(&m_window, "helpBack")->isEnabled());
  m_window.openTopic(QStringLiteral("search"));
  EXPECT_EQ(control<QTreeWidget>(&m_window, "helpContents")->currentItem()->text(0), "Which words");
  QStringList places{place()};
  m_window.openTopic(QStringLiteral("nobody knows this"));
  for (const char* button : {"helpBack", "helpForward"}) {
    places += place();
    click(&m_window, button);
  }
  m_window.openTopic(QStringLiteral("ocr"));
  click(&m_window, "helpHome");
  EXPECT_EQ(places + QStringList(place()),
            QStringList({"find-words.html", "index.html", "find-words.html", "index.html"}));
}

TEST_F(Help, ContentsLeadToAPartOfAPage) {
  auto* contents = control<QTreeWidget>(&m_window, "helpContents");
  const auto parts =
      contents->findItems(QStringLiteral("Exit codes"), Qt::MatchExactly | Qt::MatchRecursive);
  ASSERT_EQ(parts.size(), 1);
  contents->setCurrentItem(parts.front());
  EXPECT_EQ(place(), QStringLiteral("command-line.html#codes"));
  EXPECT_GT(page()->verticalScrollBar()->value(), 0);
  // Scrolled away, the same entry leads there again.
  page()->verticalScrollBar()->setValue(0);
  QTest::mouseClick(contents->viewport(), Qt::LeftButton, Qt::NoModifier,
                    contents->visualItemRect(parts.front()).center());
  EXPECT_GT(page()->verticalScrollBar()->value(), 0);
}

TEST_F(Help, FindsWordsInAllPagesAndMarksThem) {
  auto* hits = control<QListWidget>(&m_window, "helpHits");
  typeInto(&m_window, "helpSought", QStringLiteral("SEPARATOR sheet"));
  ASSERT_GE(hits->count(), 1);
  EXPECT_TRUE(hits->isVisible());
  QTest::keyClick(control<QLineEdit>(&m_window, "helpSought"), Qt::Key_Return);
  EXPECT_TRUE(place().contains(QStringLiteral(".html#"))) << place().toStdString();
  for (int row = 0; row < hits->count(); ++row) {
    hits->setCurrentRow(row);
    QString marked;
    for (const auto& mark : page()->extraSelections()) {
      marked += mark.cursor.selectedText().toLower();
    }
    EXPECT_TRUE(marked.contains("separator") && marked.contains("sheet")) << row;
  }
  typeInto(&m_window, "helpSought", QStringLiteral("exit codes"));
  ASSERT_GE(hits->count(), 1);
  EXPECT_TRUE(hits->item(0)->text().startsWith(u"The command line: Exit codes"))
      << "a word in a heading comes first";
  typeInto(&m_window, "helpSought", QStringLiteral("xyzzyx"));
  EXPECT_EQ(hits->count(), 0);
  EXPECT_TRUE(control<QLabel>(&m_window, "helpHitCount")->text().startsWith(u"No page"));
  // Escape ends the search first and closes then.
  QTest::keyClick(&m_window, Qt::Key_Escape);
  EXPECT_TRUE(control<QTreeWidget>(&m_window, "helpContents")->isVisible());
  EXPECT_TRUE(page()->extraSelections().isEmpty());
  QTest::keyClick(&m_window, Qt::Key_Escape);
  EXPECT_FALSE(m_window.isVisible());
}

TEST_F(Help, CanBeUsedBesideTheModalDialogThatAskedForIt) {
  QDialog settings;
  const DialogScript next([this](QDialog* dialog) {
    m_window.openTopic(QStringLiteral("email-settings"));
    const auto* home = control<QWidget>(&m_window, "helpHome");
    // Through the window of the system, where a modal dialog stops events.
    QTest::mouseClick(m_window.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      home->mapTo(&m_window, home->rect().center()));
    QApplication::processEvents();
    EXPECT_EQ(place(), QStringLiteral("index.html"));
    dialog->accept();
  });
  settings.exec();
  EXPECT_TRUE(m_window.isVisible());
  typeInto(&m_window, "helpSought", QStringLiteral("scan")); // and may go in the middle of typing
}

TEST_F(Help, PagesFollowTheTheme) {
  QSet<QRgb> colors;
  for (const Theme theme : {Theme::Light, Theme::Dark}) {
    applyTheme(theme);
    QApplication::processEvents();
    const QColor link = m_window.palette().color(QPalette::Link);
    EXPECT_TRUE(page()->document()->toHtml().contains(link.name()))
        << themeName(theme).toStdString();
    colors += link.rgb();
  }
  EXPECT_EQ(colors.size(), 2);
  applyTheme(Theme::System);
}

} // namespace
} // namespace folivex::test
