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
  FinishedRun run(const QStringList& addresses, const QString& source = "in.pdf") {
    FinishedRun made{at(source), {}};
    for (const QString& address : addresses) {
      made.outputs.push_back(output(++m_number, address));
    }
    return made;
  }
  QString linesOf(QDialog* findings) {
    return control<QPlainTextEdit>(findings, "lines")->toPlainText();
  }

  QStringList notes;
  std::function<bool()> stop = [] { return false; };
  EmailSession session{{dialogs, nullptr, [this](const QString& text) { notes += text; },
                        [this] { return stop(); }}};
  DialogScript script;

private:
  int m_number = 0;
};

TEST_F(MailSession, ShowsTheListOfARunAndSendsIt) {
  MailServerProcess server("smtp_server.py", {});
  setup.emailSmtp = server.text();
  script
      .then("CEmailListDlg",
            [this](QDialog* list) {
              EXPECT_EQ(shownIn(list), QStringList({"a@x.example", "b@x.example", "c@x.example"}));
              EXPECT_TRUE(control<QLabel>(list, "notice")->text().startsWith("1 of 4 outputs"));
              tableOf(list)->selectRow(1);
              dialogs.answers = {true, true}; // selected only; back to the list
              click(list, "send");
            })
      .then("CEmailListDlg", [](QDialog* list) {
        EXPECT_EQ(shownIn(list), QStringList({"a@x.example", "c@x.example"}));
        click(list, "send");
      });
  session.afterRun(setup, run({"a@x.example", "b@x.example", "", "c@x.example"}));
  EXPECT_EQ(dialogs.messages,
            QStringList({"(1) Emails sent ok: 1, errors: 0", "(2) Emails sent ok: 2, errors: 0"}));
  EXPECT_EQ(recipientsOf(server), QStringList({"b@x.example", "a@x.example", "c@x.example"}));
  EXPECT_EQ(read("in.pdf_email_report.csv").count(",OK\r"), 3);
}

TEST_F(MailSession, NothingIsSentThatNobodyWantsSent) {
  MailServerProcess server("smtp_server.py", {});
  setup.emailSmtp = server.text();
  script.then("CEmailListDlg", pressing("cancel"));
  session.afterRun(setup, run({"a@x.example"}));
  session.afterRun(setup, run({"", ""}));
  setup.emailEnable = false;
  session.afterRun(setup, run({"a@x.example"}));
  setup.emailEnable = true;
  setup.emailConfirm = false;
  setup.emailFrom = "nobody"; // found out before a server is asked; the list is not lost
  script.then("CEmailListDlg", [](QDialog* list) {
    EXPECT_EQ(shownIn(list), QStringList("a@x.example"));
    click(list, "cancel");
  });
  session.afterRun(setup, run({"a@x.example"}));
  EXPECT_EQ(server.mails().size(), 0U);
  EXPECT_EQ(dialogs.messages,
            QStringList({"None of the outputs has an e-mail address on its pages: there is nothing "
                         "to send.",
                         "No e-mail was sent: The From address has no \"@\"."}));
}

/// The address is put right in the list; what arrived, or was not asked for, stays out of it.
TEST_F(MailSession, WhatFailedIsSentAgain) {
  MailServerProcess server("faulty_smtp_server.py", {"code-at-recipient", "550", "bad"});
  setup.emailSmtp = server.text();
  script
      .then("CEmailListDlg",
            [this](QDialog* list) {
              tableOf(list)->selectRow(1);
              QTest::keyClick(tableOf(list), Qt::Key_Down, Qt::ShiftModifier);
              dialogs.answers = {true};
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
        dialogs.answers = {true};
        click(list, "send");
      });
  session.afterRun(setup, run({"a@x.example", "bad@x.example", "c@x.example"}));
  EXPECT_EQ(dialogs.messages,
            QStringList({"(2) Emails sent ok: 1, errors: 1", "(1) Emails sent ok: 1, errors: 0"}));
  EXPECT_EQ(recipientsOf(server), QStringList({"c@x.example", "good@x.example"}));
  // One report tells both goes.
  EXPECT_EQ(read("in.pdf_email_report.csv").count(",OK\r"), 2);
  EXPECT_EQ(read("in.pdf_email_report.csv").count(",Error - "), 1);
}

TEST_F(MailSession, WhatMayHaveArrivedIsToldApartAndNeverSentAgain) {
  MailServerProcess server("faulty_smtp_server.py", {"close-unanswered"});
  setup.emailSmtp = server.text();
  script
      .then("CEmailListDlg",
            [this](QDialog* list) {
              tableOf(list)->selectRow(0);
              dialogs.answers = {true, true}; // selected only; back to the list
              click(list, "send");
            })
      .then("CFindingsDlg",
            [this](QDialog* findings) {
              EXPECT_TRUE(linesOf(findings).startsWith("1 e-mail may have arrived"));
              EXPECT_FALSE(control<QWidget>(findings, "accept")->isEnabled());
              click(findings, "close");
            })
      .then("CEmailListDlg", [](QDialog* list) {
        EXPECT_EQ(shownIn(list), QStringList("b@x.example"));
        click(list, "cancel");
      });
  session.afterRun(setup, run({"a@x.example", "b@x.example"}));
  EXPECT_EQ(server.mails().size(), 1U);
  EXPECT_TRUE(
      dialogs.messages.value(0).startsWith("(1) Emails sent ok: 0, errors: 1\n\n1 may have"));
}

TEST_F(MailSession, StopKeepsWhatWasNotReached) {
  MailServerProcess server("smtp_server.py", {});
  setup.emailSmtp = server.text();
  setup.emailConfirm = false;
  const auto kept = [this] { return QDir(folder.path()).entryList({"in.pdf_emails_sending_*"}); };
  stop = [&] {
    const int sent = logged(" OK\r");
    EXPECT_TRUE(sent == 0 || kept().size() == 1) << "a dying program would lose the list";
    return sent == 2;
  };
  script
      .then("CFindingsDlg",
            [&](QDialog* findings) {
              EXPECT_EQ(linesOf(findings), "2 e-mails not tried: the run was stopped.");
              EXPECT_EQ(kept().size(), 1) << "lost before the person has decided";
              click(findings, "accept");
            })
      .then("CEmailListDlg", [this](QDialog* list) {
        stop = [] { return false; };
        click(list, "send");
      });
  session.afterRun(setup, run({"a@x.example", "b@x.example", "c@x.example", "d@x.example"}));
  EXPECT_EQ(kept(), QStringList());
  EXPECT_EQ(recipientsOf(server),
            QStringList({"a@x.example", "b@x.example", "c@x.example", "d@x.example"}));
}

/// The program keeps the stop of a run until the next one begins.
TEST_F(MailSession, AStopOfAnEarlierRunStopsNoSending) {
  MailServerProcess server("smtp_server.py", {});
  setup.emailSmtp = server.text();
  stop = [] { return true; };
  EmailList saved;
  saved.fill(run({"a@x.example"}).outputs);
  EXPECT_TRUE(saveEmailList(saved, at("list.lst")).ok);
  dialogs.files = {{at("list.lst")}};
  script.then("CEmailListDlg", [](QDialog* list) {
    EXPECT_TRUE(waitUntil([list] { return shownIn(list).size() == 1; }));
    click(list, "send");
  });
  session.loadEmailList(setup);
  session.afterSourceOfBatch(setup, run({"b@x.example"}));
  script.then("CEmailListDlg", pressing("send"));
  session.afterBatch();
  EXPECT_EQ(dialogs.messages, QStringList(2, "(1) Emails sent ok: 1, errors: 0"));
  EXPECT_EQ(recipientsOf(server), QStringList({"a@x.example", "b@x.example"}));
}

TEST_F(MailSession, TheStopButtonEndsAPauseAtOnce) {
  setup.emailSmtp = "127.0.0.1:9";
  setup.emailConfirm = false;
  setup.emailPause = 3'600'000;
  script
      .then("CEmailStatusDlg",
            [this](QDialog* status) {
              EXPECT_EQ(status->windowTitle(), "Email Status");
              EXPECT_EQ(control<QLabel>(status, "count")->text(), "0 of 1");
              session.afterRun(setup, {}); // the one at work is not disturbed
              click(status, "stop");
            })
      .then("CFindingsDlg", pressing("close"));
  session.afterRun(setup, run({"a@x.example", ""}));
  EXPECT_TRUE(
      dialogs.messages.value(0).startsWith("(0) Emails sent ok: 0, errors: 0\n\n1 were not sent"))
      << dialogs.messages.value(0).toStdString();
}

/// The list of a run that broke off is loaded again; the log says how far it came.
TEST_F(MailSession, GoesOnWhereAnEarlierRunBrokeOff) {
  EmailList saved;
  saved.fill(run({"a@x.example", "b@x.example", "c@x.example"}).outputs);
  EXPECT_TRUE(saveEmailList(saved, at("list.lst")).ok);
  const auto sendLoaded = [this] {
    dialogs.files = {{at("list.lst")}};
    script.then("CEmailListDlg", [](QDialog* list) {
      EXPECT_TRUE(waitUntil([list] { return shownIn(list).size() == 3; }));
      click(list, "send");
    });
    if (stop()) {
      script.then("CFindingsDlg", pressing("close"));
    }
    stop = [this, stops = stop()] { return stops && logged(" OK\r") == 2; };
    MailServerProcess server("smtp_server.py", {});
    setup.emailSmtp = server.text();
    session.loadEmailList(setup);
    stop = [] { return false; };
    return recipientsOf(server);
  };
  stop = [] { return true; };
  EXPECT_EQ(sendLoaded().size(), 2);
  dialogs.answers = {false};
  EXPECT_EQ(sendLoaded(), QStringList("c@x.example"));
  EXPECT_TRUE(
      dialogs.questions.value(0).startsWith("The log says that 2 e-mails of this list went out"));
  dialogs.answers = {true};
  EXPECT_EQ(sendLoaded().size(), 3);
}

/// The same without a log: nobody knows how far it came, and nothing goes out unasked.
TEST_F(MailSession, AListOfABrokenRunWithoutALogIsNotSentUnasked) {
  MailServerProcess server("smtp_server.py", {});
  setup.emailSmtp = server.text();
  setup.emailLogFile.clear();
  EmailList saved;
  saved.fill(run({"a@x.example"}).outputs);
  EXPECT_TRUE(saveEmailList(saved, at("in.pdf_emails_sending_20260407_090530.lst")).ok);
  dialogs.files = {{at("in.pdf_emails_sending_20260407_090530.lst")}};
  dialogs.answers = {false};
  script.then("CEmailListDlg", [this](QDialog* list) {
    EXPECT_TRUE(waitUntil([list] { return shownIn(list).size() == 1; }));
    script.then("CEmailListDlg", pressing("cancel")); // the same list, shown again
    click(list, "send");
  });
  session.loadEmailList(setup);
  EXPECT_TRUE(dialogs.questions.value(0).startsWith("The program ended while this list was sent"));
  EXPECT_EQ(server.mails().size(), 0U);
}

TEST_F(MailSession, ABatchWaitsForNobody) {
  MailServerProcess server("faulty_smtp_server.py", {"code-at-recipient", "550", "bad"});
  setup.emailSmtp = server.text();
  // Sources to be confirmed are one list at the end ...
  session.afterSourceOfBatch(setup, run({"a@x.example", ""}, "1st.pdf"));
  session.afterSourceOfBatch(setup, run({"b@x.example"}, "2nd.pdf"));
  EXPECT_EQ(notes, QStringList());
  script.then("CEmailListDlg", [](QDialog* list) {
    EXPECT_EQ(shownIn(list), QStringList({"a@x.example", "b@x.example"}));
    click(list, "send");
  });
  session.afterBatch();
  EXPECT_EQ(dialogs.messages, QStringList("(2) Emails sent ok: 2, errors: 0"));
  EXPECT_EQ(read("1st.pdf_email_report.csv").count(",OK\r"), 1);
  EXPECT_EQ(read("2nd.pdf_email_report.csv").count(",OK\r"), 1);
  // ... the others go out at once, and only what failed is shown then.
  setup.emailConfirm = false;
  session.afterSourceOfBatch(setup, run({"c@x.example", "bad@x.example"}, "3rd.pdf"));
  EXPECT_EQ(notes.value(0), "(2) Emails sent ok: 1, errors: 1");
  EXPECT_EQ(dialogs.messages.size(), 1);
  script.then("CEmailListDlg", [](QDialog* list) {
    EXPECT_EQ(shownIn(list), QStringList("bad@x.example"));
    click(list, "cancel");
  });
  session.afterBatch();
  session.afterBatch(); // nothing is left
  EXPECT_EQ(recipientsOf(server), QStringList({"a@x.example", "b@x.example", "c@x.example"}));
}

/// One file of several sources of a batch: mail follows the pages that it holds at the end.
TEST_F(MailSession, AFileOfSeveralSourcesIsMailedOnceForThePagesItHolds) {
  struct Row {
    bool append;
    QStringList addresses; ///< on the pages of each source
    QStringList listed;
  };
  const Row rows[] = {
      {true, {"a@x.example", ""}, {"a@x.example"}},
      {true, {"", "b@x.example"}, {"b@x.example"}},
      {true, {"a@x.example", "b@x.example"}, {"a@x.example"}},
      {false, {"a@x.example", "b@x.example"}, {"b@x.example"}},
  };
  for (const Row& row : rows) {
    setup.alwaysAppend = row.append;
    setup.alwaysOverwrite = !row.append;
    for (const QString& address : row.addresses) {
      session.afterSourceOfBatch(setup, {at("in.pdf"), {output(1, address)}});
    }
    script.then("CEmailListDlg", [&row](QDialog* list) {
      EXPECT_EQ(shownIn(list), row.listed) << row.addresses.join(u' ').toStdString();
      click(list, "cancel");
    });
    session.afterBatch();
  }
  // What is not there any more at the end is not sent again either.
  MailServerProcess server("faulty_smtp_server.py", {"code-at-recipient", "550", "bad"});
  setup.emailSmtp = server.text();
  setup.emailConfirm = false;
  for (const char* address : {"bad@x.example", "b@x.example"}) {
    session.afterSourceOfBatch(setup, {at("in.pdf"), {output(1, address)}});
  }
  session.afterBatch();
  EXPECT_EQ(recipientsOf(server), QStringList("b@x.example"));
}

TEST_F(MailSession, OutputsWithoutAnAddressAreTold) {
  MailServerProcess server("smtp_server.py", {});
  setup.emailSmtp = server.text();
  session.afterSourceOfBatch(setup, run({"", ""}));
  session.afterBatch();
  EXPECT_TRUE(dialogs.messages.takeFirst().startsWith("None of the outputs has"));
  setup.emailConfirm = false;
  session.afterSourceOfBatch(setup, run({"a@x.example", ""}));
  session.afterBatch();
  session.afterRun(setup, run({"a@x.example", ""}));
  const QString half = "1 of 2 outputs have no e-mail address on their pages: nothing is sent for "
                       "them.";
  const QString sent = "(1) Emails sent ok: 1, errors: 0";
  EXPECT_EQ(notes, QStringList({half, sent, half}));
  EXPECT_EQ(dialogs.messages, QStringList(sent));
}

TEST_F(MailSession, SendTestTellsHowItWentAndCanBeStopped) {
  for (const char* server : {"127.0.0.1:9", "tls:x:y:z"}) {
    setup.emailSmtp = server;
    runSendTest(setup, dialogs, nullptr);
    EXPECT_TRUE(dialogs.messages.last().startsWith("Error in configuration:"));
    EXPECT_TRUE(dialogs.messages.last().endsWith("\nError report output to file:" +
                                                 at("folivex_mail_error.txt")));
  }
  EXPECT_EQ(dialogs.opened, QStringList(2, at("folivex_mail_error.txt")));
  MailServerProcess server("faulty_smtp_server.py", {"mute"});
  setup.emailSmtp = server.text();
  script.then("CMailWaitDlg", pressing("stop"));
  runSendTest(setup, dialogs, nullptr);
  EXPECT_EQ(dialogs.messages.last(), "The test was stopped.");
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

} // namespace
} // namespace folivex::testing
