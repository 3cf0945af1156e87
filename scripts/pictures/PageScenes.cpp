// The page viewer and the plan.
#include "app/MainWindow.h"
#include "app/viewer/PageCanvas.h"
#include "app/viewer/PagePane.h"
#include "app/viewer/PlanPane.h"
#include "platform/Paths.h"
#include "scripts/pictures/Scenes.h"

#include <QMouseEvent>
#include <QPainter>
#include <QTest>

namespace folivex::pictures {

namespace {

class OpenViewer {
public:
  OpenViewer(const QString& file, QSize size) {
    m_viewer.setLibrary(m_library);
    m_viewer.show();
    m_viewer.resize(size);
    m_viewer.openFile({file, {}});
    m_canvas = m_viewer.findChild<PageCanvas*>(QStringLiteral("pageCanvas"));
    waitForPage();
  }

  PagePane& viewer() { return m_viewer; }

  void waitForPage() {
    constexpr int patienceMs = 60'000;
    m_isThere = QTest::qWaitFor(
        [&] {
          return m_viewer.pageCount() > 0 && m_canvas->page().page == m_viewer.page() &&
                 !m_canvas->page().image.isNull();
        },
        patienceMs);
  }
  void pointAt(const char* text) { send(QEvent::MouseMove, text, Qt::NoButton, Qt::NoButton); }
  void pick(const char* text) {
    send(QEvent::MouseButtonPress, text, Qt::LeftButton, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, text, Qt::LeftButton, Qt::NoButton);
  }
  /// Where the word is looked for by a search.
  PlanMark markOf(const char* text) const {
    const ViewedWord* word = find(text);
    return word == nullptr ? PlanMark{} : PlanMark{m_viewer.page(), word->text, word->h, word->v};
  }

private:
  const ViewedWord* find(const char* text) const {
    for (const ViewedWord& word : m_canvas->page().words) {
      if (m_isThere && word.text == QLatin1String(text)) {
        return &word;
      }
    }
    return nullptr;
  }
  void send(QEvent::Type type, const char* text, Qt::MouseButton button, Qt::MouseButtons buttons) {
    if (const ViewedWord* word = find(text)) {
      const QPointF at = m_canvas->onCanvas(word->box).center();
      QMouseEvent event(type, at, m_canvas->mapToGlobal(at), button, buttons, Qt::NoModifier);
      QApplication::sendEvent(m_canvas, &event);
    }
  }

  CPDFTextDumpInit m_library;
  PagePane m_viewer;
  PageCanvas* m_canvas = nullptr;
  bool m_isThere = false;
};

SplitPlan planOf(const Studio& studio) {
  ReadyMainWindow main(studio);
  main.show(firstSplit(studio.sample));
  SplitPlan plan = main.window().program().driver().Plan();
  for (PlannedOutput& output : plan.outputs) {
    output.path = shownFolder() + QStringLiteral("out/") + platform::fileTitle(output.path);
  }
  return plan;
}

void show(PlanPane& pane, const SplitPlan& plan) {
  pane.setPlan(shownFolder() + QStringLiteral("statements.pdf"),
               std::make_unique<PlanRows>(std::make_shared<SplitPlan>(plan), pane.order()));
}

void takePlans(Camera& camera, const Studio& studio) {
  SplitPlan plan = planOf(studio);
  PlanPane table(studio.dialogs);
  show(table, plan);
  camera.take(table, QStringLiteral("plan"));
  plan.outputs[0].fate = PlannedOutput::Fate::Replaces;
  plan.outputs[1].fate = PlannedOutput::Fate::Renamed;
  plan.outputs[1].path = shownFolder() + QStringLiteral("a-folder-of-a-customer-with-a-long-name/"
                                                        "and-one-inside/statement_1002.pdf");
  int number = 0;
  for (PlannedOutput& output : plan.outputs) {
    output.address = QStringLiteral("customer%1@example.com").arg(++number);
  }
  plan.outputs[2].address.clear();
  plan.notes = {
      {RunFinding::Protected,
       QStringLiteral("The file forbids the extraction of its pages; it is split anyway.")},
      {RunFinding::DamagedPages,
       QStringLiteral("page 3: the page is damaged; its words were not read")}};
  show(table, plan);
  camera.take(table, QStringLiteral("plan-warnings"));
}

} // namespace

void takePages(Camera& camera, const Studio& studio) {
  constexpr QSize size(820, 640);
  OpenViewer open(studio.sample, size);
  open.pick("Account:");
  open.viewer().tell(QStringLiteral("Find word(s): taken from \"Account:\" at 72, 120."));
  camera.takeShown(open.viewer(), QStringLiteral("viewer-picked"));
  const PlanMark mark = open.markOf("Account:");
  open.viewer().beginWalk();
  open.viewer().showMatch(mark, 1);
  open.waitForPage();
  QApplication::processEvents();
  camera.takeShown(open.viewer(), QStringLiteral("viewer-match"));
  open.viewer().endWalk();
  PagePane empty;
  camera.take(empty, QStringLiteral("viewer-empty"), size);
  takePlans(camera, studio);
}

QImage viewerPicture(const Studio& studio) {
  OpenViewer open(studio.sample, QSize(700, 430));
  open.viewer().onMeant = [](Meaning, const Picked&) {};
  open.pointAt("Account:");
  open.pick("Account:");
  QImage picture = open.viewer().grab().toImage();
  if (QWidget* menu = QApplication::activePopupWidget()) {
    QPainter(&picture).drawPixmap(open.viewer().mapFromGlobal(menu->pos()), menu->grab());
    menu->close();
  }
  return picture;
}

QImage planPicture(const Studio& studio) {
  PlanPane table(studio.dialogs);
  show(table, planOf(studio));
  table.resize(QSize(660, 300));
  table.show();
  QApplication::processEvents();
  return table.grab().toImage();
}

} // namespace folivex::pictures
