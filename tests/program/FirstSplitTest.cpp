// A first split with all the windows of the program, as somebody new to it does it.
#include "app/EndPanel.h"
#include "app/viewer/PageArea.h"
#include "app/viewer/PagePane.h"
#include "batch/CBatchList.h"
#include "tests/program/ProgramWindowsBench.h"
#include "tests/support/TextPdf.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTableView>

namespace folivex::testing {
namespace {

class FirstSplit : public ProgramWindowsBench {
protected:
  FirstSplit() {
    QFile::copy(QStringLiteral(FOLIVEX_SOURCE_DIR "/samples/statements.pdf"), at("statements.pdf"));
    m_dialogs.files = {{at("statements.pdf")}};
    click(&main(), "browseSource");
  }
  int plannedOutputs() { return control<QTableView>(&main(), "planTable")->model()->rowCount(); }
  static bool hasText(QWidget* panel, const QString& text) {
    const auto labels = panel->findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(),
                       [&](const QLabel* label) { return label->text().contains(text); });
  }
};

/// Nothing is configured: what somebody meets who starts the program for the first time.
class FirstStart : public OwnFolder {
protected:
  FirstStart() {
    EXPECT_EQ(test::loadBuiltLibraries(), QString());
    qputenv("HOME", m_folder.path().toLocal8Bit());
    m_windows = std::make_unique<ProgramWindows>(m_dialogs, m_memory);
    main().show();
    m_windows->start({});
    main().program().store().edited() = main().program().store().working() = defaultSetup();
    main().refresh();
    main().activateWindow();
    EXPECT_TRUE(waitUntil([this] { return main().isActiveWindow(); }));
  }
  ~FirstStart() override {
    EXPECT_TRUE(m_dialogs.messages.isEmpty() && m_dialogs.questions.isEmpty());
    qputenv("HOME", m_home);
  }

  MainWindow& main() { return m_windows->main(); }
  bool isPlanned() {
    return control<QAbstractButton>(&main(), "processButton")->text().contains("12 file(s)");
  }
  QStringList outputs() const {
    return test::filesBelow(at("Documents/Folivex sample"))
        .filter(QRegularExpression("^statement_\\d+\\.pdf$"));
  }

  QByteArray m_home = qgetenv("HOME");
  ScriptedDialogs m_dialogs;
  WindowMemory m_memory{at("window.ini")};
  std::unique_ptr<ProgramWindows> m_windows;
};

} // namespace

TEST_F(FirstStart, TwoClicksMakeTwelveFilesOfTheSample) {
  click(&main(), "trySample");
  ASSERT_TRUE(waitUntil([this] { return isPlanned(); }));
  click(&main(), "processButton");
  EXPECT_EQ(outputs().size(), 12);
  EXPECT_TRUE(control<QWidget>(&main(), "endPanel")->isVisible());
  EXPECT_TRUE(outputs().contains("statement_10472.pdf"));
}

TEST_F(FirstStart, SoDoesTheKeyboardAlone) {
  constexpr int stops = 60;
  for (int i = 0; i < stops && main().focusWidget()->objectName() != "trySample"; ++i) {
    QTest::keyClick(main().focusWidget(), Qt::Key_Tab);
  }
  ASSERT_EQ(main().focusWidget()->objectName(), "trySample");
  QTest::keyClick(main().focusWidget(), Qt::Key_Return);
  ASSERT_TRUE(waitUntil([this] { return isPlanned(); }));
  QTest::keyClick(&main(), Qt::Key_Escape); // ends nothing
  EXPECT_TRUE(main().isVisible());
  QTest::keyClick(&main(), Qt::Key_F5);
  EXPECT_EQ(outputs().size(), 12);
}

/// Nothing is known of the file but itself: open it, look at what is proposed, process.
TEST_F(FirstStart, ThreeClicksMakeTwelveFilesOfAFileOfOnesOwn) {
  QFile::copy(QStringLiteral(FOLIVEX_SOURCE_DIR "/samples/statements.pdf"), at("mine.pdf"));
  m_dialogs.files = {{at("mine.pdf")}};
  const auto* line = control<QWidget>(&main(), "offer");
  const auto* text = control<QLabel>(&main(), "offerText");

  click(&main(), "openPdfButton");
  ASSERT_TRUE(waitUntil([&] { return line->isVisible(); }));
  EXPECT_TRUE(text->text().startsWith("Proposed: \"Account:\" begins 12 documents"));
  typeInto(&main(), "OUTPUTDIR", at("out")); // what is set meanwhile stays
  const SplitSetup before = main().currentSetup();
  EXPECT_EQ(before.findString, defaultSetup().findString); // nothing is set unasked
  click(&main(), "offer1");
  ASSERT_TRUE(waitUntil([this] { return isPlanned(); }));
  EXPECT_FALSE(line->isVisible());

  // It is a step like any other, and the button proposes the same again.
  main().findChild<QAction*>("undo")->trigger();
  EXPECT_TRUE(main().currentSetup() == before);
  const QString first = text->text();
  click(&main(), "suggestButton");
  ASSERT_TRUE(waitUntil([&] { return line->isVisible(); }));
  EXPECT_EQ(text->text(), first);
  click(&main(), "offer2");
  EXPECT_NE(text->text(), first);
  QTest::keyClick(&main(), Qt::Key_F4);
  ASSERT_TRUE(waitUntil([&] { return text->text() == first; }));
  click(&main(), "offer1");
  ASSERT_TRUE(waitUntil([this] { return isPlanned(); }));

  click(&main(), "processButton");
  const QStringList made = test::filesBelow(at("out")).filter(".pdf");
  EXPECT_EQ(made.size(), 12) << made.join(u' ').toStdString();
  EXPECT_TRUE(made.contains("10472.pdf"));
}

/// The finder says so when there is nothing to find.
TEST_F(FirstStart, OneDocumentIsNotTornApart) {
  test::TextPdf pdf;
  for (int page = 1; page <= 5; ++page) {
    pdf.pages.push_back({{{60, 100, QStringLiteral("All of this is one")}}});
  }
  pdf.write(at("one.pdf"));
  m_dialogs.files = {{at("one.pdf")}};
  click(&main(), "openPdfButton");
  const auto* line = control<QWidget>(&main(), "offer");
  ASSERT_TRUE(waitUntil([&] { return line->isVisible(); }));
  EXPECT_TRUE(control<QLabel>(&main(), "offerText")->text().startsWith("No documents were found"));
  EXPECT_FALSE(control<QWidget>(&main(), "offer1")->isVisible());
}

/// Three papers are too few to be sure of; who opens the file is not told a guess unasked.
TEST_F(FirstStart, AGuessIsShownToWhoAsksForIt) {
  test::TextPdf pdf;
  for (int page = 0; page < 9; ++page) {
    pdf.pages.push_back({{{60, 300, QStringLiteral("and so on")}}});
    if (page % 3 == 0) {
      pdf.pages.back().texts.push_back(
          {300, 100, QStringLiteral("Account: K%1").arg(41707 + page)});
      pdf.pages.back().texts.push_back({60, 200, QStringLiteral("Dear customer")});
    }
  }
  pdf.write(at("few.pdf"));
  pdf.write(at("again.pdf"));
  m_dialogs.files = {{at("few.pdf")}, {at("again.pdf")}};
  const auto* text = control<QLabel>(&main(), "offerText");
  const auto is = [&](const char* begin) {
    return waitUntil([&] { return text->text().startsWith(QLatin1String(begin)); });
  };
  click(&main(), "openPdfButton");
  ASSERT_TRUE(is("No documents were found in this file for sure."));
  QTest::keyClick(&main(), Qt::Key_F4);
  ASSERT_TRUE(is("Nothing is sure; perhaps: "));
  click(&main(), "browseSource");
  ASSERT_TRUE(is("No documents were found in this file for sure."));
  click(&main(), "offer1");
  EXPECT_TRUE(text->text().startsWith("Nothing is sure; perhaps: "));
}

TEST_F(FirstSplit, FromAWordThatIsPointedAt) {
  m_dialogs.files = {{at("out")}};
  click(&main(), "browseOutput");
  auto* viewer = control<PagePane>(&main(), "pageViewer");
  PageCanvas& canvas = *control<PageArea>(viewer, "pageArea")->canvas();
  ASSERT_TRUE(waitUntil([&] { return !canvas.page().image.isNull(); }));
  const auto& words = canvas.page().words;
  const auto word = std::find_if(words.begin(), words.end(),
                                 [](const ViewedWord& one) { return one.text == "Account:"; });
  ASSERT_NE(word, words.end());
  for (const Qt::Key letter :
       {Qt::Key_B, Qt::Key_H}) { // begins with it; named by what is behind it
    QTest::mouseClick(&canvas, Qt::LeftButton, {}, canvas.onCanvas(word->box).center().toPoint());
    ASSERT_TRUE(waitUntil([] { return QApplication::activePopupWidget() != nullptr; }));
    QTest::keyClick(QApplication::activePopupWidget(), letter);
  }
  EXPECT_EQ(control<QLineEdit>(&main(), "FINDSTRING")->text(), QStringLiteral("Account:"));
  EXPECT_EQ(control<QComboBox>(&main(), "EXTRACT")->currentIndex(), 1);

  main().activateWindow();
  EXPECT_TRUE(waitUntil([this] { return main().isActiveWindow(); }));
  QTest::keyClick(&main(), Qt::Key_F7);
  EXPECT_TRUE(waitUntil([this] { return plannedOutputs() == 12; }));
  EXPECT_TRUE(control<QLabel>(&main(), "planSummary")->text().contains("40 page"));
  EXPECT_FALSE(QFile::exists(at("out")));
  click(&main(), "processButton");
  // One file for each of the sample's twelve accounts, and the person sees where they are.
  const QStringList names = test::filesBelow(at("out"));
  ASSERT_EQ(names.size(), 12) << names.join(u' ').toStdString();
  EXPECT_EQ(names.filter(QStringLiteral(".pdf")).size(), names.size());
  auto* end = static_cast<EndPanel*>(control<QWidget>(&main(), "endPanel"));
  EXPECT_TRUE(end->isVisible() && !end->isWarning());
  EXPECT_TRUE(hasText(end, "Done! - 12 PDF file(s) output"));
  click(end, "endViewReport");
  ASSERT_EQ(m_dialogs.opened.size(), 1);
  EXPECT_TRUE(test::contentOf(m_dialogs.opened[0]).contains(names[0].toUtf8()));
}

/// Nobody waits for hours unasked, and the plan says what it waits for.
TEST_F(FirstStart, AScanIsRecognisedWhenItIsWanted) {
  const QByteArray temporary = qgetenv("TMPDIR");
  QDir(m_folder.path()).mkdir("tmp");
  qputenv("TMPDIR", at("tmp").toLocal8Bit());
  qputenv("PATH", FOLIVEX_BIN_DIR ":" + qgetenv("PATH"));
  qputenv("OMP_THREAD_LIMIT", "1"); // threads that spin take minutes on a busy machine
  ASSERT_EQ(test::runProgram("/usr/bin/python3",
                             {FOLIVEX_SOURCE_DIR "/tests/scanlite/make_scan.py",
                              FOLIVEX_SOURCE_DIR "/samples/statements.pdf", at("scan.pdf"), "1"})
                .exitCode,
            0);
  SplitSetup setup = defaultSetup();
  setup.fileName = at("scan.pdf");
  setup.findString = QStringLiteral("Account:");
  setup.ocrFirst = true;
  main().program().store().edited() = main().program().store().working() = setup;
  main().refresh();
  const auto* offer = control<QAbstractButton>(&main(), "planOffer1");
  ASSERT_TRUE(waitUntil([&] { return offer->isVisible() && offer->text() == "Recognise now"; }));
  click(&main(), "planOffer1");
  const auto* process = control<QAbstractButton>(&main(), "processButton");
  EXPECT_TRUE(waitUntil([&] { return process->text().contains("1 file(s)"); }))
      << control<QLabel>(&main(), "planOfferText")->text().toStdString();
  EXPECT_FALSE(offer->isVisible());
  qputenv("TMPDIR", temporary);
}

/// The windows go in an order in which none misses another: with all of them open, and in a walk.
TEST_F(FirstSplit, EveryWindowOpensAndTheProgramEndsWithAllOfThem) {
  typeInto(&main(), "FINDSTRING", QStringLiteral("Account:"));
  for (const char* action : {"prepareList", "openHelp", "plan"}) {
    trigger(action);
  }
  EXPECT_NE(opened<CBatchList>(), nullptr);
  EXPECT_TRUE(waitUntil([this] { return plannedOutputs() == 12; }));
  QTimer next;
  int matches = 0;
  next.callOnTimeout([&] {
    auto* button = control<QWidget>(&main(), ++matches < 3 ? "nextMatch" : "stopMatches");
    if (button->isEnabled()) {
      QTest::mouseClick(button, Qt::LeftButton);
    }
  });
  next.start(20);
  trigger("show");
  next.stop();
  EXPECT_GE(matches, 3);
  EXPECT_TRUE(main().program().driver().state().matchesShown >= 1);
}

} // namespace folivex::testing
