// window_bench SETUP PDF [STOP-AFTER-MS]: opens a file, looks through it, types and processes it as
// a person does, and measures the longest time between two turns of the window's event loop, how
// soon page and plan are there, and with a time, how long Stop takes.
#include "app/program/ProgramWindows.h"
#include "app/viewer/PageArea.h"
#include "app/viewer/PageCanvas.h"
#include "batch/CBatchList.h"
#include "widgets/Dialogs.h"
#include "widgets/WindowMemory.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>

namespace {

using namespace folivex;

/** Answers No to questions, takes the last of several answers, and gives the one path that is
 * chosen. */
class BenchDialogs : public Dialogs {
public:
  explicit BenchDialogs(QString path) : m_path(std::move(path)) {}

  void message(QWidget* /*over*/, const QString& text) override {
    std::fprintf(stderr, "%s\n", qUtf8Printable(text));
  }
  bool question(QWidget* /*over*/, const QString& /*text*/, const QString& /*caption*/) override {
    return false;
  }
  int choice(QWidget* /*over*/, const QString& /*text*/, const QString& /*caption*/,
             const QStringList& answers) override {
    return static_cast<int>(answers.size()) - 1; // files that are there are written over
  }
  QString openFile(QWidget* /*over*/, const FileRequest& /*request*/) override { return m_path; }
  void choose(const QString& path) { m_path = path; }
  QStringList openFiles(QWidget* /*over*/, const FileRequest& /*request*/) override { return {}; }
  QString saveFile(QWidget* /*over*/, const FileRequest& /*request*/) override { return {}; }
  QString chooseFolder(QWidget* /*over*/, const QString& /*title*/,
                       const QString& /*startPath*/) override {
    return m_path;
  }
  bool openOutside(const QString& /*pathOrAddress*/) override { return false; }

private:
  QString m_path;
};

/** The longest time between two turns of the event loop, nested loops included. */
class TurnWatch {
public:
  TurnWatch() {
    m_timer.callOnTimeout([this] {
      m_longest = std::max(m_longest, m_clock.restart());
      ++m_turns;
    });
  }
  void start() {
    m_longest = 0;
    m_turns = 0;
    m_clock.start();
    m_timer.start(1);
  }
  void stop() { m_longest = std::max(m_longest, m_clock.elapsed()); }
  long long longest() const { return m_longest; }
  long long turns() const { return m_turns; }

private:
  QTimer m_timer;
  QElapsedTimer m_clock;
  qint64 m_longest = 0;
  long long m_turns = 0;
};

template <typename Part> Part* part(QWidget& window, const char* name) {
  auto* found = window.findChild<Part*>(QString::fromLatin1(name));
  if (found == nullptr) {
    qFatal("window_bench: the window has no \"%s\"", name);
  }
  return found;
}

/** The button that ends what is going on, in the window of that name, wherever it hangs. */
QAbstractButton* stopButton(const char* window, const char* button) {
  for (QWidget* shown : QApplication::allWidgets()) {
    if (shown->isWindow() && shown->isVisible() && shown->objectName() == QLatin1String(window)) {
      return part<QAbstractButton>(*shown, button);
    }
  }
  qFatal("window_bench: nothing is going on");
}

/** Lets the window live until something is so. */
void waitUntil(const std::function<bool()>& isSo) {
  while (!isSo()) {
    QApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
}

/** Runs `work`, which returns when it is done or was stopped, and tells how the window fared. */
void measure(const char* name, int stopAfter, const std::function<QAbstractButton*()>& stop,
             const std::function<void()>& work) {
  TurnWatch watch;
  QElapsedTimer sinceStop;
  if (stopAfter > 0) {
    QTimer::singleShot(stopAfter, qApp, [&] {
      sinceStop.start();
      stop()->click();
    });
  }
  QElapsedTimer run;
  run.start();
  watch.start();
  work();
  watch.stop();
  std::printf("%s %.2f s, longest pause %lld ms, %lld turns", name,
              static_cast<double>(run.elapsed()) / 1000, watch.longest(), watch.turns());
  if (sinceStop.isValid()) {
    std::printf(", stopped after %lld ms", static_cast<long long>(sinceStop.elapsed()));
  }
  std::printf("\n");
}

void press(QWidget* control, int key, const QString& text) {
  QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, text);
  QApplication::sendEvent(control, &down);
}

/** Waits for the plan of the settings as they are. */
void waitForPlan(QWidget& main) {
  auto* age = part<QLabel>(main, "planAge");
  waitUntil([age] { return age->text().startsWith(QLatin1String("As of")); });
}

/** A person opens the file, pages through it, and changes the words that are looked for. */
void look(QWidget& main, const std::function<void()>& open) {
  const auto nobody = [] { return static_cast<QAbstractButton*>(nullptr); };
  auto* area = static_cast<PageArea*>(part<QWidget>(main, "pageArea"));
  measure("first page", 0, nobody, [&] {
    open();
    waitUntil([area] { return !area->canvas()->page().image.isNull(); });
  });
  measure("reading", 0, nobody, [&] { waitForPlan(main); });
  measure("scrolling", 0, nobody, [&] {
    QScrollBar* bar = part<QAbstractItemView>(main, "pageStrip")->verticalScrollBar();
    constexpr int steps = 200;
    for (int step = 1; step <= steps; ++step) {
      bar->setValue(bar->maximum() / steps * step);
      QApplication::processEvents();
    }
    auto* next = part<QAbstractButton>(main, "nextPage");
    for (int page = 0; page < steps; ++page) {
      next->click();
      QApplication::processEvents();
    }
  });
  auto* words = part<QLineEdit>(main, "FINDSTRING");
  words->setFocus();
  words->end(false);
  measure("typing", 0, nobody, [&] {
    press(words, Qt::Key_Backspace, QString());
    QApplication::processEvents();
    press(words, Qt::Key_Colon, QStringLiteral(":"));
    QApplication::processEvents();
  });
  measure("plan after the last key", 0, nobody, [&] { waitForPlan(main); });
}

void process(BenchDialogs& dialogs, WindowMemory& memory, const QString& pdf, int stopAfter) {
  ProgramWindows windows(dialogs, memory);
  MainWindow& main = windows.main();
  main.show();
  windows.start({});
  part<QAction>(main, "loadSetup")->trigger();
  QApplication::processEvents();
  look(main, [&] {
    dialogs.choose(pdf);
    part<QAction>(main, "openPdf")->trigger();
  });
  measure(
      "run", stopAfter, [] { return stopButton("mainWindow", "stopButton"); },
      [&] { part<QAbstractButton>(main, "processButton")->click(); });
}

void scan(BenchDialogs& dialogs, int stopAfter) {
  CBatchList list(dialogs);
  list.rows().clear();
  list.show();
  QApplication::processEvents();
  measure(
      "scan", stopAfter, [] { return stopButton("CScanning", "stop"); },
      [&] { part<QAction>(list, "scan")->trigger(); });
  std::printf("%d rows\n", list.rows().count());
  list.rows().clear();
}

} // namespace

int main(int argc, char* argv[]) {
  const QTemporaryDir folder;
  for (const char* place : {"XDG_CONFIG_HOME", "TMPDIR"}) {
    qputenv(place, folder.path().toLocal8Bit());
  }
  const QApplication application(argc, argv);
  if (argc < 3) {
    std::fputs("usage: window_bench SETUP PDF [STOP-AFTER-MS]\n"
               "       window_bench --scan FOLDER [STOP-AFTER-MS]\n",
               stderr);
    return 2;
  }
  const int stopAfter = argc > 3 ? std::atoi(argv[3]) : 0;
  const bool scans = QLatin1String(argv[1]) == QLatin1String("--scan");
  BenchDialogs dialogs(QString::fromLocal8Bit(argv[scans ? 2 : 1]));
  if (scans) {
    scan(dialogs, stopAfter);
    return 0;
  }
  WindowMemory memory(folder.filePath(QStringLiteral("window.ini")));
  process(dialogs, memory, QString::fromLocal8Bit(argv[2]), stopAfter);
  return 0;
}
