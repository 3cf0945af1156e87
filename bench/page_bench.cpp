// page_bench PDF: opens a file in the page pane and the strip, and measures what a person waits
// for, and the longest time between two turns of the window's event loop in each step.
#include "app/viewer/FindBar.h"
#include "app/viewer/PageArea.h"
#include "app/viewer/PagePane.h"
#include "app/viewer/PageStrip.h"
#include "engine/words/CPDFTextDumpInit.h"
#include "engine/words/TableFiller.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>
#include <cstdio>

namespace {

using namespace folivex;

/** Does a step, lets the event loop turn until it is done, and prints what it took. */
class Steps {
public:
  Steps() {
    m_turns.callOnTimeout([this] { m_longest = std::max(m_longest, m_turn.restart()); });
    m_turns.start(0);
  }
  void take(const char* name, const std::function<void()>& begin,
            const std::function<bool()>& isDone) {
    QElapsedTimer clock;
    clock.start();
    m_turn.start();
    m_longest = 0;
    begin();
    while (!isDone()) {
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    std::printf("%-22s %6lld ms, longest turn %4lld ms\n", name, clock.elapsed(),
                std::max(m_longest, m_turn.elapsed()));
  }

private:
  QTimer m_turns;
  QElapsedTimer m_turn;
  qint64 m_longest = 0;
};

void measure(PagePane& pane, PageStrip& strip, CPDFTextDumpInit& library, const QString& path) {
  Steps steps;
  const PageCanvas& canvas = *pane.findChild<PageArea*>(QStringLiteral("pageArea"))->canvas();
  const auto isDrawn = [&] { return !canvas.page().image.isNull(); };
  int left = 0;
  const auto several = [&](const std::function<void()>& act) {
    return [&left, act] { return left-- <= 0 || (act(), false); };
  };
  steps.take(
      "first page",
      [&] {
        pane.onOpened = [&] { strip.showFile({path}, pane.pageCount()); };
        pane.openFile({path});
      },
      isDrawn);
  steps.take(
      "strip", [] {}, [&] { return strip.currentPage() > 0; });
  std::vector<PageBand> bands;
  auto marks = std::make_shared<std::vector<PlanMark>>();
  for (int page = 1; page <= pane.pageCount(); ++page) {
    bands.push_back({page, page, QStringLiteral("output.pdf")});
    marks->push_back({page, QStringLiteral("Account:"), page, page, PlanMark::Kind::Begins});
  }
  steps.take(
      "a plan for every page", [&] { left = 20; }, several([&] {
        bands[0].title += u'x'; // a new one
        strip.setBands(bands);
        pane.setMarks(std::make_shared<const std::vector<PlanMark>>(*marks));
      }));
  QScrollBar* bar = strip.verticalScrollBar();
  steps.take(
      "strip scrolled", [&] { left = 200; },
      several([&] { bar->setValue(bar->maximum() / 200 * left); }));
  steps.take(
      "pages turned", [&] { left = 200; }, several([&] { pane.goToPage(left * 7); }));
  const auto words = std::make_shared<WordTable>(std::size_t{512} << 20U);
  TableFiller filler(library, {path, {}, ViewedFile().wordSpacing}, words, false);
  pane.setWords(words);
  steps.take(
      "words read", [] {}, [&] { return words->state() >= WordTable::State::Complete; });
  steps.take(
      "text that is nowhere",
      [&] {
        pane.find();
        pane.findChild<QLineEdit*>(QStringLiteral("findText"))
            ->setText(QStringLiteral("nowhere-to-be-found"));
      },
      [&] {
        return pane.findChild<QLabel*>(QStringLiteral("findTold"))
            ->text()
            .startsWith(QStringLiteral("Not"));
      });
}

} // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  if (argc != 2) {
    std::fprintf(stderr, "usage: page_bench PDF\n");
    return 2;
  }
  CPDFTextDumpInit library;
  PagePane pane;
  PageStrip strip;
  pane.setLibrary(library);
  strip.setLibrary(library);
  pane.resize(700, 900);
  strip.resize(190, 900);
  pane.show();
  strip.show();
  measure(pane, strip, library, QString::fromLocal8Bit(argv[1]));
  return 0;
}
