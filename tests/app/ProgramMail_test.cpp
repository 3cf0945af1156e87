// The program as a process, with mail to send and nobody there.
#include "tests/app/ProgramBench.h"
#include "tests/mail/MailServerProcess.h"

#include <QRegularExpression>

using namespace folivex;
using namespace folivex::test;

namespace {

class ProgramMail : public ProgramBench {
protected:
  ProgramMail() {
    setup.emailEnable = true;
    setup.emailConfirm = false;
    setup.emailTest = false;
    setup.emailFrom = QStringLiteral("office@example.com");
    setup.emailSubject = QStringLiteral("Your statement");
    setup.emailMsg = QStringLiteral("Attached.");
    setup.emailPassword = QStringLiteral("hunter2");
    setup.emailLogFile = place.at(QStringLiteral("mail.log"));
  }

  /// Two accounts with an address, one without, one address on the second page of its document.
  QString fourAccounts() {
    TextPdf pdf;
    pdf.page({QStringLiteral("Account: 1"), QStringLiteral("E-mail: anna@example.org")});
    pdf.page({QStringLiteral("Account: 2"), QStringLiteral("no address here")});
    pdf.page({QStringLiteral("Account: 3"), QStringLiteral("page one")});
    pdf.page({QStringLiteral("to (carl@example.org), thank you")});
    pdf.write(place.at(QStringLiteral("all.pdf")));
    return QStringLiteral("-f") + place.at(QStringLiteral("all.pdf"));
  }

  QStringList lists() const {
    return QDir(place.at(QStringLiteral("out"))).entryList({QStringLiteral("*.lst")});
  }
  /// As started and not waited for; killed, or told to stop, once `is` holds.
  void runUntil(const QStringList& arguments, bool kill, const std::function<bool()>& is) {
    QProcess program;
    program.setProcessEnvironment(place.environment());
    program.start(QStringLiteral(FOLIVEX_BIN_DIR "/folivex"), arguments);
    while (!is()) {
      ASSERT_FALSE(program.waitForFinished(10)) << program.readAllStandardError().toStdString();
    }
    kill ? program.kill() : program.terminate();
    ASSERT_TRUE(program.waitForFinished(hangLimit));
    EXPECT_TRUE(kill || program.exitCode() == 1) << program.exitCode();
  }
  bool logHolds(const char* text) const {
    return QFile::exists(setup.emailLogFile) && contentOf(setup.emailLogFile).contains(text);
  }

  /// Of the one list in the output folder, whose name says this.
  QByteArray listNamed(const QString& kind) const {
    const QStringList lists = this->lists();
    EXPECT_TRUE(lists.size() == 1 && lists[0].startsWith(QStringLiteral("all.pdf_") + kind))
        << lists.join(u' ').toStdString();
    return contentOf(place.at(QStringLiteral("out/") + lists.value(0)));
  }
};

} // namespace

TEST_F(ProgramMail, EveryAddressGetsItsOwnFile) {
  MailServerProcess server;
  setup.emailSmtp = server.text();
  setup.emailPassword.clear();
  const ProgramRun run = place.run({fxs(), fourAccounts(), QStringLiteral("-c")});
  EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
  QStringList got;
  for (const QJsonObject& mail : server.mails()) {
    const QJsonObject file = mail[QLatin1String("attachments")].toArray().first().toObject();
    got += mail[QLatin1String("recipients")].toArray().first().toString() + QStringLiteral(" ") +
           file[QLatin1String("name")].toString();
  }
  EXPECT_EQ(got, (QStringList{"anna@example.org 1.pdf", "carl@example.org 3.pdf"}));
  EXPECT_TRUE(run.err.contains("(2) Emails sent ok: 2, errors: 0")) << run.err.toStdString();
  EXPECT_FALSE(run.err.contains("Sending email")) << "progress where nobody sees it";
  EXPECT_EQ(outputs().filter(".lst"), QStringList());
}

TEST_F(ProgramMail, AStopWhileMailsGoOutIsTheEndOfAllFiles) {
  MailServerProcess server({"hang-unanswered", "1"}); // at the second
  setup.emailSmtp = server.text();
  setup.emailPassword.clear();
  const QStringList arguments = {fxs(), fourAccounts(), source("b.pdf", {"B1"}),
                                 QStringLiteral("-c")};
  runUntil(arguments, false, [&] {
    if (!logHolds(" OK\r")) {
      return false;
    }
    EXPECT_EQ(listNamed("emails_sending_"),
              "\xEF\xBB\xBFUNICODEV4\r\r\nanna@example.org|" + place.at("out/1.pdf").toUtf8() +
                  "|0|0\r\r\ncarl@example.org|" + place.at("out/3.pdf").toUtf8() + "|0|0\r\r\n");
    EXPECT_FALSE(logHolds("carl"));
    return true;
  });
  EXPECT_TRUE(outputs().filter("B1").isEmpty());
}

/// Killed in the middle of a mail, without a log: the same command goes on, splits nothing twice
/// and mails nobody twice, and a person is told of the one mail that nobody knows of.
TEST_F(ProgramMail, AKilledRunIsGoneOnWith) {
  MailServerProcess server({"hang-unanswered", "1"});
  setup.emailSmtp = server.text();
  setup.emailPassword.clear();
  setup.emailLogFile.clear();
  const QStringList arguments = {fxs(), fourAccounts(), QStringLiteral("-c")};
  runUntil(arguments, true, [&server] { return server.mails().size() == 2; });
  const QStringList made = outputs().filter(QRegularExpression("pdf$"));
  server.become({"none"});
  const ProgramRun again = place.run(arguments);
  EXPECT_EQ(again.exitCode, shown(-14)) << again.err.toStdString();
  EXPECT_EQ(server.mails().size(), 0U) << "a mail went out twice";
  EXPECT_TRUE(again.err.contains("goes on with its list")) << again.err.toStdString();
  EXPECT_TRUE(again.err.contains("1 e-mail may have arrived")) << again.err.toStdString();
  EXPECT_EQ(listNamed("emails_may_have_arrived_").count("carl@example.org|"), 1);
  EXPECT_EQ(outputs().filter(QRegularExpression("pdf$")), made) << "it was split twice";
}

/// Killed between two mails, in the second source: what is done is done, what is not goes out.
TEST_F(ProgramMail, WhatWentOutBeforeAKillGoesOutOnce) {
  TextPdf second;
  second.page({QStringLiteral("Account: B1"), QStringLiteral("E-mail: b1@example.org")});
  second.page({QStringLiteral("Account: B2"), QStringLiteral("E-mail: b2@example.org")});
  second.write(place.at(QStringLiteral("b.pdf")));
  MailServerProcess server({"hang-at-recipient", "b2"});
  setup.emailSmtp = server.text();
  setup.emailPassword.clear();
  setup.otherSettingsRemoveFiles = true;
  const QStringList arguments = {fxs(), fourAccounts(), QStringLiteral("-f") + place.at("b.pdf"),
                                 QStringLiteral("-c")};
  runUntil(arguments, true, [&] { return logHolds("b1@example.org"); });
  QStringList taken = server.taken();
  EXPECT_EQ(taken, QStringList({"anna@example.org", "carl@example.org", "b1@example.org"}));
  server.become({"none"});
  // A later source does not clear away what the earlier process made.
  const ProgramRun again = place.run(QStringList{fxs()} + arguments.sliced(1, 2) +
                                     QStringList{source("c.pdf", {"C1"}), "-c"});
  taken += server.taken();
  EXPECT_EQ(outputs().filter(QRegularExpression("^(1|B1|C1).pdf$")).size(), 3);
  // Whether the last one had begun is a matter of moments; twice is none.
  EXPECT_EQ(taken.count("b2@example.org") + lists().filter("may_have_arrived").size(), 1)
      << again.err.toStdString();
  EXPECT_EQ(taken.removeDuplicates(), 0);
  EXPECT_EQ(outputs().filter("part002"), QStringList()) << "it was split twice";
  // A command that came to its end is new work when it is given once more.
  if (again.exitCode == 0) {
    EXPECT_EQ(outputs().filter(".lst"), QStringList());
  }
}

/// Nobody can confirm, and the list that a person could confirm later is not there either.
TEST_F(ProgramMail, ASavedListIsSentOnceAndNotWhereSomebodyHasToConfirm) {
  MailServerProcess server({"busy"});
  setup.emailSmtp = server.text();
  setup.emailPassword.clear();
  setup.emailConfirm = true;
  const QString confirmed = fxs("confirmed.fxs");
  ASSERT_EQ(place.run({confirmed, fourAccounts(), "-c"}).exitCode, 0);
  const QString list = place.at("out/" + lists().value(0));
  setup.emailConfirm = false;
  const struct {
    QString setup;
    const char* fault;
    int code;
    const char* told;
    QStringList got;
  } rows[] = {{confirmed, "none", -14, "nothing is sent, since sending is to be confirmed", {}},
              {fxs("at-once.fxs"), "busy", -14, "errors: 2", {}},
              {fxs("at-once.fxs"),
               "none",
               0,
               "Emails sent ok: 2",
               {"anna@example.org", "carl@example.org"}},
              {fxs("at-once.fxs"), "none", 0, "(0) Emails sent ok: 0, errors: 0", {}}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.told);
    server.become({row.fault});
    const ProgramRun run = place.run({row.setup, "--send", list, "-c"});
    EXPECT_EQ(run.exitCode, shown(row.code));
    EXPECT_TRUE(run.err.contains(row.told)) << run.err.toStdString();
    EXPECT_EQ(server.taken(), row.got);
    EXPECT_EQ(lists().size(), 1);
  }
  EXPECT_EQ(place.run({fxs(), "--send", "missing.lst", "-c"}).exitCode, shown(-14));
}

TEST_F(ProgramMail, AListThatCannotBeSavedIsAFailure) {
  setup.emailConfirm = true;
  setup.emailSmtp = QStringLiteral("127.0.0.1:1");
  // Room for the outputs' names, and for no longer one.
  QString folder = place.at(QStringLiteral("out"));
  constexpr qsizetype longestPath = 4095;
  constexpr qsizetype room = 60;
  while (folder.size() + 2 < longestPath - room) {
    folder +=
        u'/' + QString(std::min<qsizetype>(200, longestPath - room - folder.size() - 1), u'd');
  }
  setup.outputDir = folder;
  const QString title(100, u't');
  fourAccounts();
  QFile::rename(place.at("all.pdf"), place.at(title + ".pdf"));
  const ProgramRun run = place.run({fxs(), "-f" + place.at(title + ".pdf"), QStringLiteral("-c")});
  EXPECT_TRUE(QFile::exists(folder + "/1.pdf")) << run.err.toStdString();
  EXPECT_TRUE(run.err.contains("Unable to create file: ")) << run.err.toStdString();
  EXPECT_EQ(run.exitCode, shown(-14));
}

TEST_F(ProgramMail, ATerminalShowsHowFarTheMailsAre) {
  MailServerProcess server;
  setup.emailSmtp = server.text();
  setup.emailPause = 150; // longer than a line of progress stays
  const QString command = QStringLiteral("'" FOLIVEX_BIN_DIR "/folivex' '%1' '%2' -c");
  const ProgramRun run = place.run({"-qefc", command.arg(fxs(), fourAccounts()), "/dev/null"},
                                   QStringLiteral("script"));
  EXPECT_EQ(run.exitCode, 0) << run.out.toStdString();
  EXPECT_TRUE(
      run.out.contains("\r\033[KSending email (0 of 2, errors: 0): anna@example.org") &&
      run.out.contains("\r\033[KSending email (1 of 2, errors: 0): carl@example.org\r\033[K"))
      << run.out.toStdString();
}

TEST_F(ProgramMail, MailThatCannotBeSentIsAnErrorWithoutSecrets) {
  setup.emailSmtp = QStringLiteral("127.0.0.1:1");
  setup.emailLogin = QStringLiteral("office");
  const ProgramRun run = place.run({fxs(), fourAccounts(), QStringLiteral("-c")});
  EXPECT_EQ(run.exitCode, shown(-14)) << run.err.toStdString();
  EXPECT_EQ(listNamed("emails_not_sent_").count("@example.org|"), 2);
  EXPECT_EQ(outputs().size(), 5);
  const QByteArray told = run.err + contentOf(setup.emailLogFile);
  EXPECT_FALSE(told.contains("hunter2")) << told.toStdString();
  EXPECT_TRUE(told.contains("anna@example.org"));
}
