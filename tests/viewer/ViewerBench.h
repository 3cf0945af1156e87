// ViewerBench: the page viewer beside an engine, with the real libraries and real files.
#pragma once

#include "app/viewer/PageArea.h"
#include "app/viewer/PagePane.h"
#include "engine/job/JobDriver.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SplitMethod.h"
#include "engine/words/TableFiller.h"
#include "tests/support/PdfBuilder.h"
#include "tests/support/Programs.h"
#include "tests/support/RealLibraries.h"
#include "tests/support/RecordingOperator.h"
#include "tests/support/WindowBench.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

namespace folivex::test {

using testing::click;
using testing::control;
using testing::patienceMs;
using testing::ScriptedDialogs;
using testing::typeInto;
using testing::waitUntil;

inline QString samplePath() {
  return QStringLiteral(FOLIVEX_SOURCE_DIR "/samples/statements.pdf");
}

/// A viewer, and a driver with a temporary folder of its own that splits the sample at "Account:".
class ViewerBench : public testing::OwnFolder {
protected:
  ViewerBench() {
    setup().fileName = samplePath();
    setup().outputDir = at("out");
    setup().findString = QStringLiteral("Account:");
    setup().pageExtract = splitMethodTexts()[0];
    setup().extract = fileNameMethodTexts()[1];
    m_driver = std::make_unique<JobDriver>(m_store, RealLibraries::get().all(), m_person);
    m_viewer.setLibrary(*RealLibraries::get().text);
    m_viewer.resize(820, 900);
    m_viewer.show();
  }
  SplitSetup& setup() { return m_store.edited(); }

  PageCanvas& canvas() { return *control<PageArea>(&m_viewer, "pageArea")->canvas(); }
  const std::vector<ViewedWord>& words() { return canvas().page().words; }
  QString told(const char* label) { return control<QLabel>(&m_viewer, label)->text(); }

  /// Waits until the page that the viewer is at is drawn.
  [[nodiscard]] bool isDrawn() {
    return waitUntil([this] {
      return m_viewer.pageCount() > 0 && canvas().page().page == m_viewer.page() &&
             !canvas().page().image.isNull();
    });
  }
  /// Hands over the words of a file, which come in by and by.
  void readWords(const QString& path) {
    m_words = std::make_shared<WordTable>(std::size_t{1} << 24U);
    m_filler = std::make_unique<TableFiller>(*RealLibraries::get().text,
                                             TableFiller::Source{path, {}, 1.02}, m_words, false);
    m_viewer.setWords(m_words);
  }
  /// Opens a file and waits for its first page.
  void open(const ViewedFile& file) {
    m_viewer.openFile(file);
    ASSERT_TRUE(isDrawn()) << told("viewerState").toStdString();
  }
  void openSample() { open({samplePath(), {}, false}); }

  const ViewedWord& word(const char* text) {
    for (const ViewedWord& one : words()) {
      if (one.text == QString::fromUtf8(text)) {
        return one;
      }
    }
    ADD_FAILURE() << "the page has no word " << text;
    std::abort();
  }
  QPoint placeOf(const ViewedWord& one) { return canvas().onCanvas(one.box).center().toPoint(); }
  QPoint placeAt(double h, double v) {
    return canvas().onCanvas(QRectF(h, v, 0, 0)).topLeft().toPoint();
  }
  void moveTo(QPoint place, Qt::MouseButtons buttons = Qt::NoButton) {
    QMouseEvent event(QEvent::MouseMove, place, canvas().mapToGlobal(place), Qt::NoButton, buttons,
                      Qt::NoModifier);
    QApplication::sendEvent(&canvas(), &event);
  }
  void key(Qt::Key which, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&canvas(), which, modifiers);
  }

  /// The menu that is up, once it is.
  QMenu* menu(const char* name) {
    EXPECT_TRUE(waitUntil([&] {
      const QWidget* popup = QApplication::activePopupWidget();
      return popup != nullptr && popup->objectName() == QLatin1String(name);
    })) << name;
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
  }
  /// Takes an entry of that menu as the keyboard does.
  void choose(const char* name, const QString& text) {
    QMenu* open = menu(name);
    ASSERT_NE(open, nullptr);
    for (QAction* action : open->actions()) {
      if (action->text() == text) {
        open->setActiveAction(action);
        return QTest::keyClick(open, Qt::Key_Return);
      }
    }
    ADD_FAILURE() << "no entry " << text.toStdString();
  }
  QAction* action(const char* name) {
    return m_viewer.findChild<QAction*>(QString::fromLatin1(name));
  }

  SetupStore m_store;
  RecordingOperator m_person;
  std::unique_ptr<JobDriver> m_driver;
  PagePane m_viewer;
  std::shared_ptr<WordTable> m_words;
  std::unique_ptr<TableFiller> m_filler;
};

} // namespace folivex::test
