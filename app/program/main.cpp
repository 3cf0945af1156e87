#include "app/CommandLine.h"
#include "app/Program.h"
#include "app/TerminalOperator.h"
#include "app/program/DisplayProbe.h"
#include "app/program/ProgramWindows.h"
#include "platform/DropFilter.h"
#include "platform/RawText.h"
#include "platform/Terminal.h"
#include "widgets/DesktopDialogs.h"
#include "widgets/ProgramIcon.h"
#include "widgets/Theme.h"
#include "widgets/WindowMemory.h"

#include <QApplication>
#include <QTimer>

#include <cstdio>

namespace {

using namespace folivex;

constexpr int cannotStart = 1;

QString workWord(const CommandLine& line) {
  return line.suggest                    ? QStringLiteral("suggest")
         : line.plan != PlanOutput::None ? QStringLiteral("plan")
                                         : QStringLiteral("run");
}

int work(const CommandLine& line, RecordStream& records) {
  Program* running = nullptr;
  TerminalOperator person([&running] { running->driver().Stop(); }, records);
  Program program(person);
  if (const QString missing = program.loadLibraries(); !missing.isEmpty()) {
    person.message(missing);
    return cannotStart;
  }
  running = &program;
  catchSignals();
  program.loadDefaultSetup();
  const Program::Ended ended = program.handleCommandLine(line);
  person.clearProgress();
  return ended.exitCode;
}

int runUnattended(int& argc, char** argv, const CommandLine& line) {
  const QCoreApplication application(argc, argv);
  RecordStream records(line.json ? stdout : nullptr);
  records.begin(workWord(line), QStringLiteral(FOLIVEX_VERSION));
  const int code = work(line, records);
  if (records.end(code)) {
    return code;
  }
  tellTerminal(QStringLiteral("the records for programs could not be written whole"));
  return code == 0 ? static_cast<int>(RunError::OutputFailed) : code;
}

int runWindow(int& argc, char** argv, const CommandLine& line) {
  const QApplication application(argc, argv);
  QApplication::setWindowIcon(programIcon());
  QApplication::setDesktopFileName(QStringLiteral("folivex")); // where desktops look for the icon
  WindowMemory memory;
  applyTheme(themeOf(memory.text(QStringLiteral("theme"))));
  DesktopDialogs dialogs;
  ProgramWindows windows(dialogs, memory);
  MainWindow& main = windows.main();
  // Windows beside the main one do not keep the program alive.
  main.onClosed = [] { QApplication::exit(0); };
  main.show();
  platform::allowDropsOn(main.winId());
  QTimer::singleShot(0, &main, [&] { windows.start(line); });
  return QApplication::exec();
}

/// Work that ends by itself needs no window where a terminal can show it, and a plan is for the
/// terminal anyhow. Without a terminal (a desktop's starter) a window shows how far it is.
bool wantsWindow(const CommandLine& line) {
  if (line.argumentCount == 0) {
    return platform::hasDisplay() || qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
  }
  return platform::hasDisplay() && line.plan == PlanOutput::None && !line.suggest && !line.json &&
         !(line.closes() && platform::isTerminal(stderr));
}

CommandLine commandLineOf(int argc, char** argv) {
  if (const QString whole = platform::wholeCommandLine(); !whole.isEmpty()) {
    return parseCommandLine(whole);
  }
  QStringList arguments;
  for (int i = 0; i < argc; ++i) {
    arguments += platform::rawArgument(argv[i]);
  }
  return parseCommandLine(arguments);
}

} // namespace

int main(int argc, char** argv) {
  const platform::Utf8Console console;
  ignoreWriteSignals();
  const CommandLine line = commandLineOf(argc, argv);
  if (line.help || line.version) {
    const QString text = line.help ? usageText() : versionText();
    std::fputs(text.toUtf8().constData(), stdout);
    return 0;
  }
  if (wantsWindow(line) && displayAnswers(argc, argv)) {
    return runWindow(argc, argv, line);
  }
  if (line.argumentCount == 0) {
    std::fputs("Folivex needs a display for its window; for work without one see --help.\n",
               stderr);
    return cannotStart;
  }
  return runUnattended(argc, argv, line);
}
