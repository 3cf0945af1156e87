// The workspace in what a person meets there: empty, at work, and at the end of a run.
#include "app/MainWindow.h"
#include "app/viewer/PagePane.h"
#include "engine/setup/FileNameMethod.h"
#include "scripts/pictures/Scenes.h"
#include "tests/support/TextPdf.h"

#include <QAbstractButton>
#include <QDockWidget>
#include <QLabel>
#include <QProgressBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace folivex::pictures {

namespace {

/// Takes what a run asks about for agreed, by its last answer: files are overwritten.
class AgreeingDialogs : public QuietDialogs {
public:
  int choice(QWidget*, const QString&, const QString&, const QStringList& answers) override {
    return static_cast<int>(answers.size()) - 1;
  }
};

/// Windows of common sizes; at 200 % that of a screen that is no larger for it.
QList<QSize> sizes() {
  return qApp->devicePixelRatio() > 1
             ? QList<QSize>{QSize(960, 540)}
             : QList<QSize>{QSize(1280, 900), QSize(1920, 1080), QSize(1024, 700)};
}

class Workspace {
public:
  Workspace(Camera& camera, const Studio& studio)
      : m_camera(camera), m_main(Studio{m_dialogs, studio.memory, studio.sample}) {
    m_main.window().show();
  }

  ReadyMainWindow& main() { return m_main; }
  MainWindow& window() { return m_main.window(); }

  void take(const QString& state, QSize size) {
    window().resize(size);
    settle();
    m_camera.takeShown(window(),
                       QStringLiteral("work-%1-%2").arg(state, QString::number(size.width())));
  }
  void take(const QString& state) {
    for (const QSize size : sizes()) {
      take(state, size);
    }
  }
  bool waitFor(const std::function<bool()>& condition) {
    constexpr int patienceMs = 60'000;
    return QTest::qWaitFor(condition, patienceMs);
  }
  QString processText() {
    return window().findChild<QAbstractButton*>(QStringLiteral("processButton"))->text();
  }

private:
  static void settle() {
    constexpr int drawn = 300; // small pages are drawn beside the window
    QTest::qWait(drawn);
  }

  Camera& m_camera;
  AgreeingDialogs m_dialogs;
  ReadyMainWindow m_main;
};

void writeStatements(const QString& path, int documents) {
  test::TextPdf pdf;
  constexpr int first = 100001;
  for (int i = 0; i < documents; ++i) {
    pdf.page({QStringLiteral("Statement of March"), QStringLiteral("Account: %1").arg(first + i),
              QStringLiteral("Balance brought forward 1,204.50")});
    pdf.page({QStringLiteral("Page 2"), QStringLiteral("Balance carried forward 998.10")});
  }
  pdf.write(path);
}

void takeRun(Workspace& work, const QString& folder) {
  constexpr int documents = 3000;
  const QString source = folder + QStringLiteral("/statements-of-march.pdf");
  writeStatements(source, documents);
  SplitSetup setup = firstSplit(source);
  setup.outputDir = folder + QStringLiteral("/out");
  QList<QSize> left = sizes();
  work.main().show(setup);
  work.waitFor([&] { return work.processText().contains(QString::number(documents)); });
  work.take(QStringLiteral("ready"));
  QTimer look;
  look.callOnTimeout([&] {
    const auto* bar = work.window().findChild<QProgressBar*>(QStringLiteral("progress"));
    if (left.isEmpty() || bar->value() < documents / 2) {
      return;
    }
    look.stop();
    while (!left.isEmpty()) {
      work.take(QStringLiteral("running"), left.takeFirst());
    }
    work.main().trigger("stopRun");
  });
  look.start(0);
  work.window().process();
  work.take(QStringLiteral("stopped"));
}

} // namespace

void takeWorkspace(Camera& camera, const Studio& studio) {
  const QTemporaryDir folder;
  Workspace work(camera, studio);
  work.take(QStringLiteral("empty"));

  SplitSetup setup = firstSplit(studio.sample);
  setup.outputDir = folder.filePath(QStringLiteral("out"));
  work.main().show(setup);
  work.main().waitForPage();
  work.main().waitForPlan();
  work.take(QStringLiteral("sample"));
  work.window().process();
  work.take(QStringLiteral("end"));

  setup.findString = QStringLiteral("account:");
  work.main().show(setup);
  work.waitFor([&] {
    const auto* offer = work.window().findChild<QWidget*>(QStringLiteral("planOffer1"));
    return offer != nullptr && offer->isVisible();
  });
  work.take(QStringLiteral("no-match"));

  setup.findString = QStringLiteral("Account:");
  setup.extract = fileNameMethodTexts()[0]; // all of one name
  setup.alwaysOverwrite = true;
  work.main().show(setup);
  work.main().waitForPage();
  work.take(QStringLiteral("warnings"));
  work.window().process();
  work.take(QStringLiteral("end-losses"));

  takeRun(work, folder.path());
}

} // namespace folivex::pictures
