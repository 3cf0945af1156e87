// Finding words on the pages, and what the pane offers beside them.
#include "ViewerBench.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QAccessible>

namespace folivex::test {
namespace {

class PageFind : public ViewerBench {
protected:
  QLineEdit* field() { return control<QLineEdit>(&m_viewer, "findText"); }
  [[nodiscard]] bool tells(const QString& text) {
    return waitUntil([&] { return told("findTold").startsWith(text); });
  }
  /// The pages from 1 whose text has it.
  static std::vector<int> pagesWith(const QString& text) {
    std::vector<int> pages;
    const QStringList texts = pageTexts(samplePath());
    for (qsizetype i = 0; i < texts.size(); ++i) {
      if (texts[i].simplified().contains(text, Qt::CaseInsensitive)) {
        pages.push_back(static_cast<int>(i) + 1);
      }
    }
    return pages;
  }
};

TEST_F(PageFind, GoesFromPlaceToPlaceOverAllPagesAndAround) {
  openSample();
  readWords(samplePath());
  const std::vector<int> pages = pagesWith("account: 10518");
  ASSERT_GE(pages.size(), 1U);
  ASSERT_LT(pages.size(), 40U);
  canvas().setFocus();
  key(Qt::Key_F, Qt::ControlModifier);
  ASSERT_TRUE(field()->hasFocus());
  QTest::keyClicks(field(), "account: 10518");
  for (const int page : pages) {
    ASSERT_TRUE(tells(QStringLiteral("Page %1: place 1").arg(page))) << page;
    EXPECT_EQ(m_viewer.page(), page);
    EXPECT_GE(canvas().hit(), 0);
    QTest::keyClick(field(), Qt::Key_Return);
  }
  ASSERT_TRUE(tells(QStringLiteral("Page %1: place").arg(pages.front()))) << "around the end";
  QTest::keyClick(field(), Qt::Key_F3, Qt::ShiftModifier);
  ASSERT_TRUE(tells(QStringLiteral("Page %1: place").arg(pages.back()))) << "and back";
}

TEST_F(PageFind, GoesOnWithinAPageAndTellsWhatIsNowhere) {
  openSample();
  readWords(samplePath());
  m_viewer.find();
  QTest::keyClicks(field(), "e");
  ASSERT_TRUE(tells("Page 1: place 1 of "));
  click(&m_viewer, "findNext");
  EXPECT_TRUE(tells("Page 1: place 2 of "));
  click(&m_viewer, "findPrevious");
  EXPECT_TRUE(tells("Page 1: place 1 of "));
  field()->setText("nowhere-to-be-found");
  EXPECT_TRUE(tells("Not found"));
  EXPECT_EQ(m_viewer.page(), 1);
  QTest::keyClick(field(), Qt::Key_Escape);
  EXPECT_FALSE(control<QWidget>(&m_viewer, "findBar")->isVisible());
  EXPECT_TRUE(m_viewer.isVisible());
  EXPECT_TRUE(canvas().hasFocus());
  EXPECT_EQ(canvas().hitCount(), 0) << "nothing stays marked";
}

TEST_F(PageFind, WordsMayComeLateAndStandOnNoDrawnPlace) {
  openSample();
  m_viewer.find();
  field()->setText("nowhere-to-be-found");
  EXPECT_TRUE(tells("The words of the pages are not read yet"));
  readWords(samplePath());
  EXPECT_TRUE(tells("Not found on any page."));

  const auto table = std::make_shared<WordTable>(std::size_t{1} << 20U); // of a recognised copy
  m_viewer.setWords(table);
  field()->setText("seen word");
  EXPECT_TRUE(tells("Looking at page 1"));
  table->open(40, {});
  const PageWord words[] = {{u"Seen", 1, 1}, {u"words", 20, 1}};
  for (int page = 1; page <= 39; ++page) {
    ASSERT_TRUE(table->add(page, {words, page == 3 ? 2U : 0U}, PageState::Good));
  }
  EXPECT_TRUE(tells("Page 3: the page has it"));
  EXPECT_EQ(m_viewer.page(), 3);
  field()->setText("something else");
  EXPECT_TRUE(tells("Looking at page 40")) << "the page is still to come";
}

TEST_F(PageFind, NothingComesOfASearchWhoseFileHasGone) {
  openSample();
  readWords(samplePath());
  m_viewer.find();
  QTest::keyClicks(field(), "nowhere-to-be-found");
  m_viewer.closeFile();
  ASSERT_TRUE(QFile::copy(samplePath(), at("other.pdf")));
  open({at("other.pdf")});
  EXPECT_FALSE(control<QWidget>(&m_viewer, "findBar")->isVisible());
  EXPECT_EQ(told("findTold"), "");
}

TEST_F(PageFind, AnEmptyPaneSaysWhatToDoAndOffers) {
  QStringList wanted;
  m_viewer.onOpenWanted = [&] { wanted += "open"; };
  m_viewer.onSampleWanted = [&] { wanted += "sample"; };
  EXPECT_EQ(told("viewerState"), "Drop a PDF here, open one, or try the sample.");
  click(&m_viewer, "openFromPage");
  click(&m_viewer, "trySample");
  EXPECT_EQ(wanted, QStringList({"open", "sample"}));
  m_viewer.find();
  EXPECT_FALSE(control<QWidget>(&m_viewer, "findBar")->isVisible()) << "there is nothing to find";

  openSample();
  QStringList answers;
  m_viewer.showOffer("No match for \"account\".",
                     {{"Account: (12 pages)", [&] { answers += "first"; }},
                      {"Other", [&] {
                         m_viewer.showOffer("Next", {{"Yes", [] {}}});
                       }}});
  EXPECT_FALSE(control<QWidget>(&m_viewer, "offer3")->isVisible());
  click(&m_viewer, "offer1");
  EXPECT_EQ(answers, QStringList("first"));
  EXPECT_FALSE(control<QWidget>(&m_viewer, "offer")->isVisible());
  m_viewer.showOffer("Again", {{"Yes", [] {}}, {"Other", [&] { m_viewer.showOffer("Next", {}); }}});
  click(&m_viewer, "offer2");
  EXPECT_EQ(told("offerText"), "Next") << "an answer may bring the next offer";
  EXPECT_TRUE(control<QWidget>(&m_viewer, "offer")->isVisible());
  m_viewer.closeFile();
  EXPECT_EQ(m_viewer.page(), 0);
  EXPECT_TRUE(control<QWidget>(&m_viewer, "trySample")->isVisible());
}

TEST_F(PageFind, EveryControlHasANameForAScreenReader) {
  openSample();
  m_viewer.find();
  for (const QWidget* each : m_viewer.findChildren<QWidget*>()) {
    if (each->focusPolicy() == Qt::NoFocus || each->objectName().startsWith("qt_")) {
      continue;
    }
    QAccessibleInterface* told = QAccessible::queryAccessibleInterface(const_cast<QWidget*>(each));
    ASSERT_NE(told, nullptr);
    const bool isAnswer = each->objectName().startsWith("offer") && !each->isVisible();
    EXPECT_TRUE(isAnswer || !told->text(QAccessible::Name).isEmpty())
        << each->metaObject()->className() << " " << each->objectName().toStdString();
  }
}

} // namespace
} // namespace folivex::test
