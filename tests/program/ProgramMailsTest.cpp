// Mails of a run in the program's window.
#include "engine/setup/SplitSetup.h"
#include "tests/mail/MailServerProcess.h"
#include "tests/program/ProgramWindowsBench.h"
#include "tests/support/TextPdf.h"

#include <QLabel>
#include <QProgressBar>
#include <QTableView>

namespace folivex::testing {

class ProgramMails : public ProgramWindowsBench {
protected:
  /// Two outputs with an address each.
  void open(const QString& server, bool confirms) {
    test::TextPdf pdf;
    pdf.page({"Account: 1 anna@x.example"});
    pdf.page({"Account: 2 bert@x.example"});
    pdf.write(at("mail.pdf"));
    SplitSetup& setup = main().program().store().edited();
    setup = defaultSetup();
    setup.fileName = at("mail.pdf");
    setup.findString = "Account:";
    setup.outputDir = at("out");
    setup.emailEnable = true;
    setup.emailConfirm = confirms;
    setup.emailTest = false;
    setup.emailSmtp = server;
    setup.emailFrom = "office@example.org";
    setup.emailSubject = "Statement";
    setup.emailLogFile = at("log.txt");
    main().refresh();
  }
  bool isOffered(const char* button) { return control<QWidget>(&main(), button)->isVisible(); }
  QString facts() { return control<QLabel>(&main(), "endFacts")->text(); }
};

/// Who cancels the list of mails goes on where the run was begun.
TEST_F(ProgramMails, TheKeyboardIsBackAfterTheListOfMailsWasCancelled) {
  open("localhost:9", true);
  auto* begun = control<QWidget>(&main(), "FINDSTRING");
  main().activateWindow();
  EXPECT_TRUE(waitUntil([this] { return main().isActiveWindow(); }));
  begun->setFocus();
  DialogScript mails;
  mails.then("CEmailListDlg", [](QDialog* list) {
    EXPECT_TRUE(waitUntil([list] { return list->isActiveWindow(); }));
    QTest::keyClick(list, Qt::Key_Escape);
  });
  QTest::keyClick(&main(), Qt::Key_F5);
  EXPECT_TRUE(waitUntil([&] { return begun->hasFocus(); }))
      << (QApplication::focusWidget() != nullptr
              ? QApplication::focusWidget()->objectName().toStdString()
              : "nothing");
}

TEST_F(ProgramMails, MailsWhoseListWasCancelledWaitInThePanel) {
  test::MailServerProcess server;
  open(server.text(), true);
  DialogScript script;
  script.then("CEmailListDlg", [](QDialog* list) { list->reject(); });
  trigger("process");
  EXPECT_TRUE(isOffered("endShowList") && isOffered("endSendMails"));
  EXPECT_TRUE(facts().contains("2 mails are waiting to be sent.")) << facts().toStdString();
  // One of them goes out from the list that is shown again, and the person leaves the other.
  script
      .then("CEmailListDlg",
            [this](QDialog* list) {
              control<QTableView>(list, "list")->selectRow(1);
              m_dialogs.choices = {0};    // selected only
              m_dialogs.answers = {true}; // back to the list
              click(list, "send");
            })
      .then("CEmailListDlg", [](QDialog* list) { list->reject(); });
  click(&main(), "endShowList");
  EXPECT_EQ(server.taken(), QStringList("bert@x.example"));
  EXPECT_TRUE(facts().contains("1 mail is waiting to be sent.")) << facts().toStdString();
  for (const bool agrees : {false, true}) {
    m_dialogs.answers = {agrees};
    click(&main(), "endSendMails");
    EXPECT_EQ(server.taken().size(), agrees ? 2 : 1);
    EXPECT_EQ(isOffered("endSendMails"), !agrees);
  }
  EXPECT_EQ(server.taken().last(), "anna@x.example");
  EXPECT_FALSE(facts().contains("waiting"));
}

/// Sending is the last part of the one progress.
TEST_F(ProgramMails, ProgressGoesOnWhileMailsAreSent) {
  test::MailServerProcess server;
  open(server.text(), false);
  auto* bar = control<QProgressBar>(&main(), "progress");
  QList<int> values;
  QObject::connect(bar, &QProgressBar::valueChanged, bar, [&](int value) {
    if (control<QWidget>(&main(), "stopButton")->isVisible() && value >= 0) {
      values += value;
    }
  });
  trigger("process");
  EXPECT_EQ(server.taken().size(), 2);
  EXPECT_EQ(m_dialogs.messages, QStringList("(2) Emails sent ok: 2, errors: 0"));
  EXPECT_TRUE(std::is_sorted(values.begin(), values.end()));
  EXPECT_TRUE(values.contains(bar->maximum() / 2)) << "all is read";
  EXPECT_TRUE(values.contains(bar->maximum() * 3 / 4)) << "one of two is sent";
  EXPECT_EQ(values.value(values.size() - 1), bar->maximum());
}

} // namespace folivex::testing
