// The rules beside the page: what is seen of them, what they keep, and the way back.
#include "app/groups/RulesPane.h"
#include "app/SetupHistory.h"
#include "app/groups/SettingWords.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SplitMethod.h"
#include "tests/support/WindowBench.h"
#include "widgets/Foldout.h"
#include "widgets/WindowMemory.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace folivex::testing {
namespace {

class RulesPaneTest : public OwnFolder {
protected:
  RulesPaneTest() {
    m_setup.findString = QStringLiteral("Account:");
    m_setup.pageExtract = splitMethodTexts()[0];
    m_setup.extract = fileNameMethodTexts()[1];
    open();
  }
  ~RulesPaneTest() override { m_pane.reset(); }

  void open() {
    m_pane.reset();
    m_pane = std::make_unique<RulesPane>(m_dialogs, m_memory, nullptr);
    m_pane->setSetup(m_setup);
    m_pane->show();
  }
  SplitSetup taken() const {
    SplitSetup setup = m_setup;
    m_pane->take(setup);
    return setup;
  }
  bool isSeen(const char* key) { return control<QWidget>(m_pane.get(), key)->isVisible(); }
  Foldout& group(const char* name) {
    return *dynamic_cast<Foldout*>(control<QWidget>(m_pane.get(), name));
  }
  QString kept(const char* name) {
    const auto* label = control<QLabel>(&group(name), "kept");
    return label->isVisible() ? label->text() : QString();
  }
  void choose(const char* key, const QString& entry) {
    control<QComboBox>(m_pane.get(), key)->setCurrentText(entry);
  }

  ScriptedDialogs m_dialogs;
  WindowMemory m_memory{at("window.ini")};
  SplitSetup m_setup = defaultSetup();
  std::unique_ptr<RulesPane> m_pane;
};

TEST_F(RulesPaneTest, WhatMeansNothingIsNotSeenAndItsValueIsTold) {
  EXPECT_FALSE(isSeen("MATCHPOSH"));
  EXPECT_FALSE(isSeen("EXTRACTUNTIL"));
  EXPECT_EQ(kept("searchGroup"), "");
  choose("PAGEEXTRACT", splitMethodTexts()[5]);
  EXPECT_TRUE(isSeen("MATCHPOSH") && isSeen("EXTRACTUNTIL") && isSeen("UNTILMATCHPOSV"));
  typeInto(m_pane.get(), "MATCHPOSV", QStringLiteral("400"));
  typeInto(m_pane.get(), "EXTRACTUNTIL", QStringLiteral("Total"));
  choose("PAGEEXTRACT", splitMethodTexts()[0]);
  EXPECT_FALSE(isSeen("MATCHPOSV") || isSeen("EXTRACTUNTIL"));
  EXPECT_EQ(kept("searchGroup"),
            "Kept, but not used now: At Position v 400; Extract until word(s) Total");
  EXPECT_EQ(taken().extractUntil, "Total"); // a setup file would keep it, too
  choose("PAGEEXTRACT", splitMethodTexts()[7]);
  EXPECT_FALSE(isSeen("FINDSTRING"));
  EXPECT_TRUE(isSeen("EXTRACT")); // it says that bookmarks name the files
  EXPECT_TRUE(kept("searchGroup").contains("Find word(s) Account:"));
}

TEST_F(RulesPaneTest, FoldedGroupsSayWhatTheyHoldAndStayAsTheyWereLeft) {
  m_setup.startEndPage = 20;
  m_setup.pdfPassword = QStringLiteral("secret");
  open();
  auto* more = control<QToolButton>(m_pane.get(), "moreOfSourceTitle");
  EXPECT_FALSE(isSeen("STARTENDPAGE"));
  EXPECT_EQ(more->accessibleName(), "More, Password; Last page 20"); // and not which password
  more->setFocus();
  QTest::keyClick(more, Qt::Key_Return);
  EXPECT_TRUE(isSeen("STARTENDPAGE"));
  click(m_pane.get(), "searchGroupTitle");
  EXPECT_FALSE(isSeen("FINDSTRING"));
  m_pane->setEffect(RulesPart::Words, QStringLiteral("12 documents begin here"));
  EXPECT_TRUE(control<QLabel>(&group("searchGroup"), "effect")->isVisible());
  open();
  EXPECT_TRUE(isSeen("STARTENDPAGE"));
  EXPECT_FALSE(isSeen("FINDSTRING"));
  EXPECT_TRUE(control<QToolButton>(m_pane.get(), "searchGroupTitle")
                  ->accessibleName()
                  .endsWith("Find word(s) Account:"));
}

TEST_F(RulesPaneTest, AProblemUnfoldsTheGroupThatItStandsIn) {
  QFile(at("in.pdf")).open(QIODevice::WriteOnly);
  m_setup.fileName = at("in.pdf");
  m_setup.outputDir = at("out");
  open();
  EXPECT_TRUE(m_pane->check(SetupPurpose::Splitting));
  control<QLineEdit>(m_pane.get(), "TAKENWORDSFORFILENAME")->setText(QStringLiteral("many"));
  choose("EXTRACT", fileNameMethodTexts()[7]);
  EXPECT_FALSE(isSeen("TAKENWORDSFORFILENAME"));
  EXPECT_FALSE(m_pane->check(SetupPurpose::Splitting));
  EXPECT_TRUE(isSeen("TAKENWORDSFORFILENAME"));
  EXPECT_EQ(m_pane->focusWidget()->objectName(), "TAKENWORDSFORFILENAME");
}

TEST_F(RulesPaneTest, EachThingDoneIsOneStepBack) {
  SetupHistory history;
  m_pane->onEdited = [&](const RulesPane::Edit& edit) {
    history.push(edit.before, edit.after, edit.label, edit.field);
  };
  history.onRestore = [this](const SplitSetup& setup) { m_pane->setSetup(setup); };
  const SplitSetup first = taken();
  typeInto(m_pane.get(), "FINDSTRING", QStringLiteral("Customer"));
  EXPECT_EQ(history.stack().undoText(), "Find word(s)");
  EXPECT_EQ(history.stack().count(), 1);
  history.endStep(); // the cursor was elsewhere in between
  QTest::keyClicks(control<QLineEdit>(m_pane.get(), "FINDSTRING"), QStringLiteral(":"));
  choose("PAGEEXTRACT", splitMethodTexts()[7]); // names by bookmarks are the same step
  EXPECT_EQ(history.stack().count(), 3);
  const SplitSetup last = taken();
  history.stack().undo();
  EXPECT_EQ(control<QComboBox>(m_pane.get(), "EXTRACT")->currentText(), fileNameMethodTexts()[1]);
  history.stack().undo();
  EXPECT_EQ(taken().findString, "Customer");
  history.stack().undo();
  EXPECT_EQ(taken(), first);
  while (history.stack().canRedo()) {
    history.stack().redo();
  }
  EXPECT_EQ(taken(), last);
  history.stack().setIndex(0);
  typeInto(m_pane.get(), "FINDSTRING", QStringLiteral("Account:")); // as it was: no step
  EXPECT_FALSE(history.stack().canUndo());
}

TEST_F(RulesPaneTest, TheWindowsUndoIsNotTakenByAField) {
  QAction undo;
  undo.setShortcut(QKeySequence::Undo);
  int undone = 0;
  QObject::connect(&undo, &QAction::triggered, [&undone] { ++undone; });
  m_pane->addAction(&undo);
  m_pane->activateWindow();
  ASSERT_TRUE(waitUntil([this] { return m_pane->isActiveWindow(); }));
  typeInto(m_pane.get(), "FINDSTRING", QStringLiteral("abc"));
  QTest::keyClick(control<QLineEdit>(m_pane.get(), "FINDSTRING"), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(undone, 1);
  EXPECT_EQ(taken().findString, "abc");
}

TEST_F(RulesPaneTest, DialogsAreToldInALineAndOpenFromThere) {
  EXPECT_EQ(mailWords(m_setup), "Outputs are not mailed.");
  m_setup.emailFrom = QStringLiteral("a@example.com");
  EXPECT_EQ(mailWords(m_setup), "Off; its settings are kept.");
  m_setup.emailEnable = true;
  EXPECT_EQ(mailWords(m_setup), "A test: all mails go to a@example.com; you see the list first.");
  m_setup.emailTest = m_setup.emailConfirm = false;
  EXPECT_EQ(mailWords(m_setup),
            "Outputs are mailed to the addresses on their pages, without asking.");
  m_setup.otherSettingsRemoveFiles = true;
  EXPECT_EQ(otherWords(m_setup), "The files in the output folder are deleted first.");
  open();
  EXPECT_EQ(control<QLabel>(control<QWidget>(m_pane.get(), "otherGroup"), "words")->text(),
            otherWords(m_setup));
  std::vector<RulesPart> asked;
  m_pane->onDialogWanted = [&asked](RulesPart part) { asked.push_back(part); };
  click(m_pane.get(), "mailGroupChange");
  click(m_pane.get(), "commandGroupChange");
  EXPECT_EQ(asked, (std::vector{RulesPart::Mail, RulesPart::Command}));
}

} // namespace
} // namespace folivex::testing
