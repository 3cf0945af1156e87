// Files and pages that cannot be shown.
#include "ViewerBench.h"

#include "tests/support/Rows.h"

#include <QEventLoop>
#include <QToolButton>

#include <future>

namespace folivex::test {
namespace {

class PageProblems : public ViewerBench {
protected:
  QString stateOf(const QString& path, const QString& password = {}) {
    m_viewer.openFile({path, password, false});
    EXPECT_TRUE(waitUntil(
        [&] { return m_viewer.pageCount() > 0 || !told("viewerState").startsWith("Opening "); }));
    return m_viewer.pageCount() > 0 ? QString() : told("viewerState");
  }
};

TEST_F(PageProblems, AreToldInPlainWordsAndTheNextFileOpens) {
  ASSERT_EQ(runProgram("qpdf",
                       {"--encrypt", "user", "owner", "256", "--", samplePath(), at("locked.pdf")})
                .exitCode,
            0);
  writeFile(at("text.pdf"), "This is no PDF at all.");
  writeFile(at("empty.pdf"), "");
  QDir(m_folder.path()).mkdir("folder.pdf");
  forEachRow("viewer/problems.json", [this](const SplitSetup&, const QStringList& row) {
    const QString path = at(row[0]);
    const QString state = stateOf(path, row[1]);
    EXPECT_TRUE(state.startsWith(path) && state.contains(row[2])) << state.toStdString();
    EXPECT_FALSE(control<QToolButton>(&m_viewer, "nextPage")->isEnabled());
    EXPECT_EQ(canvas().currentWord(), -1);
  });
  EXPECT_EQ(stateOf(at("locked.pdf"), "user"), "");
  EXPECT_TRUE(isDrawn());
  EXPECT_FALSE(words().empty());
}

TEST_F(PageProblems, APasswordIsAskedForInItsPlaceUntilOneOpensTheFile) {
  ASSERT_EQ(runProgram("qpdf",
                       {"--encrypt", "user", "owner", "256", "--", samplePath(), at("locked.pdf")})
                .exitCode,
            0);
  QStringList opened;
  m_viewer.onPassword = [&](const QString& password) { opened += password; };
  EXPECT_TRUE(stateOf(at("locked.pdf")).contains("with a password only"));
  typeInto(&m_viewer, "pagePassword", "wrong");
  QTest::keyClick(control<QLineEdit>(&m_viewer, "pagePassword"), Qt::Key_Return);
  EXPECT_TRUE(waitUntil([&] { return told("viewerState").contains("does not open it"); }));
  EXPECT_TRUE(opened.isEmpty());
  EXPECT_TRUE(control<QLineEdit>(&m_viewer, "pagePassword")->hasFocus()) << "for another try";
  typeInto(&m_viewer, "pagePassword", "user");
  click(&m_viewer, "enterPassword");
  ASSERT_TRUE(isDrawn());
  EXPECT_EQ(opened, QStringList("user"));
  EXPECT_EQ(m_viewer.file().password, "user");
  click(&m_viewer, "nextPage");
  m_viewer.openFile({at("locked.pdf"), "user"}); // the setting has followed
  EXPECT_EQ(m_viewer.page(), 2) << "it is open already";
}

TEST_F(PageProblems, AFileThatComesLaterOpensOnReload) {
  EXPECT_TRUE(stateOf(at("late.pdf")).contains("not there"));
  ASSERT_TRUE(QFile::copy(samplePath(), at("late.pdf")));
  click(&m_viewer, "reloadFile");
  ASSERT_TRUE(isDrawn());
  m_viewer.goToPage(5);
  QTest::keyClick(&m_viewer, Qt::Key_F5);
  ASSERT_TRUE(isDrawn());
  EXPECT_EQ(m_viewer.page(), 5) << "the page looked at is kept";
  ASSERT_TRUE(QFile::remove(at("late.pdf")));
  QTest::keyClick(&m_viewer, Qt::Key_F5);
  EXPECT_TRUE(waitUntil([&] { return told("viewerState").contains("not there"); }));
}

TEST_F(PageProblems, ADamagedPageStandsAmongSoundOnes) {
  // One too large, one of no size and without its content, one with a pattern filled with itself.
  testpdf::PdfBuilder pdf;
  pdf.addText(contentOf(FOLIVEX_SOURCE_DIR "/tests/viewer/damaged.txt").toStdString());
  pdf.write(at("damaged.pdf").toStdString());
  open({at("damaged.pdf"), {}, false});
  ASSERT_EQ(m_viewer.pageCount(), 5);
  for (int page = 2; page <= 4; ++page) {
    m_viewer.goToPage(page);
    ASSERT_TRUE(waitUntil([&] {
      return canvas().page().page == page &&
             (!canvas().page().image.isNull() || !told("pageProblem").isEmpty());
    })) << page;
    m_viewer.grab();
  }
  m_viewer.goToPage(5);
  ASSERT_TRUE(isDrawn());
  EXPECT_EQ(words().size(), 1U);
  EXPECT_TRUE(told("pageProblem").isEmpty());
}

TEST_F(PageProblems, APageThatDrawsForLongKeepsNobodyWaitingAtTheEnd) {
  testpdf::PdfBuilder pdf;
  for (int depth = 0; depth <= 8; ++depth) {
    const QByteArray drawn = depth == 0 ? "0 0 600 800 re f " : "/N Do ";
    pdf.addText(QByteArray("form" + QByteArray::number(depth) +
                           " = /Subtype/Form/BBox[0 0 600 800]/Resources<</XObject<</N @form" +
                           QByteArray::number(std::max(depth - 1, 0)) + ">>>> | " +
                           drawn.repeated(20))
                    .toStdString());
  }
  pdf.addText("page /Resources<</XObject<</N @form8>>>> | /N Do");
  pdf.write(at("slow.pdf").toStdString());
  const auto end = std::async(std::launch::async, [this] {
    const QEventLoop events; // without one, a thread has no events
    PageLoader loader(*RealLibraries::get().text);
    bool isOpen = false;
    loader.onOpened = [&isOpen](const OpenedFile&) { isOpen = true; };
    loader.open({at("slow.pdf"), {}, false});
    loader.want({1}, PageSizing());
    EXPECT_TRUE(waitUntil([&isOpen] { return isOpen; }));
  });
  // The library itself gives such a page up only after half of the usual patience.
  EXPECT_EQ(end.wait_for(std::chrono::milliseconds(patienceMs / 4)), std::future_status::ready);
}

TEST_F(PageProblems, FilesOpenedInARowLeaveTheLast) {
  ASSERT_TRUE(QFile::copy(samplePath(), at("copy.pdf")));
  for (int i = 0; i < 5; ++i) {
    m_viewer.openFile({samplePath(), {}, false});
    m_viewer.openFile({at("nothing.pdf"), {}, false});
  }
  m_viewer.goToPage(3);
  open({at("copy.pdf"), {}, false});
  EXPECT_EQ(m_viewer.page(), 1) << "a page of another file means nothing here";
  EXPECT_EQ(m_viewer.pageCount(), 40);
}

} // namespace
} // namespace folivex::test
