// The strip of small pages.
#include "ViewerBench.h"

#include "app/viewer/PageStrip.h"

#include <QAbstractItemModelTester>
#include <QScrollBar>

namespace folivex::test {
namespace {

class PageStrips : public testing::OwnFolder {
protected:
  PageStrips() {
    m_strip.setLibrary(*RealLibraries::get().text);
    m_strip.onPageChosen = [this](int page) { m_chosen.push_back(page); };
    m_strip.resize(190, 700);
    m_strip.show();
  }
  QModelIndex at(int page) { return m_strip.model()->index(page - 1, 0); }
  QString spoken(int page) { return at(page).data(Qt::AccessibleTextRole).toString(); }
  /// The ground beside a page in sight.
  QColor groundOf(int page) {
    const QRect cell = m_strip.visualRect(at(page));
    return m_strip.viewport()->grab().toImage().pixelColor(cell.left() + 3, cell.center().y());
  }
  /// Something of the page is drawn.
  bool isDrawn(int page) {
    const QRect cell = m_strip.visualRect(at(page)).adjusted(14, 20, -14, -12);
    const QImage part = m_strip.viewport()->grab(cell).toImage();
    for (int y = 0; y < part.height(); ++y) {
      for (int x = 0; x < part.width(); ++x) {
        if (part.pixelColor(x, y).lightness() < 100) {
          return true;
        }
      }
    }
    return false;
  }

  PageStrip m_strip;
  std::vector<int> m_chosen;
};

TEST_F(PageStrips, KeyboardAndMouseChooseAndOthersOnlyMark) {
  const QAbstractItemModelTester tester(m_strip.model());
  m_strip.showFile({samplePath()}, 40);
  EXPECT_EQ(m_strip.currentPage(), 1);
  EXPECT_TRUE(m_chosen.empty()) << "opening is no choice";
  QTest::keyClick(&m_strip, Qt::Key_Down);
  QTest::keyClick(&m_strip, Qt::Key_End);
  QTest::keyClick(&m_strip, Qt::Key_Up);
  EXPECT_EQ(m_chosen, (std::vector<int>{2, 40, 39}));
  m_strip.setCurrentPage(7);
  EXPECT_EQ(m_strip.currentPage(), 7);
  EXPECT_TRUE(m_strip.viewport()->rect().intersects(m_strip.visualRect(at(7))));
  EXPECT_EQ(m_chosen.size(), 3U);
  QTest::mouseClick(m_strip.viewport(), Qt::LeftButton, {}, m_strip.visualRect(at(8)).center());
  EXPECT_EQ(m_chosen.back(), 8);
  m_strip.showFile({}, 0);
  EXPECT_EQ(m_strip.currentPage(), 0);
  EXPECT_EQ(m_strip.model()->rowCount(), 0);
}

TEST_F(PageStrips, BandsTellWhichPagesGoTogetherAndWhichAreLeftOver) {
  m_strip.showFile({samplePath()}, 40);
  EXPECT_EQ(spoken(1), "Page 1");
  m_strip.resize(600, 900); // several beside each other
  m_strip.setBands({{{4, 4, "b.pdf"}, {1, 2, "a.pdf"}, {5, 9, "c.pdf"}, {6, 6, "late.pdf"}}});
  EXPECT_EQ(spoken(2), "Page 2, page 2 of 2 in a.pdf");
  EXPECT_EQ(spoken(3), "Page 3, left over");
  EXPECT_EQ(spoken(6), "Page 6, page 1 of 1 in late.pdf");
  EXPECT_EQ(groundOf(1), groundOf(2));
  EXPECT_NE(groundOf(2), groundOf(3));
  EXPECT_NE(groundOf(2), groundOf(4)) << "neighbours differ";
  EXPECT_NE(groundOf(3), groundOf(4));
  m_strip.setBands({});
  EXPECT_EQ(spoken(3), "Page 3");
  EXPECT_EQ(groundOf(2), groundOf(3));
}

TEST_F(PageStrips, PagesComeWhereOneScrolls) {
  m_strip.showFile({samplePath()}, 40);
  EXPECT_TRUE(waitUntil([this] { return isDrawn(1); }));
  m_strip.verticalScrollBar()->setValue(m_strip.verticalScrollBar()->maximum());
  EXPECT_TRUE(waitUntil([this] { return isDrawn(40); }));
  m_strip.resize(400, 500);
  m_strip.setCurrentPage(20);
  EXPECT_TRUE(waitUntil([this] { return isDrawn(20); }));
}

TEST_F(PageStrips, WhatIsKnownOfAFileStaysWithIt) {
  m_strip.showFile({samplePath()}, 40);
  m_strip.setBands({{{1, 2, "a.pdf"}}});
  m_strip.setCurrentPage(12);
  m_strip.showFile({samplePath()}, 0);
  EXPECT_EQ(m_strip.currentPage(), 0);
  m_strip.showFile({samplePath()}, 40);
  EXPECT_EQ(spoken(2), "Page 2, page 2 of 2 in a.pdf") << "opened again";
  ASSERT_TRUE(QFile::copy(samplePath(), OwnFolder::at("copy.pdf")));
  m_strip.showFile({OwnFolder::at("copy.pdf")}, 40);
  EXPECT_EQ(m_strip.currentPage(), 1);
  EXPECT_EQ(spoken(2), "Page 2") << "another file";
}

} // namespace
} // namespace folivex::test
