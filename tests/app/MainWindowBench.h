// MainWindowBench: the main window over the real engine, with a temporary folder and a memory of
// its own.
#pragma once

#include "app/MainWindow.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SplitMethod.h"
#include "tests/support/BuiltLibraries.h"
#include "tests/support/Programs.h"
#include "tests/support/TextPdf.h"
#include "tests/support/WindowBench.h"
#include "widgets/WindowMemory.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

namespace folivex::testing {

class MainWindowBench : public OwnFolder {
protected:
  MainWindowBench() { EXPECT_EQ(test::loadBuiltLibraries(), QString()); }

  /// Opens the window with a setup that splits in.pdf at "Account:", named after the next word.
  MainWindow& open(const WindowParts& parts = {}) {
    m_window = std::make_unique<MainWindow>(m_dialogs, m_memory);
    m_window->setParts(parts);
    m_window->show();
    m_window->start({});
    SplitSetup& setup = m_window->program().store().edited();
    setup = defaultSetup();
    setup.fileName = at("in.pdf");
    setup.outputDir = at("out");
    setup.findString = "Account:";
    setup.prefixFileName.clear();
    setup.pageExtract = splitMethodTexts()[0];
    setup.extract = fileNameMethodTexts()[1];
    m_window->refresh();
    return *m_window;
  }

  /// Pages "Account: 1001", "Account: 1002" and so on, each with one more page behind it.
  void writeSource(int documents) const {
    test::TextPdf pdf;
    for (int i = 1; i <= documents; ++i) {
      pdf.page({QStringLiteral("Account: %1").arg(1000 + i)});
      pdf.page({QStringLiteral("more")});
    }
    pdf.write(at("in.pdf"));
  }

  void trigger(const char* action) {
    auto* found = m_window->findChild<QAction*>(QString::fromLatin1(action));
    ASSERT_NE(found, nullptr) << action;
    ASSERT_TRUE(found->isEnabled()) << action;
    found->trigger();
  }
  bool isEnabled(const char* name) { return control<QWidget>(m_window.get(), name)->isEnabled(); }
  bool isAvailable(const char* action) {
    return m_window->findChild<QAction*>(QString::fromLatin1(action))->isEnabled();
  }
  QString text(const char* name) { return control<QLineEdit>(m_window.get(), name)->text(); }
  /// What the line under a setting's control says, empty when it is not seen.
  static QString problemAt(QWidget* window, const QString& key) {
    const auto* line = window->findChild<QLabel*>(key + "Problem");
    return line != nullptr && line->isVisible() ? line->text() : QString();
  }
  void choose(const char* name, const QString& entry) {
    auto* list = control<QComboBox>(m_window.get(), name);
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Home);
    for (int i = 0; i < list->count() && list->currentText() != entry; ++i) {
      QTest::keyClick(list, Qt::Key_Down);
    }
    EXPECT_EQ(list->currentText(), entry);
  }

  ScriptedDialogs m_dialogs;
  WindowMemory m_memory{at("window.ini")};
  std::unique_ptr<MainWindow> m_window;
};

} // namespace folivex::testing
