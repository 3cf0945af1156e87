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

  QStringList savedLists() const { return outputs().filter(QStringLiteral(".lst")); }
};

} // namespace

TEST_F(ProgramMail, EveryAddressGetsItsOwnFile) {
  MailServerProcess server("smtp_server.py", {});
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
  EXPECT_TRUE(savedLists().isEmpty());
}

TEST_F(ProgramMail, WhatIsToBeConfirmedIsSavedAndNotSent) {
  MailServerProcess server("smtp_server.py", {});
  setup.emailSmtp = server.text();
  setup.emailConfirm = true;
  const ProgramRun run = place.run({fxs(), fourAccounts(), QStringLiteral("-c")});
  EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
  EXPECT_TRUE(server.mails().empty());
  ASSERT_EQ(savedLists().size(), 1) << run.err.toStdString();
  const QString list = place.at(QStringLiteral("out/") + savedLists().front());
  EXPECT_TRUE(run.err.contains(list.toUtf8())) << run.err.toStdString();
  EXPECT_TRUE(
      contentOf(list).contains("carl@example.org|" + place.at("out/3.pdf").toUtf8() + "|0|0"))
      << contentOf(list).toStdString();
}

TEST_F(ProgramMail, MailThatCannotBeSentIsAnErrorWithoutSecrets) {
  setup.emailSmtp = QStringLiteral("127.0.0.1:1");
  setup.emailLogin = QStringLiteral("office");
  const ProgramRun run = place.run({fxs(), fourAccounts(), QStringLiteral("-c")});
  EXPECT_EQ(run.exitCode, shown(-14)) << run.err.toStdString();
  EXPECT_EQ(savedLists().size(), 1);
  EXPECT_EQ(outputs().size(), 4);
  const QByteArray told = run.err + contentOf(setup.emailLogFile);
  EXPECT_FALSE(told.contains("hunter2")) << told.toStdString();
  EXPECT_TRUE(told.contains("anna@example.org"));
}
