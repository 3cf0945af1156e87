// The walk through the matches: the engine, the viewer and a person's clicks.
#include "ViewerBench.h"

#include "app/viewer/MatchWalker.h"

namespace folivex::test {
namespace {

class MatchWalk : public ViewerBench {
protected:
  /// Walks with a person who does `act` at each match, once its page is drawn.
  void walk(const std::function<void()>& act) {
    openSample();
    m_person.onEvents = [] { QApplication::processEvents(); };
    QTimer person;
    person.callOnTimeout([&] {
      if (control<QPushButton>(&m_viewer, "nextMatch")->isEnabled() &&
          canvas().page().page == m_viewer.page() && !canvas().page().image.isNull()) {
        m_pages.push_back(m_viewer.page());
        act();
      }
    });
    person.start(0);
    MatchWalker walker(m_viewer, [this] { m_driver->Stop(); });
    EXPECT_FALSE(control<QWidget>(&m_viewer, "walkRow")->isHidden());
    m_driver->ShowMatches(walker);
  }

  std::vector<int> m_pages;
};

TEST_F(MatchWalk, ShowsEachMatchInItsPlaceUntilTheEnd) {
  setup().findString = QStringLiteral("Account: 10518");
  setup().pageExtract = splitMethodTexts()[0];
  walk([this] {
    const QWidget* sight = control<PageArea>(&m_viewer, "pageArea")->viewport();
    const QRect place = canvas().markedPlace().toAlignedRect();
    EXPECT_FALSE(place.isEmpty());
    EXPECT_TRUE(
        sight->rect().contains(QRect(canvas().mapTo(sight, place.topLeft()), place.size())));
    EXPECT_TRUE(told("walkText").contains("Account: 10518")) << told("walkText").toStdString();
    click(&m_viewer, "nextMatch");
  });
  const QStringList pages = pageTexts(samplePath());
  std::vector<int> expected;
  for (qsizetype i = 0; i < pages.size(); ++i) {
    if (pages[i].contains("Account: 10518")) {
      expected.push_back(static_cast<int>(i) + 1);
    }
  }
  EXPECT_FALSE(expected.empty());
  EXPECT_EQ(m_pages, expected);
  EXPECT_EQ(m_person.messages, QStringList("No more matches found."));
  EXPECT_TRUE(control<QWidget>(&m_viewer, "walkRow")->isHidden());
  EXPECT_TRUE(canvas().markedPlace().isNull());
}

TEST_F(MatchWalk, EndsSilentlyOnEveryWayToStop) {
  const std::vector<std::pair<const char*, std::function<void()>>> ways = {
      {"the button", [this] { click(&m_viewer, "stopMatches"); }},
      {"Escape", [this] { key(Qt::Key_Escape); }},
  };
  for (const auto& [way, stop] : ways) {
    m_pages.clear();
    walk([&, stop = stop] { m_pages.size() < 3 ? click(&m_viewer, "nextMatch") : stop(); });
    EXPECT_EQ(m_pages.size(), 3U) << way;
    EXPECT_TRUE(m_person.messages.isEmpty()) << way;
    EXPECT_TRUE(m_driver->state().userStop) << way;
  }
}

TEST_F(MatchWalk, StopsBetweenMatchesToo) {
  setup().findString = QStringLiteral("nowhere-to-be-found");
  openSample();
  int steps = 0;
  m_person.onEvents = [&] {
    if (++steps == 5) {
      click(&m_viewer, "stopMatches");
    }
  };
  MatchWalker walker(m_viewer, [this] { m_driver->Stop(); });
  m_driver->ShowMatches(walker);
  EXPECT_EQ(steps, 5);
  EXPECT_TRUE(m_person.messages.isEmpty());
}

} // namespace
} // namespace folivex::test
