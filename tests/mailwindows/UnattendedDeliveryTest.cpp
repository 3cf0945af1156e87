// Mails of a run that nobody watches; a program without widgets.
#include "mail/delivery/UnattendedDelivery.h"
#include "tests/mail/MailServerProcess.h"
#include "tests/support/RecordingOperator.h"

#include <QTemporaryDir>

namespace folivex::test {
namespace {

class Unattended : public testing::Test {
protected:
  Unattended() {
    setup.emailEnable = true;
    setup.emailTest = false;
    setup.emailFrom = QStringLiteral("office@example.org");
    setup.emailLogFile = folder.filePath("emails_log.txt");
    setup.outputDir = folder.filePath("out");
    QDir(folder.path()).mkdir("out");
    run.source = folder.filePath("in.pdf");
  }

  void add(const QString& address) {
    const QString path = folder.filePath(QStringLiteral("out/%1.pdf").arg(run.outputs.size()));
    writeFile(path, "%PDF");
    run.outputs.push_back({path, 1, 1, {}, address, {}});
  }
  UnattendedResult send() { return sendUnattended(setup, run, {}, person, stop); }
  QStringList lists() const { return QDir(setup.outputDir).entryList({"*.lst"}); }

  QTemporaryDir folder;
  SplitSetup setup;
  FinishedRun run;
  RecordingOperator person;
  std::function<bool()> stop;
};

TEST_F(Unattended, ConfirmationIsWaitedForInAListAndNothingIsSent) {
  MailServerProcess server("smtp_server.py", {});
  setup.emailSmtp = server.text();
  add("a@x.example");
  add({});
  const UnattendedResult first = send();
  const UnattendedResult second = send();
  EXPECT_FALSE(first.complete);
  EXPECT_NE(first.savedList, second.savedList) << "a waiting list was replaced";
  EXPECT_EQ(lists().size(), 2);
  EXPECT_EQ(contentOf(first.savedList), "\xEF\xBB\xBFUNICODEV4\r\r\na@x.example|" +
                                            run.outputs[0].file.toUtf8() + "|0|0\r\r\n");
  EXPECT_EQ(person.notes.first(3),
            QStringList({"1 of 2 outputs have no e-mail address on their pages: nothing is sent "
                         "for them.",
                         "1 e-mail not sent: sending is to be confirmed, and nobody is here to do "
                         "it. Load the list to send it.",
                         "Saved email list to: " + first.savedList}));
  EXPECT_EQ(person.messages + person.questions, QStringList());
  EXPECT_EQ(server.mails().size(), 0U);
}

TEST_F(Unattended, WhatCouldNotBeSentIsInAList) {
  setup.emailConfirm = false;
  add("a@x.example");
  add("bad@x.example");
  add("c@x.example");
  {
    MailServerProcess server("smtp_server.py", {});
    setup.emailSmtp = server.text();
    const UnattendedResult good = send();
    EXPECT_TRUE(good.complete);
    EXPECT_EQ(person.notes, QStringList("(3) Emails sent ok: 3, errors: 0"));
    EXPECT_EQ(lists(), QStringList());
    EXPECT_EQ(server.mails().size(), 3U);
    EXPECT_EQ(contentOf(run.source + "_email_report.csv").count(",OK\r"), 3);
  }
  {
    MailServerProcess server("faulty_smtp_server.py", {"code-at-recipient", "550", "bad"});
    setup.emailSmtp = server.text();
    const UnattendedResult result = send();
    EXPECT_FALSE(result.complete);
    EXPECT_EQ(result.summary.counts.sentOk, 2);
    EXPECT_TRUE(result.savedList.contains("in.pdf_emails_not_sent_"));
    EXPECT_EQ(contentOf(result.savedList).count("@x.example|"), 1);
    EXPECT_TRUE(contentOf(result.savedList).contains("bad@x.example|"));
  }
  // Wrong settings and a stop leave everything in a list.
  setup.emailSmtp = "127.0.0.1:9";
  stop = [] { return true; };
  EXPECT_EQ(contentOf(send().savedList).count("@x.example|"), 3);
  setup.emailSmtp.clear();
  EXPECT_EQ(contentOf(send().savedList).count("@x.example|"), 3);
  EXPECT_TRUE(person.allNotes().contains("No e-mail was sent: "));
}

/// The list is on the disk before the first mail goes out, or that is told; it goes once its mails
/// are told of.
TEST_F(Unattended, AListIsKeptWhileItIsSent) {
  MailServerProcess server("smtp_server.py", {});
  setup.emailSmtp = server.text();
  setup.emailConfirm = false;
  add("a@x.example");
  add("b@x.example");
  QByteArray kept;
  person.onProgress = [&](const Progress&) {
    if (kept.isEmpty() && !lists().isEmpty()) {
      EXPECT_TRUE(lists()[0].startsWith("in.pdf_emails_sending_")) << lists()[0].toStdString();
      kept = contentOf(setup.outputDir + "/" + lists()[0]);
    }
  };
  EXPECT_TRUE(send().complete);
  EXPECT_EQ(kept.count("@x.example|"), 2);
  EXPECT_EQ(lists(), QStringList());
  setup.outputDir = folder.filePath("gone");
  EXPECT_TRUE(send().complete);
  EXPECT_TRUE(person.allNotes().contains("The list could not be kept")) << "nobody was told";
  EXPECT_EQ(server.mails().size(), 4U);
}

/// It may have arrived: a list that is loaded and sent without a look must not send it twice.
TEST_F(Unattended, WhatMayHaveArrivedIsInNoList) {
  MailServerProcess server("faulty_smtp_server.py", {"close-unanswered"});
  setup.emailSmtp = server.text();
  setup.emailConfirm = false;
  add("a@x.example");
  const UnattendedResult result = send();
  EXPECT_FALSE(result.complete);
  EXPECT_EQ(lists(), QStringList());
  EXPECT_TRUE(person.allNotes().contains("a@x.example, " + run.outputs[0].file));
}

TEST_F(Unattended, SendsNothingUnlessEnabled) {
  setup.emailEnable = false;
  add("a@x.example");
  EXPECT_TRUE(send().complete);
  EXPECT_EQ(person.notes + lists(), QStringList());
}

} // namespace
} // namespace folivex::test
