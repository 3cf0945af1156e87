// Turning pages and sizes.
#include "ViewerBench.h"

#include <QScrollBar>
#include <QSpinBox>
#include <QToolButton>
#include <QWheelEvent>

namespace folivex::test {
namespace {

class PageTurn : public ViewerBench {
protected:
  bool isOn(const char* button) { return control<QToolButton>(&m_viewer, button)->isEnabled(); }
  void wheel(int notches, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWidget* room = control<PageArea>(&m_viewer, "pageArea")->viewport();
    const QPoint place(100, 100);
    QWheelEvent event(place, room->mapToGlobal(place), QPoint(), QPoint(0, notches * 120),
                      Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(room, &event);
  }
  QScrollBar* bar() { return control<PageArea>(&m_viewer, "pageArea")->verticalScrollBar(); }
};

TEST_F(PageTurn, EveryWayLeadsToItsPageAndShowsItsWords) {
  openSample();
  const QStringList texts = pageTexts(samplePath());
  EXPECT_EQ(told("pageCountText"), "of 40");
  EXPECT_FALSE(isOn("previousPage"));
  const auto typed = [&] {
    typeInto(&m_viewer, "pageField", "12");
    QTest::keyClick(control<QSpinBox>(&m_viewer, "pageField"), Qt::Key_Return);
  };
  const auto past = [&] { // without a look at the pages between
    for (int i = 0; i < 19; ++i) {
      key(Qt::Key_PageDown, Qt::ControlModifier);
    }
  };
  const struct {
    const char* way;
    std::function<void()> take;
    int page;
  } steps[] = {
      {"typed", typed, 12},
      {"next", [&] { click(&m_viewer, "nextPage"); }, 13},
      {"previous", [&] { click(&m_viewer, "previousPage"); }, 12},
      {"Ctrl+Page Down", past, 31},
      {"End", [&] { key(Qt::Key_End); }, 40},
      {"beyond the end", [&] { key(Qt::Key_PageDown, Qt::ControlModifier); }, 40},
      {"Home", [&] { key(Qt::Key_Home); }, 1},
      {"called", [&] { m_viewer.goToPage(4711); }, 40},
      {"called too low", [&] { m_viewer.goToPage(-3); }, 1},
  };
  for (const auto& step : steps) {
    step.take();
    ASSERT_TRUE(isDrawn()) << step.way;
    EXPECT_EQ(m_viewer.page(), step.page) << step.way;
    EXPECT_EQ(control<QSpinBox>(&m_viewer, "pageField")->value(), step.page) << step.way;
    EXPECT_FALSE(words().empty()) << step.way;
    for (const ViewedWord& one : words()) { // each statement has a number of its own
      ASSERT_TRUE(texts[step.page - 1].contains(one.text)) << step.way << one.text.toStdString();
    }
  }
}

TEST_F(PageTurn, ScrollingGoesOnToTheNextPageAndBack) {
  openSample();
  ASSERT_GT(bar()->maximum(), 0) << "the page must be longer than the window";
  key(Qt::Key_PageDown);
  EXPECT_EQ(m_viewer.page(), 1);
  EXPECT_GT(bar()->value(), 0);
  bar()->setValue(bar()->maximum());
  key(Qt::Key_PageDown);
  EXPECT_EQ(m_viewer.page(), 2);
  EXPECT_EQ(bar()->value(), 0);
  ASSERT_TRUE(isDrawn());
  wheel(1);
  EXPECT_EQ(m_viewer.page(), 1);
  EXPECT_EQ(bar()->value(), bar()->maximum()) << "read on upwards from the page's end";
}

TEST_F(PageTurn, SizesFitTheWindowAndStaySharp) {
  openSample();
  const auto fits = [&] {
    const QSize room = control<PageArea>(&m_viewer, "pageArea")->viewport()->size();
    return canvas().sheet().width() <= room.width() && canvas().sheet().height() <= room.height();
  };
  const auto isSharp = [&] {
    return waitUntil([&] {
      return QSizeF(canvas().page().image.size()) / canvas().devicePixelRatioF() ==
             canvas().sheet().size();
    });
  };
  EXPECT_FALSE(fits());
  EXPECT_TRUE(isSharp());
  action("fitPage")->trigger();
  EXPECT_TRUE(fits());
  EXPECT_TRUE(isSharp());
  const double before = canvas().sheet().width();
  wheel(1, Qt::ControlModifier);
  EXPECT_NEAR(canvas().sheet().width() / before, 1.2, 0.01);
  EXPECT_EQ(m_viewer.page(), 1);
  EXPECT_TRUE(isSharp());
  for (int i = 0; i < 40; ++i) {
    wheel(1, Qt::ControlModifier);
  }
  EXPECT_EQ(control<QToolButton>(&m_viewer, "zoomChoice")->text(), "400 %");
  EXPECT_FALSE(isOn("zoomIn"));
  action("fitWidth")->trigger();
  m_viewer.resize(600, 700);
  EXPECT_TRUE(isSharp());
  EXPECT_LE(canvas().sheet().width(), 600);
}

TEST(PageSizes, AreSharpOnFineScreensAndBoundedOnHugePages) {
  const QSizeF letter(612, 792);
  PageSizing sizing{PageSizing::Fit::Zoom, 1, {800, 800}, 1};
  const double plain = pixelsPerPoint(letter, sizing);
  sizing.devicePixels = 2;
  EXPECT_DOUBLE_EQ(pixelsPerPoint(letter, sizing), 2 * plain);
  sizing.zoom = mostZoom;
  for (const QSizeF size : {QSizeF(14'400, 14'400), QSizeF(1e7, 3), QSizeF(1e9, 1e9)}) {
    for (const auto fit : {PageSizing::Fit::Zoom, PageSizing::Fit::Width, PageSizing::Fit::Page}) {
      sizing.fit = fit;
      const double scale = pixelsPerPoint(size, sizing);
      EXPECT_GT(scale, 0);
      EXPECT_LE(size.width() * scale * size.height() * scale, 41e6);
      EXPECT_LE(size.width() * unitsPerPoint(size, sizing), 100'001);
    }
  }
}

} // namespace
} // namespace folivex::test
