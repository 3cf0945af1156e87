// The program as a process, with mail to send and nobody there.
#include "tests/app/ProgramBench.h"
#include "tests/mail/MailServerProcess.h"

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

  /// Of the one list in the output folder, whose name says this.
  QByteArray listNamed(const QString& kind) const {
    const QStringList lists = outputs().filter(QStringLiteral(".lst"));
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

/// Between two mails both are in a list, and the log tells which of them went out: a run that dies
/// there loses none.
TEST_F(ProgramMail, AStopWhileMailsGoOutIsTheEndOfAllFiles) {
  MailServerProcess server({"hang-unanswered", "1"}); // at the second
  setup.emailSmtp = server.text();
  setup.emailPassword.clear();
  QProcess program;
  program.setProcessEnvironment(place.environment());
  program.start(QStringLiteral(FOLIVEX_BIN_DIR "/folivex"),
                {fxs(), fourAccounts(), source("b.pdf", {"B1"}), QStringLiteral("-c")});
  while (!QFile::exists(setup.emailLogFile) || !contentOf(setup.emailLogFile).contains(" OK\r")) {
    ASSERT_FALSE(program.waitForFinished(10)) << program.readAllStandardError().toStdString();
  }
  EXPECT_EQ(listNamed("emails_sending_"),
            "\xEF\xBB\xBFUNICODEV4\r\r\nanna@example.org|" + place.at("out/1.pdf").toUtf8() +
                "|0|0\r\r\ncarl@example.org|" + place.at("out/3.pdf").toUtf8() + "|0|0\r\r\n");
  EXPECT_FALSE(contentOf(setup.emailLogFile).contains("carl"));
  program.terminate();
  ASSERT_TRUE(program.waitForFinished(hangLimit));
  EXPECT_EQ(program.exitCode(), 1);
  EXPECT_TRUE(outputs().filter("B1").isEmpty());
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
  EXPECT_EQ(outputs().size(), 4);
  const QByteArray told = run.err + contentOf(setup.emailLogFile);
  EXPECT_FALSE(told.contains("hunter2")) << told.toStdString();
  EXPECT_TRUE(told.contains("anna@example.org"));
}
