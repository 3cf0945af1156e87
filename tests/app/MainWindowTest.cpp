// The main window as a person uses it: what can be chosen, what it says about wrong input, runs.
#include "app/viewer/PagePane.h"
#include "batch/BatchEntries.h"
#include "tests/app/MainWindowBench.h"
#include "tests/support/Rows.h"

#include <QMenu>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>

namespace folivex::testing {
namespace {

class MainWindowTest : public MainWindowBench {
protected:
  QString notes() { return control<QPlainTextEdit>(m_window.get(), "notes")->toPlainText(); }
  QString statusLine() { return control<QLabel>(m_window.get(), "statusLine")->text(); }
  /// What the panel at the end of a run says.
  QString endText() {
    QString all;
    for (const auto* label :
         control<QWidget>(m_window.get(), "endPanel")->findChildren<QLabel*>()) {
      all += label->text() + u'\n';
    }
    return all;
  }
  QString findings() {
    return control<QPlainTextEdit>(m_window.get(), "endFindings")->toPlainText();
  }
  QStringList outputs() const { return test::filesBelow(at("out")); }
};

TEST_F(MainWindowTest, ChoicesDisableWhatTheyMakeIdle) {
  open();
  const auto labels = m_window->findChildren<QLabel*>();
  const auto label = std::find_if(labels.begin(), labels.end(), [&](const QLabel* one) {
    return one->buddy() == control<QWidget>(m_window.get(), "MATCHPOSV");
  });
  ASSERT_NE(label, labels.end());
  EXPECT_FALSE(isEnabled("MATCHPOSV") || (*label)->isEnabled());
  choose("PAGEEXTRACT", splitMethodTexts()[5]);
  EXPECT_TRUE(isEnabled("MATCHPOSV") && (*label)->isEnabled() && isEnabled("EXTRACTUNTIL"));

  choose("EXTRACT", fileNameMethodTexts()[3]);
  choose("PAGEEXTRACT", splitMethodTexts()[9]);
  EXPECT_FALSE(isEnabled("FINDSTRING") || isEnabled("MATCHPOSH") || isEnabled("EXTRACT"));
  EXPECT_EQ(m_window->currentSetup().extract, bookmarkFileNameMethodText());
  choose("PAGEEXTRACT", splitMethodTexts()[0]);
  EXPECT_TRUE(isEnabled("FINDSTRING") && isEnabled("EXTRACT"));
  EXPECT_EQ(m_window->currentSetup().extract, fileNameMethodTexts()[3]);

  click(m_window.get(), "SPLITTOSOURCE");
  EXPECT_FALSE(isEnabled("OUTPUTDIR") || isEnabled("browseOutput"));
  click(m_window.get(), "USESOURCEFILENAME");
  EXPECT_FALSE(isEnabled("PREFIXFILENAME") || isEnabled("prefixTokens"));

  SplitSetup& edited = m_window->program().store().edited();
  for (const bool appends : {false, true}) {
    click(m_window.get(), appends ? "ALWAYSAPPEND" : "ALWAYSOVERWRITE");
    EXPECT_EQ(m_window->currentSetup().alwaysAppend, appends);
    EXPECT_EQ(m_window->currentSetup().alwaysOverwrite, !appends);
  }
  // A setup file may have both: showing it changes nothing.
  edited.alwaysOverwrite = edited.alwaysAppend = true;
  m_window->refresh();
  EXPECT_TRUE(m_window->currentSetup().alwaysOverwrite && m_window->currentSetup().alwaysAppend);
}

TEST_F(MainWindowTest, CommandsWithoutTheirPartAreDisabled) {
  open();
  for (const char* action : {"processList", "prepareList", "loadEmailList", "updateCheck",
                             "openHelp", "problemReport"}) {
    EXPECT_FALSE(isAvailable(action)) << action;
  }
  EXPECT_TRUE(isAvailable("process") && isAvailable("plan") && isAvailable("about"));
  EXPECT_FALSE(isAvailable("stopRun"));
  QStringList opened;
  WindowParts parts;
  parts.prepareList = [&] { opened += "list"; };
  parts.openHelp = [&](const QString& topic) { opened += topic; };
  m_window->setParts(parts);
  trigger("prepareList");
  control<QLineEdit>(m_window.get(), "PREFIXFILENAME")->setFocus();
  trigger("openHelp");
  EXPECT_EQ(opened, QStringList({"list", "names"}));
}

TEST_F(MainWindowTest, WrongInputIsToldAtItsFieldAndNothingRuns) {
  writeSource(1);
  test::forEachRow("app/wrong-input.json", [this](const SplitSetup&, const QStringList& row) {
    const QByteArray key = row[0].toLatin1();
    MainWindow& window = open();
    choose("PAGEEXTRACT", splitMethodTexts()[2]);
    typeInto(&window, "MATCHPOSH", "60");
    typeInto(&window, "MATCHPOSV", "60");
    typeInto(&window, key, QString(row[1]).replace("FOLDER", m_folder.path()));
    EXPECT_EQ(problemAt(&window, row[0]), QString()) << "not while it is typed";
    click(&window, "processButton");
    EXPECT_TRUE(problemAt(&window, row[0]).contains(row[2]))
        << problemAt(&window, row[0]).toStdString();
    EXPECT_EQ(window.focusWidget(), control<QWidget>(&window, key));
    EXPECT_FALSE(QFile::exists(at("out")));
  });
  // It goes with the fault.
  typeInto(m_window.get(), "OUTPUTDIR", at("out"));
  EXPECT_EQ(problemAt(m_window.get(), "OUTPUTDIR"), QString());
  EXPECT_TRUE(m_dialogs.messages.isEmpty());
  // A search for nothing is warned of while it is typed, and no more.
  typeInto(m_window.get(), "FINDSTRING", "");
  EXPECT_EQ(problemAt(m_window.get(), "FINDSTRING"), QString());
  choose("PAGEEXTRACT", splitMethodTexts()[0]);
  EXPECT_TRUE(problemAt(m_window.get(), "FINDSTRING").contains("every word"));
  click(m_window.get(), "processButton");
  EXPECT_FALSE(outputs().isEmpty());
  typeInto(m_window.get(), "FINDSTRING", "account:");
  click(m_window.get(), "processButton");
  EXPECT_TRUE(endText().contains("no matches"));
  const auto* found = control<QPlainTextEdit>(m_window.get(), "endFindings");
  EXPECT_TRUE(found->toPlainText().contains("Account:")); // how near it was
  // Of several, the first in the window's order gets the cursor.
  typeInto(m_window.get(), "OFFSETFIRST", "x");
  typeInto(m_window.get(), "STARTENDPAGE", "y");
  click(m_window.get(), "processButton");
  EXPECT_EQ(m_window->focusWidget(), control<QWidget>(m_window.get(), "STARTENDPAGE"));
  EXPECT_FALSE(problemAt(m_window.get(), "OFFSETFIRST").isEmpty());
}

TEST_F(MainWindowTest, AWholeSplitByKeyboard) {
  writeSource(3);
  open();
  m_window->activateWindow();
  ASSERT_TRUE(waitUntil([this] { return m_window->isActiveWindow(); }));
  const auto press = [this](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(m_window->focusWidget(), key, modifiers);
  };
  const auto type = [&](Qt::Key letter, const QString& text) {
    press(letter, Qt::AltModifier);
    press(Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(m_window->focusWidget(), text);
  };
  typeInto(m_window.get(), "FILENAME", "");
  type(Qt::Key_N, at("in.pdf"));
  type(Qt::Key_W, "account:");
  press(Qt::Key_Tab);
  press(Qt::Key_Space); // ignore case
  press(Qt::Key_C, Qt::AltModifier);
  press(Qt::Key_Home); // matched word as filename
  press(Qt::Key_Down);
  press(Qt::Key_F5);
  EXPECT_EQ(outputs(), QStringList({"1001.pdf", "1002.pdf", "1003.pdf"}));
  EXPECT_TRUE(endText().contains("Done! - 3 PDF file(s) output"));
  click(m_window.get(), "endViewReport");
  EXPECT_EQ(m_dialogs.opened, QStringList(at("in.pdf") + "_report.txt"));
  EXPECT_TRUE(isEnabled("FINDSTRING") && isAvailable("process") && !isAvailable("stopRun"));
}

TEST_F(MainWindowTest, ARunIsEndedByStopOrByClosingAndNothingElseCanBeUsedMeanwhile) {
  constexpr int documents = 4000;
  writeSource(documents);
  const std::function<void()> ways[] = {[this] { click(m_window.get(), "stopButton"); },
                                        [this] {
                                          m_dialogs.answers = {false, true};
                                          m_window->close();
                                          m_window->close();
                                        }};
  for (const auto& stop : ways) {
    QDir(at("out")).removeRecursively();
    open();
    bool wasLocked = false;
    QTimer stopper;
    stopper.callOnTimeout([&] {
      if (control<QProgressBar>(m_window.get(), "progress")->value() > 2) {
        stopper.stop();
        wasLocked = !isEnabled("FINDSTRING") && !isAvailable("process") && !isAvailable("close") &&
                    !isAvailable("openEmailSettings") && isAvailable("stopRun");
        stop();
      }
    });
    stopper.start(0);
    m_dialogs.messages.clear();
    click(m_window.get(), "processButton");
    EXPECT_FALSE(stopper.isActive()) << "the run was over too soon";
    EXPECT_TRUE(wasLocked);
    EXPECT_EQ(m_dialogs.messages, QStringList());
    EXPECT_TRUE(endText().contains("Process Stopped!"));
    EXPECT_LT(outputs().size(), documents);
    EXPECT_TRUE(isEnabled("FINDSTRING") && isAvailable("process") && m_window->isVisible());
  }
}

TEST_F(MainWindowTest, SetupFilesAreSavedLoadedAndRemembered) {
  open();
  m_dialogs.files = {{at("march.fxs")}, {at("march.fxs")}, {at("missing.fxs")}, {at("no/a.fxs")}};
  m_dialogs.choices = {1, Dialogs::noChoice, 1}; // when changes of march.fxs would be lost
  typeInto(m_window.get(), "POSTFIXFILENAME", "_march");
  trigger("saveSetup");
  EXPECT_EQ(m_dialogs.requests.back().title, "Save fxs parameters file");
  EXPECT_EQ(m_dialogs.requests.back().defaultSuffix, "fxs");
  EXPECT_EQ(m_window->windowTitle(), "march.fxs[*] - Folivex");
  EXPECT_FALSE(m_window->isWindowModified());

  typeInto(m_window.get(), "POSTFIXFILENAME", "_april");
  EXPECT_TRUE(m_window->isWindowModified());
  trigger("loadSetup");
  EXPECT_EQ(m_dialogs.requests.back().title, "Load fxs parameters file");
  EXPECT_EQ(text("POSTFIXFILENAME"), "_march");
  trigger("loadSetup");
  trigger("saveSetup");
  EXPECT_EQ(text("POSTFIXFILENAME"), "_march");
  EXPECT_EQ(m_dialogs.messages,
            QStringList({at("march.fxs") + " saved.",
                         "file error! can't read parameters file: " + at("missing.fxs")}));
  EXPECT_TRUE(notes().contains("can't write parameters file"));

  typeInto(m_window.get(), "OFFSETFIRST", "x");
  trigger("saveSetup"); // asks for no file
  EXPECT_FALSE(problemAt(m_window.get(), "OFFSETFIRST").isEmpty());

  // The next start offers it.
  open();
  auto* recent = m_window->findChild<QMenu*>("recentSetups");
  ASSERT_EQ(recent->actions().size(), 1);
  recent->actions().first()->trigger();
  EXPECT_EQ(text("POSTFIXFILENAME"), "_march");

  // What was not saved is kept when the window closes, but for what is no value.
  typeInto(m_window.get(), "POSTFIXFILENAME", "_kept");
  typeInto(m_window.get(), "OFFSETFIRST", "x");
  m_window->close();
  EXPECT_TRUE(m_window->isVisible()) << "the question was left by Escape";
  m_window->close();
  EXPECT_FALSE(m_window->isVisible());
  m_window = std::make_unique<MainWindow>(m_dialogs, m_memory);
  m_window->start({});
  EXPECT_EQ(text("POSTFIXFILENAME"), "_kept");
  EXPECT_EQ(text("OFFSETFIRST"), "0");
}

TEST_F(MainWindowTest, WithoutLibrariesItCanBeLeftAndAsked) {
  WindowParts parts;
  parts.openHelp = [](const QString&) {};
  m_window = std::make_unique<MainWindow>(m_dialogs, m_memory);
  m_window->setParts(parts);
  m_window->show();
  for (const char* action : {"close", "openHelp", "about"}) {
    EXPECT_TRUE(isAvailable(action)) << action;
  }
  for (const char* action : {"process", "saveSetup", "stopRun", "openEmailSettings"}) {
    EXPECT_FALSE(isAvailable(action)) << action;
  }
  trigger("close");
  EXPECT_FALSE(m_window->isVisible());
}

TEST_F(MainWindowTest, AVeryShortRunAtTheStartLeavesTheKeyboardAndItsStatus) {
  writeSource(1);
  m_window = std::make_unique<MainWindow>(m_dialogs, m_memory);
  m_window->setParts({});
  m_window->show();
  // Before the window has been active for the first time.
  m_window->start(parseCommandLine({"folivex", "-f" + at("in.pdf")}));
  EXPECT_TRUE(waitUntil([this] { return m_window->isActiveWindow(); }));
  QWidget* focus = QApplication::focusWidget();
  ASSERT_NE(focus, nullptr);
  EXPECT_TRUE(focus->isEnabled());
  EXPECT_EQ(focus->window(), m_window.get());
  EXPECT_TRUE(statusLine().startsWith("Ready.")) << statusLine().toStdString();
  EXPECT_TRUE(control<QWidget>(m_window.get(), "endPanel")->isVisible());

  // Afterwards it is where it was.
  typeInto(m_window.get(), "FILENAME", at("in.pdf"));
  typeInto(m_window.get(), "OUTPUTDIR", at("out"));
  typeInto(m_window.get(), "FINDSTRING", "Account:");
  for (const char* name : {"FINDSTRING", "openPdfButton"}) {
    control<QWidget>(m_window.get(), name)->setFocus();
    QDir(at("out")).removeRecursively();
    trigger("process");
    EXPECT_EQ(m_window->focusWidget(), control<QWidget>(m_window.get(), name));
  }
  EXPECT_TRUE(control<QWidget>(m_window.get(), "endPanel")->isVisible());
  typeInto(m_window.get(), "POSTFIXFILENAME", "x");
  EXPECT_FALSE(control<QWidget>(m_window.get(), "endPanel")->isVisible());
}

TEST_F(MainWindowTest, DroppedFilesAreTaken) {
  writeSource(1);
  open();
  m_dialogs.files = {{at("a.FXS")}};
  typeInto(m_window.get(), "POSTFIXFILENAME", "_dropped");
  trigger("saveSetup");
  typeInto(m_window.get(), "POSTFIXFILENAME", "");
  // A drag is offered to what is under the pointer first: a field must not take it.
  EXPECT_FALSE(control<QLineEdit>(m_window.get(), "FINDSTRING")->acceptDrops());
  m_dialogs.choices = {1};
  EXPECT_TRUE(dropFiles(m_window.get(), {at("a.FXS")}));
  EXPECT_EQ(text("POSTFIXFILENAME"), "_dropped");
  typeInto(m_window.get(), "FINDSTRING", "typed before");
  QFile::copy(at("in.pdf"), at("other.PDF"));
  EXPECT_TRUE(dropFiles(m_window.get(), {at("letter.txt"), at("other.PDF"), at("third.pdf")}));
  EXPECT_EQ(text("FILENAME"), at("other.PDF"));
  EXPECT_EQ(text("FINDSTRING"), "typed before");
  EXPECT_TRUE(statusLine().contains("One file"));
  EXPECT_FALSE(dropFiles(m_window.get(), {at("letter.txt")}));
}

TEST_F(MainWindowTest, ASetupFromElsewhereOnlyWritesPdfsUntilItIsAllowedMore) {
  writeSource(1);
  open();
  SplitSetup& setup = m_window->program().store().edited();
  setup.configUseExternal = setup.emailEnable = setup.otherSettingsRemoveFiles = true;
  setup.configExternalCommand = "/opt/<b>splitter</b>";
  setup.emailInvoiceCc = "copies@example.com";
  m_window->refresh();
  m_dialogs.files = {{at("theirs.fxs")}};
  trigger("saveSetup");
  m_window->close();
  {
    QFile file(at("theirs.fxs"));
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write("AUTOMATION;1\r\n");
  }
  QFile::remove(at("tmp/Folivex.ini"));

  // As the desktop opens it: each time what it may do, and what the setup is then.
  const auto opened = [this] {
    m_window = std::make_unique<MainWindow>(m_dialogs, m_memory);
    m_window->start(parseCommandLine({"folivex", "--open", at("theirs.fxs")}));
    EXPECT_FALSE(m_window->program().store().automation()) << "a person is there";
    const SplitSetup is = m_window->currentSetup();
    EXPECT_EQ(text("FINDSTRING"), "Account:");
    EXPECT_TRUE(is.configUseExternal == is.emailEnable &&
                is.emailEnable == is.otherSettingsRemoveFiles);
    return is.emailEnable;
  };
  const auto asked = [this] { return m_dialogs.questions.size(); };
  const auto before = asked();
  m_dialogs.answers = {false, false, true};
  EXPECT_FALSE(opened());
  ASSERT_EQ(asked(), before + 1);
  for (const QString& told : {at("theirs.fxs"), QString("/opt/<b>splitter</b>"), at("out"),
                              QString("copies@example.com")}) {
    EXPECT_TRUE(m_dialogs.questions.last().contains(told)) << told.toStdString();
  }
  EXPECT_FALSE(m_window->program().store().working().configUseExternal);
  EXPECT_FALSE(opened());
  EXPECT_TRUE(opened());
  EXPECT_TRUE(opened());
  EXPECT_EQ(asked(), before + 3) << "allowed once";

  // The same name with other bytes is another setup.
  {
    QFile file(at("theirs.fxs"));
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write("EMAILINVOICECC;thief@example.com\r\n");
  }
  m_dialogs.answers = {false};
  EXPECT_FALSE(opened());
  EXPECT_FALSE(QFileInfo::exists(at("out"))) << "nothing is written";
}

TEST_F(MainWindowTest, ThePageShownIsListedAndTheFileShownIsSplitWhereThatIsAsked) {
  writeSource(3);
  open();
  auto* page = control<PagePane>(m_window.get(), "pageViewer");
  ASSERT_TRUE(waitUntil([page] { return page->pageCount() == 6; }));
  page->goToPage(5);
  trigger("listPage");
  ASSERT_EQ(m_dialogs.opened.size(), 1);
  EXPECT_TRUE(test::contentOf(m_dialogs.opened[0]).contains("1003"));

  typeInto(m_window.get(), "FILENAME", at("none.pdf"));
  click(m_window.get(), "USECURRENT");
  m_window->process();
  EXPECT_FALSE(problemAt(m_window.get(), "USECURRENT").isEmpty());
}

/// A plan that was shown, and a person who types, and a disk that changes in between.
TEST_F(MainWindowTest, WhatIsShownIsWhatIsMadeAndNothingIsReplacedUnasked) {
  writeSource(3);
  open();
  const auto isPlanned = [this](const QString& files) {
    return waitUntil(
        [&] { return control<QPushButton>(m_window.get(), "processButton")->text() == files; });
  };
  EXPECT_TRUE(isPlanned("&Process 3 file(s)"));
  typeInto(m_window.get(), "FINDSTRING", "more");
  EXPECT_EQ(control<QPushButton>(m_window.get(), "processButton")->text(), "&Process");
  trigger("process"); // at once: the plan of these settings is waited for, and shown
  EXPECT_TRUE(endText().contains("Done! - "));
  EXPECT_FALSE(outputs().contains("1001.pdf")) << "which the plan before would have made";

  // Another program makes a file of the same name between plan and Process.
  QDir(at("out")).removeRecursively();
  typeInto(m_window.get(), "FINDSTRING", "Account:");
  click(m_window.get(), "ALWAYSOVERWRITE");
  EXPECT_TRUE(isPlanned("&Process 3 file(s)"));
  QDir().mkpath(at("out"));
  QFile::copy(at("in.pdf"), at("out/1002.pdf"));
  const QByteArray there = test::contentOf(at("out/1002.pdf"));
  m_dialogs.choices = {Dialogs::noChoice};
  trigger("process");
  EXPECT_TRUE(m_dialogs.questions.back().contains("no longer what was shown"));
  EXPECT_EQ(outputs(), QStringList("1002.pdf"));
  m_dialogs.choices = {Dialogs::noChoice};
  trigger("process");
  EXPECT_TRUE(m_dialogs.questions.back().startsWith("1 file(s)"));
  EXPECT_EQ(outputs(), QStringList("1002.pdf"));
  m_dialogs.choices = {0}; // keep all
  trigger("process");
  EXPECT_EQ(test::contentOf(at("out/1002.pdf")), there);
  EXPECT_EQ(outputs().size(), 4);
  trigger("undo");
  EXPECT_TRUE(m_window->currentSetup().alwaysOverwrite);
}

TEST_F(MainWindowTest, WithoutAMatchTheNearestWordIsAButton) {
  writeSource(2);
  open();
  typeInto(m_window.get(), "FINDSTRING", "account:");
  QPushButton* offer = nullptr;
  ASSERT_TRUE(waitUntil([&] {
    offer = m_window->findChild<QPushButton*>("planOffer1");
    return offer != nullptr && offer->isVisible();
  }));
  QTest::mouseClick(offer, Qt::LeftButton);
  EXPECT_EQ(text("FINDSTRING"), "Account:");
  trigger("undo");
  EXPECT_EQ(text("FINDSTRING"), "account:");
}

TEST_F(MainWindowTest, WhatIsSaidGoesWithItsReasonAndASetupForAnyFileKeepsTheFile) {
  writeSource(1);
  open();
  m_dialogs.files = {{at("any.fxs")}, {at("any.fxs")}};
  typeInto(m_window.get(), "FILENAME", "");
  trigger("process");
  EXPECT_EQ(statusLine(), "Something has to be set right first.");
  trigger("saveSetup");
  typeInto(m_window.get(), "FILENAME", at("gone.pdf"));
  const auto* page = control<QLabel>(m_window.get(), "viewerState");
  EXPECT_TRUE(waitUntil([page] { return page->text().contains("gone.pdf: is not there"); }));
  EXPECT_TRUE(control<QWidget>(m_window.get(), "openFromPage")->isVisible());
  typeInto(m_window.get(), "FILENAME", at("in.pdf"));
  EXPECT_EQ(statusLine().contains("set right"), false);
  trigger("loadSetup");
  EXPECT_EQ(text("FILENAME"), at("in.pdf"));
  QTest::keyClick(m_window.get(), Qt::Key_Escape);
  EXPECT_TRUE(m_window->isVisible());
}

TEST_F(MainWindowTest, AListIsProcessedWithoutASource) {
  writeSource(2);
  BatchEntries rows;
  rows.append({newEntry(at("in.pdf")), newEntry(at("missing.pdf"))});
  BatchRows* prepared = nullptr;
  QList<bool> runs;
  WindowParts parts;
  parts.batchRows = [&] { return prepared; };
  parts.batchRunning = [&](bool running) { runs += running; };
  open(parts);
  typeInto(m_window.get(), "FILENAME", "");
  trigger("processList");
  EXPECT_EQ(m_dialogs.messages, QStringList("You must prepare a list first or load one"));
  m_dialogs.messages.clear();
  prepared = &rows;
  trigger("processList");
  EXPECT_EQ(rows.at(0).status + '|' + rows.at(1).status, "Done|file error");
  EXPECT_EQ(m_dialogs.messages, QStringList());
  EXPECT_TRUE(endText().contains("Done!\n1 files processed")) << endText().toStdString();
  EXPECT_TRUE(endText().contains("4 of 4 pages are in a file."));
  EXPECT_TRUE(endText().contains("Warning")) << "one of the list was not there";
  EXPECT_EQ(outputs(), QStringList({"1001.pdf", "1002.pdf"}));
  EXPECT_EQ(runs, QList<bool>({true, false}));
}

/// Three sources, each of which is read first and written behind its last page.
TEST_F(MainWindowTest, ProgressRunsOnceOverTheWholeJob) {
  writeSource(5);
  BatchEntries rows;
  for (const char* name : {"1.pdf", "2.pdf", "3.pdf"}) {
    QFile::copy(at("in.pdf"), at(name));
    rows.append({newEntry(at(name))});
  }
  WindowParts parts;
  parts.batchRows = [&] { return &rows; };
  open(parts);
  click(m_window.get(), "SPLITTOSOURCE");
  click(m_window.get(), "ALWAYSAPPEND");
  auto* bar = control<QProgressBar>(m_window.get(), "progress");
  QList<int> values;
  QObject::connect(bar, &QProgressBar::valueChanged, bar, [&](int value) {
    if (m_window->findChild<QPushButton*>("stopButton")->isVisible() && value >= 0) {
      values += value;
    }
  });
  trigger("processList");
  ASSERT_GT(values.size(), 20);
  EXPECT_TRUE(std::is_sorted(values.begin(), values.end()));
  EXPECT_LT(values.first(), bar->maximum() / 20);
  EXPECT_GT(values.last(), bar->maximum() * 9 / 10);
}

/// In automation mode nobody is there to answer: what is to be confirmed is saved, and noted.
TEST_F(MainWindowTest, InAutomationModeMailsAreNobodysBusiness) {
  test::TextPdf pdf;
  pdf.page({"Account: 1001 anna@example.org"});
  pdf.page({"Account: 1002"});
  pdf.write(at("in.pdf"));
  BatchEntries rows;
  rows.append({newEntry(at("in.pdf")), newEntry(at("missing.pdf"))});
  int windows = 0;
  WindowParts parts;
  parts.batchRows = [&] { return &rows; };
  parts.mailOutputs = parts.mailBatchSource = [&](JobDriver&, const SplitSetup&) { ++windows; };
  parts.mailBatchEnd = [] {};
  open(parts);
  m_window->program().store().setUnattended(true);
  m_window->program().driver().setAutomation(true);
  SplitSetup& setup = m_window->program().store().edited();
  setup.emailEnable = setup.emailConfirm = true;
  setup.emailSmtp = "127.0.0.1:1";
  setup.emailFrom = "office@example.org";
  setup.reportOptionsTxt = false;
  m_window->refresh();
  for (const char* command : {"process", "processList"}) {
    QDir(at("out")).removeRecursively();
    trigger(command);
    EXPECT_EQ(outputs().filter(QRegularExpression("^in\\.pdf_emails_[0-9_]+\\.lst$")).size(), 1)
        << outputs().join(u' ').toStdString();
    const QString told = findings();
    EXPECT_EQ(told.count("1 of 2 outputs have no e-mail address"), 1) << told.toStdString();
    EXPECT_EQ(told.count("1 e-mail not sent: sending is to be confirmed"), 1);
  }
  EXPECT_EQ(windows, 0);
  EXPECT_EQ(m_dialogs.messages.filter("mail"), QStringList());
}

} // namespace
} // namespace folivex::testing
