// window_bench SETUP PDF [STOP-AFTER-MS]: processes a file with the window open, as a person does
// it, and measures the longest time between two turns of the window's event loop; with a time, how
// long Stop takes.
#include "app/program/ProgramWindows.h"
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

namespace {

using namespace folivex;

/** Answers No to questions, names the setup file when one is asked for. */
class BenchDialogs : public Dialogs {
public:
  explicit BenchDialogs(QString setup) : m_setup(std::move(setup)) {}

  void message(QWidget* /*over*/, const QString& text) override {
    std::fprintf(stderr, "%s\n", qUtf8Printable(text));
  }
  bool question(QWidget* /*over*/, const QString& /*text*/, const QString& /*caption*/) override {
    return false;
  }
  QString openFile(QWidget* /*over*/, const FileRequest& /*request*/) override { return m_setup; }
  QStringList openFiles(QWidget* /*over*/, const FileRequest& /*request*/) override { return {}; }
  QString saveFile(QWidget* /*over*/, const FileRequest& /*request*/) override { return {}; }
  QString chooseFolder(QWidget* /*over*/, const QString& /*title*/,
                       const QString& /*startPath*/) override {
    return {};
  }
  bool openOutside(const QString& /*pathOrAddress*/) override { return false; }

private:
  QString m_setup;
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

/** The button that ends the run, wherever the status dialog hangs. */
QAbstractButton* stopButton() {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && window->objectName() == QStringLiteral("status")) {
      return part<QAbstractButton>(*window, "stop");
    }
  }
  qFatal("window_bench: no run is on");
}

void measure(ProgramWindows& windows, const QString& pdf, int stopAfter) {
  MainWindow& main = windows.main();
  part<QAction>(main, "loadSetup")->trigger();
  auto* source = part<QLineEdit>(main, "FILENAME");
  source->setText(pdf);
  QApplication::processEvents();

  TurnWatch watch;
  QElapsedTimer sinceStop;
  if (stopAfter > 0) {
    QTimer::singleShot(stopAfter, &main, [&] {
      sinceStop.start();
      stopButton()->click();
    });
  }
  QElapsedTimer run;
  run.start();
  watch.start();
  part<QAbstractButton>(main, "processButton")->click();
  watch.stop();
  std::printf("run %.2f s, longest pause %lld ms, %lld turns",
              static_cast<double>(run.elapsed()) / 1000, watch.longest(), watch.turns());
  if (sinceStop.isValid()) {
    std::printf(", stopped after %lld ms", static_cast<long long>(sinceStop.elapsed()));
  }
  std::printf("\n");
}

} // namespace

int main(int argc, char* argv[]) {
  const QTemporaryDir folder;
  qputenv("XDG_CONFIG_HOME", folder.path().toLocal8Bit());
  const QApplication application(argc, argv);
  if (argc < 3) {
    std::fputs("usage: window_bench SETUP PDF [STOP-AFTER-MS]\n", stderr);
    return 2;
  }
  BenchDialogs dialogs(QString::fromLocal8Bit(argv[1]));
  WindowMemory memory(folder.filePath(QStringLiteral("window.ini")));
  ProgramWindows windows(dialogs, memory);
  windows.main().show();
  windows.start({});
  measure(windows, QString::fromLocal8Bit(argv[2]), argc > 3 ? std::atoi(argv[3]) : 0);
  return 0;
}
