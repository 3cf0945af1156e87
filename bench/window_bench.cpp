// window_bench SETUP PDF [STOP-AFTER-MS]: processes a file with the window open, as a person does
// it, and measures the longest time between two turns of the window's event loop; with a time, how
// long Stop takes.
#include "app/program/ProgramWindows.h"
#include "batch/CBatchList.h"
#include "widgets/Dialogs.h"
#include "widgets/WindowMemory.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>

namespace {

using namespace folivex;

/** Answers No to questions, and with the one path when a file or folder is asked for. */
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
             const QStringList& /*answers*/) override {
    return noChoice;
  }
  QString openFile(QWidget* /*over*/, const FileRequest& /*request*/) override { return m_path; }
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
QAbstractButton* stopButton(const char* window) {
  for (QWidget* shown : QApplication::allWidgets()) {
    if (shown->isWindow() && shown->isVisible() && shown->objectName() == QLatin1String(window)) {
      return part<QAbstractButton>(*shown, "stop");
    }
  }
  qFatal("window_bench: nothing is going on");
}

/** Runs `work`, which returns when it is done or was stopped, and tells how the window fared. */
void measure(const char* name, const char* stopWindow, int stopAfter,
             const std::function<void()>& work) {
  TurnWatch watch;
  QElapsedTimer sinceStop;
  if (stopAfter > 0) {
    QTimer::singleShot(stopAfter, qApp, [&] {
      sinceStop.start();
      stopButton(stopWindow)->click();
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

void process(BenchDialogs& dialogs, WindowMemory& memory, const QString& pdf, int stopAfter) {
  ProgramWindows windows(dialogs, memory);
  MainWindow& main = windows.main();
  main.show();
  windows.start({});
  part<QAction>(main, "loadSetup")->trigger();
  part<QLineEdit>(main, "FILENAME")->setText(pdf);
  QApplication::processEvents();
  measure("run", "status", stopAfter,
          [&] { part<QAbstractButton>(main, "processButton")->click(); });
}

void scan(BenchDialogs& dialogs, int stopAfter) {
  CBatchList list(dialogs);
  list.rows().clear();
  list.show();
  QApplication::processEvents();
  measure("scan", "CScanning", stopAfter, [&] { part<QAction>(list, "scan")->trigger(); });
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
