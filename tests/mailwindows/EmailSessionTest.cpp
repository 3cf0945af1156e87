// From outputs and lists to mails at a real server, through the windows.
#include "mail/windows/EmailSession.h"
#include "mail/EmailListFile.h"
#include "mail/windows/CEmailListDlg.h"
#include "mail/windows/RunSendTest.h"
#include "tests/mailwindows/MailWindows.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

namespace folivex::testing {
namespace {

using test::MailServerProcess;

class MailSession : public MailWindows {
protected:
  MailSession() { setup.emailSmtp = server.text(); }

  /// Outputs that exist, "1.pdf" and so on.
  FinishedRun run(const QStringList& addresses, const QString& source = "in.pdf") {
    FinishedRun made{at(source), {}};
    for (const QString& address : addresses) {
      const int number = ++m_number;
      const QString name = QStringLiteral("%1.pdf").arg(number);
      write(name, "%PDF of " + address.toUtf8());
      made.outputs.push_back(
          {at(name), number, number, {}, address, {}, platform::FileDigest::of(at(name))});
    }
    return made;
  }
  /// A list file of outputs, which the person will choose.
  void haveList(const QStringList& addresses, const QString& name = "list.lst") {
    EmailList list;
    list.fill(run(addresses).outputs);
    EXPECT_TRUE(saveEmailList(list, at(name)).ok);
    dialogs.files = {{at(name)}};
  }
  QString linesOf(QDialog* findings) {
    return control<QPlainTextEdit>(findings, "lines")->toPlainText();
  }
  qsizetype logged() const {
    return QFile::exists(at("emails_log.txt")) ? read("emails_log.txt").count(" OK\r") : 0;
  }

  MailServerProcess server{{"code-at-recipient", "550", "bad"}};
  QStringList notes;
  std::function<bool()> stop = [] { return false; };
  EmailSession session{{dialogs, nullptr, [this](const QString& text) { notes += text; },
                        [this] { return stop(); }}};
  DialogScript script;

private:
  int m_number = 0;
};

TEST_F(MailSession, ShowsTheListOfARunAndSendsIt) {
  script
      .then("CEmailListDlg",
            [this](QDialog* list) {
              EXPECT_TRUE(control<QLabel>(list, "notice")->text().startsWith("1 of 4 outputs"));
              EXPECT_EQ(shownIn(list, EmailColumn::Subject), QStringList(3, "Statement"));
              tableOf(list)->selectRow(1);
              dialogs.choices = {0};    // selected only
              dialogs.answers = {true}; // back to the list
              seeing({"a@x.example", "b@x.example", "c@x.example"}, "send")(list);
            })
      .then("CEmailListDlg", [](QDialog* list) {
        EXPECT_FALSE(control<QAction>(list, "undo")->isEnabled()) << "what went out comes back";
        seeing({"a@x.example", "c@x.example"}, "send")(list);
      });
  session.afterRun(setup, run({"a@x.example", "b@x.example", "", "c@x.example"}));
  EXPECT_EQ(dialogs.messages,
            QStringList({"(1) Emails sent ok: 1, errors: 0", "(2) Emails sent ok: 2, errors: 0"}));
  EXPECT_EQ(server.taken(), QStringList({"b@x.example", "a@x.example", "c@x.example"}));
  EXPECT_EQ(read("in.pdf_email_report.csv").count(",OK\r"), 3);
}

TEST_F(MailSession, NothingIsSentThatNobodyWantsSent) {
  script.then("CEmailListDlg", pressing("cancel"));
  session.afterRun(setup, run({"a@x.example"}));
  session.afterRun(setup, run({"", ""}));
  session.afterSourceOfBatch(setup, run({""}));
  session.afterBatch();
  setup.emailEnable = false;
  session.afterRun(setup, run({"a@x.example"}));
  session.afterSourceOfBatch(setup, run({"a@x.example"}));
  setup.emailEnable = true;
  setup.emailConfirm = false;
  setup.emailFrom = "nobody"; // found out before a server is asked; the list is not lost
  script.then("CEmailListDlg", seeing({"a@x.example"}, "cancel"));
  session.afterRun(setup, run({"a@x.example"}));
  EXPECT_EQ(server.mails().size(), 0U);
  const QString nothing = "None of the outputs has an e-mail address on its pages: there is "
                          "nothing to send.";
  EXPECT_EQ(dialogs.messages,
            QStringList({nothing, nothing, "No e-mail was sent: The From address has no \"@\"."}));
}

/// The address is put right in the list; what arrived, or was not asked for, stays out of it.
TEST_F(MailSession, WhatFailedIsSentAgain) {
  script
      .then("CEmailListDlg",
            [this](QDialog* list) {
              tableOf(list)->selectRow(1);
              QTest::keyClick(tableOf(list), Qt::Key_Down, Qt::ShiftModifier);
              dialogs.choices = {0};
              click(list, "send");
            })
      .then("CFindingsDlg",
            [this](QDialog* findings) {
              EXPECT_TRUE(linesOf(findings).startsWith("1 e-mail failed:\n    bad@x.example, " +
                                                       at("2.pdf") + ": "))
                  << linesOf(findings).toStdString();
              click(findings, "accept");
            })
      .then("CEmailListDlg",
            [](QDialog* list) {
              EXPECT_EQ(shownIn(list), QStringList("bad@x.example"));
              tableOf(list)->selectRow(0);
              QTest::keyClick(tableOf(list), Qt::Key_F2);
            })
      .then("CChangeEmailDlg",
            [](QDialog* change) {
              typeInto(change, "address", "good@x.example");
              click(change, "ok");
            })
      .then("CEmailListDlg", [this](QDialog* list) {
        dialogs.choices = {0};
        click(list, "send");
      });
  session.afterRun(setup, run({"a@x.example", "bad@x.example", "c@x.example"}));
  EXPECT_EQ(dialogs.messages,
            QStringList({"(2) Emails sent ok: 1, errors: 1", "(1) Emails sent ok: 1, errors: 0"}));
  EXPECT_EQ(server.taken(), QStringList({"c@x.example", "good@x.example"}));
  // One report tells both goes.
  EXPECT_EQ(read("in.pdf_email_report.csv").count(",OK\r"), 2);
  EXPECT_EQ(read("in.pdf_email_report.csv").count(",Error - "), 1);
}

TEST_F(MailSession, WhatMayHaveArrivedIsToldApartAndNeverSentAgain) {
  server.become({"close-unanswered"});
  script
      .then("CEmailListDlg",
            [this](QDialog* list) {
              tableOf(list)->selectRow(0);
              dialogs.choices = {0};    // selected only
              dialogs.answers = {true}; // back to the list
              click(list, "send");
            })
      .then("CFindingsDlg",
            [this](QDialog* findings) {
              EXPECT_TRUE(linesOf(findings).startsWith("1 e-mail may have arrived"));
              EXPECT_FALSE(control<QWidget>(findings, "accept")->isEnabled());
              click(findings, "close");
            })
      .then("CEmailListDlg", seeing({"b@x.example"}, "cancel"));
  session.afterRun(setup, run({"a@x.example", "b@x.example"}));
  EXPECT_EQ(server.mails().size(), 1U);
  EXPECT_TRUE(
      dialogs.messages.value(0).startsWith("(1) Emails sent ok: 0, errors: 1\n\n1 may have"));
}

TEST_F(MailSession, StopKeepsWhatWasNotReached) {
  setup.emailConfirm = false;
  const auto kept = [this] {
    return QDir(folder.path()).entryList({"in.pdf_emails_sending_*.lst"});
  };
  stop = [&] {
    EXPECT_TRUE(logged() == 0 || kept().size() == 1) << "a dying program would lose the list";
    return logged() == 2;
  };
  script
      .then("CFindingsDlg",
            [&](QDialog* findings) {
              EXPECT_EQ(linesOf(findings), "2 e-mails not tried: the run was stopped.");
              EXPECT_EQ(kept().size(), 1) << "lost before the person has decided";
              stop = [] { return false; };
              click(findings, "accept");
            })
      .then("CEmailListDlg", seeing({"c@x.example", "d@x.example"}, "send"));
  const QStringList all = {"a@x.example", "b@x.example", "c@x.example", "d@x.example"};
  session.afterRun(setup, run(all));
  EXPECT_EQ(kept(), QStringList());
  EXPECT_EQ(server.taken(), all);
}

/// The program keeps the stop of a run until the next one begins.
TEST_F(MailSession, AStopOfAnEarlierRunStopsNoSending) {
  stop = [] { return true; };
  haveList({"a@x.example"});
  script.then("CEmailListDlg", seeing({"a@x.example"}, "send"));
  session.loadEmailList(setup);
  session.afterSourceOfBatch(setup, run({"b@x.example"}));
  script.then("CEmailListDlg", pressing("send"));
  session.afterBatch();
  EXPECT_EQ(dialogs.messages, QStringList(2, "(1) Emails sent ok: 1, errors: 0"));
  EXPECT_EQ(server.taken(), QStringList({"a@x.example", "b@x.example"}));
}

/// A pause stands before the first mail too.
TEST_F(MailSession, TheStopButtonEndsAPauseAtOnce) {
  setup.emailConfirm = false;
  setup.emailPause = 3'600'000;
  script
      .then("CEmailStatusDlg",
            [this](QDialog* status) {
              EXPECT_EQ(control<QLabel>(status, "count")->text(), "0 of 1");
              session.afterRun(setup, {}); // the one at work is not disturbed
              click(status, "stop");
            })
      .then("CFindingsDlg", pressing("close"));
  session.afterRun(setup, run({"a@x.example", ""}));
  EXPECT_EQ(notes.filter("1 of 2 outputs have no e-mail address").size(), 1);
  EXPECT_TRUE(
      dialogs.messages.value(0).startsWith("(0) Emails sent ok: 0, errors: 0\n\n1 were not sent"))
      << dialogs.messages.value(0).toStdString();
}

/// The list of a run that broke off is loaded again; the journal beside it says how far it came,
/// whatever became of the log.
TEST_F(MailSession, GoesOnWhereAnEarlierRunBrokeOff) {
  const QStringList all = {"a@x.example", "b@x.example", "c@x.example"};
  haveList(all);
  const auto sendLoaded = [&](int answer) {
    server.become({"none"});
    QFile::remove(at("emails_log.txt"));
    dialogs.files = {{at("list.lst")}};
    dialogs.choices = {answer};
    script.then("CEmailListDlg", [&](QDialog* list) {
      EXPECT_TRUE(waitUntil([&] { return shownIn(list) == all; }));
      if (answer == Dialogs::noChoice) {
        script.then("CEmailListDlg", pressing("cancel")); // the same list, shown again
      }
      click(list, "send");
    });
    session.loadEmailList(setup);
    return server.taken();
  };
  script.then("CEmailListDlg", [&](QDialog* list) {
    script.then("CFindingsDlg", pressing("close"));
    seeing(all, "send")(list);
  });
  stop = [this] { return logged() == 2; };
  session.loadEmailList(setup);
  stop = [] { return false; };
  EXPECT_EQ(server.taken(), all.first(2));
  EXPECT_EQ(sendLoaded(Dialogs::noChoice), QStringList());
  EXPECT_EQ(sendLoaded(0), all.last(1));
  EXPECT_TRUE(dialogs.questions.value(0).startsWith("2 e-mails of this list went out before"));
  EXPECT_EQ(sendLoaded(1), all);
}

/// Without the journal nobody knows how far it came, nor what the files were.
TEST_F(MailSession, AListWithoutAJournalIsNotSentUnasked) {
  haveList({"a@x.example"});
  QFile::remove(SendJournal::pathBeside(at("list.lst")));
  dialogs.choices = {Dialogs::noChoice, 0};
  script.then("CEmailListDlg", [](QDialog* list) {
    EXPECT_TRUE(waitUntil([list] { return shownIn(list).size() == 1; }));
    click(list, "send");
    EXPECT_TRUE(list->isVisible());
    click(list, "send");
  });
  session.loadEmailList(setup);
  EXPECT_TRUE(dialogs.questions.value(0).startsWith("Of 1 e-mail nothing tells"));
  EXPECT_EQ(server.taken(), QStringList("a@x.example"));
}

/// After the list was made somebody else's pages came to lie at the path: they are held back, and
/// sent once a person has accepted them.
TEST_F(MailSession, AFileOfTheNextRunIsNotSentWithTheListOfTheLast) {
  haveList({"a@x.example", "b@x.example"});
  write("1.pdf", "%PDF of the next run");
  const auto sendBoth = seeing({"a@x.example", "b@x.example"}, "send");
  script.then("CEmailListDlg", sendBoth)
      .then("CFindingsDlg",
            [this](QDialog* findings) {
              EXPECT_TRUE(linesOf(findings).contains("has changed since it was written"));
              click(findings, "accept");
            })
      .then("CEmailListDlg", [this](QDialog* list) {
        const QString warned = at("1.pdf") + "  (changed since written)";
        EXPECT_TRUE(
            waitUntil([&] { return shownIn(list, EmailColumn::File) == QStringList(warned); }));
        EXPECT_EQ(server.taken(), QStringList("b@x.example"));
        tableOf(list)->selectRow(0);
        click(list, "acceptFile");
        dialogs.choices = {0};
        click(list, "send");
      });
  session.loadEmailList(setup);
  EXPECT_EQ(server.taken(), QStringList({"b@x.example", "a@x.example"}));
}

/// A run of the same source died while it was mailed: before it is split anew the person is asked.
TEST_F(MailSession, ARunThatDiedIsGoneOnWith) {
  write("in.pdf", "%PDF source");
  setup.fileName = at("in.pdf");
  {
    EmailList all;
    all.fill(run({"a@x.example", "b@x.example"}).outputs);
    EmailEntries entries = all.entries();
    QString problem;
    bool isInWork = false;
    KeptLists dying;
    SendJournal* const journal = dying.keep(entries, setup, at("in.pdf"), problem, isInWork);
    ASSERT_NE(journal, nullptr) << problem.toStdString();
    EXPECT_TRUE(journal->begin(0, "a@x.example"));
  }
  dialogs.choices = {Dialogs::noChoice};
  EXPECT_TRUE(session.goOn(setup)) << "Cancel splits nothing";
  dialogs.choices = {1};
  EXPECT_FALSE(session.goOn(setup));
  dialogs.choices = {0, 0}; // go on; leave out what may have arrived
  script.then("CEmailListDlg", seeing({"a@x.example", "b@x.example"}, "send"))
      .then("CFindingsDlg", pressing("close"));
  EXPECT_TRUE(session.goOn(setup));
  EXPECT_EQ(server.taken(), QStringList("b@x.example"));
  setup.findString = "other:";
  EXPECT_FALSE(session.goOn(setup));
}

TEST_F(MailSession, ABatchWaitsForNobody) {
  // Sources to be confirmed are one list at the end ...
  session.afterSourceOfBatch(setup, run({"a@x.example", ""}, "1st.pdf"));
  session.afterSourceOfBatch(setup, run({"b@x.example"}, "2nd.pdf"));
  EXPECT_EQ(notes, QStringList());
  script.then("CEmailListDlg", seeing({"a@x.example", "b@x.example"}, "send"));
  session.afterBatch();
  EXPECT_EQ(dialogs.messages, QStringList("(2) Emails sent ok: 2, errors: 0"));
  EXPECT_EQ(read("1st.pdf_email_report.csv").count(",OK\r"), 1);
  EXPECT_EQ(read("2nd.pdf_email_report.csv").count(",OK\r"), 1);
  // ... the others go out at once, and only what failed is shown then.
  setup.emailConfirm = false;
  session.afterSourceOfBatch(setup, run({"c@x.example", "", "bad@x.example"}, "3rd.pdf"));
  EXPECT_TRUE(notes.value(0).startsWith("1 of 3 outputs have no e-mail address"));
  EXPECT_EQ(notes.value(1), "(2) Emails sent ok: 1, errors: 1");
  EXPECT_EQ(dialogs.messages.size(), 1);
  script.then("CEmailListDlg", seeing({"bad@x.example"}, "cancel"));
  session.afterBatch();
  session.afterBatch(); // nothing is left
  EXPECT_EQ(server.taken(), QStringList({"a@x.example", "b@x.example", "c@x.example"}));
}

/// One file of several sources of a batch: mail follows the pages that it holds at the end.
TEST_F(MailSession, AFileOfSeveralSourcesIsMailedOnceForThePagesItHolds) {
  const auto twoSources = [this](const QString& first, const QString& second) {
    for (const QString& address : {first, second}) {
      session.afterSourceOfBatch(
          setup, {at("in.pdf"),
                  {{at("1.pdf"), 1, 1, {}, address, {}, platform::FileDigest::of(at("1.pdf"))}}});
    }
  };
  struct Row {
    bool append;
    const char* first; ///< on the pages of each source
    const char* second;
    const char* listed;
  };
  for (const Row& row :
       {Row{true, "a@x.example", "", "a@x.example"}, Row{true, "", "b@x.example", "b@x.example"},
        Row{true, "a@x.example", "b@x.example", "a@x.example"},
        Row{false, "a@x.example", "b@x.example", "b@x.example"}}) {
    setup.alwaysAppend = row.append;
    setup.alwaysOverwrite = !row.append;
    twoSources(row.first, row.second);
    script.then("CEmailListDlg", seeing({row.listed}, "cancel"));
    session.afterBatch();
  }
  // What is not there any more at the end is not sent again either.
  write("1.pdf", "%PDF");
  setup.emailConfirm = false;
  twoSources("bad@x.example", "b@x.example");
  session.afterBatch();
  EXPECT_EQ(server.taken(), QStringList("b@x.example"));
}

TEST_F(MailSession, SendTestTellsHowItWentAndCanBeStopped) {
  setup.emailSmtp = "tls:x:y:z";
  runSendTest(setup, dialogs, nullptr);
  EXPECT_TRUE(dialogs.messages.value(0).startsWith("Error in configuration:"));
  EXPECT_EQ(dialogs.opened, QStringList(at("folivex_mail_error.txt")));
  server.become({"mute"});
  setup.emailSmtp = server.text();
  script.then("CMailWaitDlg", pressing("stop"));
  runSendTest(setup, dialogs, nullptr);
  EXPECT_EQ(dialogs.messages.last(), "The test was stopped.");
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

} // namespace
} // namespace folivex::testing
