// The walk through the matches: the engine, the viewer and a person's clicks.
#include "ViewerBench.h"

#include "app/viewer/MatchWalker.h"

namespace folivex::test {
namespace {

class MatchWalk : public ViewerBench {
protected:
  struct Seen {
    int page;
    QString text;
    bool isBoxed;
    bool isInSight;
  };

  /// Walks with a person who does `act` at each match, once its page is drawn.
  void walk(const std::function<void()>& act) {
    openSample();
    m_person.onEvents = [] { QApplication::processEvents(); };
    QTimer person;
    person.callOnTimeout([&] {
      auto* next = control<QPushButton>(&m_viewer, "nextMatch");
      const bool isDrawn =
          canvas().page().page == m_viewer.page() && !canvas().page().image.isNull();
      if (next->isEnabled() && isDrawn) {
        const QRect sight = control<PageArea>(&m_viewer, "pageArea")->viewport()->rect();
        const QRect place = canvas().markedPlace().toAlignedRect();
        const QPoint corner =
            canvas().mapTo(control<PageArea>(&m_viewer, "pageArea")->viewport(), place.topLeft());
        m_seen.push_back({m_viewer.page(), told("walkText"), !place.isEmpty(),
                          sight.contains(QRect(corner, place.size()))});
        act();
      }
    });
    person.start(0);
    MatchWalker walker(m_viewer, [this] { m_driver->Stop(); });
    EXPECT_FALSE(control<QWidget>(&m_viewer, "walkRow")->isHidden());
    m_driver->ShowMatches(walker);
  }
  void next() { click(&m_viewer, "nextMatch"); }

  std::vector<Seen> m_seen;
};

TEST_F(MatchWalk, ShowsEachMatchInItsPlaceUntilTheEnd) {
  setup().findString = QStringLiteral("Account: 10518");
  setup().pageExtract = splitMethodTexts()[0];
  walk([this] { next(); });
  const QStringList pages = pageTexts(samplePath());
  std::vector<int> expected;
  for (qsizetype i = 0; i < pages.size(); ++i) {
    if (pages[i].contains("Account: 10518")) {
      expected.push_back(static_cast<int>(i) + 1);
    }
  }
  ASSERT_FALSE(expected.empty());
  ASSERT_EQ(m_seen.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(m_seen[i].page, expected[i]);
    EXPECT_TRUE(m_seen[i].isBoxed && m_seen[i].isInSight) << m_seen[i].text.toStdString();
    EXPECT_TRUE(m_seen[i].text.contains("Account: 10518")) << m_seen[i].text.toStdString();
  }
  EXPECT_EQ(m_person.messages, QStringList("No more matches found."));
  EXPECT_TRUE(control<QWidget>(&m_viewer, "walkRow")->isHidden());
  EXPECT_TRUE(canvas().markedPlace().isNull());
}

TEST_F(MatchWalk, EndsSilentlyOnEveryWayToStop) {
  const std::vector<std::pair<const char*, std::function<void()>>> ways = {
      {"the button", [this] { click(&m_viewer, "stopMatches"); }},
      {"Escape", [this] { QTest::keyClick(&m_viewer, Qt::Key_Escape); }},
      {"the close box", [this] { m_viewer.close(); }},
  };
  for (const auto& [way, stop] : ways) {
    m_viewer.show();
    m_seen.clear();
    walk([&, stop = stop] { m_seen.size() < 3 ? next() : stop(); });
    EXPECT_EQ(m_seen.size(), 3U) << way;
    EXPECT_TRUE(m_person.messages.isEmpty()) << way;
    EXPECT_TRUE(m_driver->state().userStop) << way;
  }
}

TEST_F(MatchWalk, StopsBetweenMatchesToo) {
  setup().findString = QStringLiteral("nowhere-to-be-found");
  openSample();
  int steps = 0;
  m_person.onEvents = [&] {
    QApplication::processEvents();
    if (++steps == 5) {
      click(&m_viewer, "stopMatches");
    }
  };
  MatchWalker walker(m_viewer, [this] { m_driver->Stop(); });
  m_driver->ShowMatches(walker);
  EXPECT_EQ(steps, 5);
  EXPECT_TRUE(m_person.messages.isEmpty());
}

TEST_F(MatchWalk, TheViewerMayGoWhileAMatchIsLookedAt) {
  auto viewer = std::make_unique<PageViewer>(*RealLibraries::get().text);
  viewer->openFile({samplePath(), {}, false});
  viewer->show();
  QTimer person;
  person.callOnTimeout([&] {
    if (viewer && control<QPushButton>(viewer.get(), "nextMatch")->isEnabled()) {
      viewer.reset();
    }
  });
  person.start(0);
  MatchWalker walker(*viewer, [this] { m_driver->Stop(); });
  m_driver->ShowMatches(walker);
  EXPECT_EQ(viewer, nullptr);
  EXPECT_TRUE(m_person.messages.isEmpty());
}

} // namespace
} // namespace folivex::test
