// ProgramWindowsBench: all windows of the program, with a temporary folder and a memory of its own.
#pragma once

#include "app/program/ProgramWindows.h"
#include "tests/support/BuiltLibraries.h"
#include "tests/support/Programs.h"
#include "tests/support/WindowBench.h"
#include "widgets/WindowMemory.h"

#include <QAction>

namespace folivex::testing {

class ProgramWindowsBench : public OwnFolder {
protected:
  ProgramWindowsBench() {
    EXPECT_EQ(test::loadBuiltLibraries(), QString());
    m_windows = std::make_unique<ProgramWindows>(m_dialogs, m_memory);
    main().show();
    m_windows->start({});
  }

  MainWindow& main() { return m_windows->main(); }
  void trigger(const char* action) {
    main().findChild<QAction*>(QString::fromLatin1(action))->trigger();
  }

  template <typename Window> Window* opened() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (auto* one = dynamic_cast<Window*>(window); one != nullptr && one->isVisible()) {
        return one;
      }
    }
    ADD_FAILURE() << "the window did not open";
    std::abort();
  }

  ScriptedDialogs m_dialogs;
  WindowMemory m_memory{at("window.ini")};
  std::unique_ptr<ProgramWindows> m_windows;
};

} // namespace folivex::testing
