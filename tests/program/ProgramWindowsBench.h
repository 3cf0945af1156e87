// ProgramWindowsBench: all windows of the program, with a temporary folder and a memory of its own.
#pragma once

#include "app/program/ProgramWindows.h"
#include "tests/support/BuiltLibraries.h"
#include "tests/support/Programs.h"
#include "tests/support/WindowBench.h"
#include "widgets/WindowMemory.h"

#include <QAction>
#include <QTemporaryDir>

namespace folivex::testing {

class ProgramWindowsBench : public ::testing::Test {
protected:
  ProgramWindowsBench() : m_memory(at("window.ini")) {
    EXPECT_EQ(test::loadBuiltLibraries(), QString());
    QDir(m_folder.path()).mkdir(QStringLiteral("tmp"));
    m_temporaryBefore = qgetenv("TMPDIR");
    qputenv("TMPDIR", QFile::encodeName(at("tmp")));
    m_windows = std::make_unique<ProgramWindows>(m_dialogs, m_memory);
    main().show();
    m_windows->start({});
  }
  ~ProgramWindowsBench() override {
    m_windows.reset();
    qputenv("TMPDIR", m_temporaryBefore);
  }

  MainWindow& main() { return m_windows->main(); }
  QString at(const char* name) const { return m_folder.filePath(QString::fromLatin1(name)); }
  void trigger(const char* action) {
    main().findChild<QAction*>(QString::fromLatin1(action))->trigger();
  }

  template <typename Window> Window* opened() {
    Window* found = nullptr;
    const bool came = waitUntil([&] {
      for (QWidget* window : QApplication::topLevelWidgets()) {
        if (auto* one = dynamic_cast<Window*>(window); one != nullptr && one->isVisible()) {
          found = one;
        }
      }
      return found != nullptr;
    });
    EXPECT_TRUE(came) << "the window never opened";
    return found;
  }

  QTemporaryDir m_folder;
  QByteArray m_temporaryBefore;
  ScriptedDialogs m_dialogs;
  WindowMemory m_memory;
  std::unique_ptr<ProgramWindows> m_windows;
};

} // namespace folivex::testing
