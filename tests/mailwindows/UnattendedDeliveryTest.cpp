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
    setup.emailConfirm = setup.emailTest = false;
    setup.emailSmtp = server.text();
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

  MailServerProcess server{{"code-at-recipient", "550", "bad"}};
  QTemporaryDir folder;
  SplitSetup setup;
  FinishedRun run;
  RecordingOperator person;
  std::function<bool()> stop;
};

TEST_F(Unattended, AListThatWaitsIsNeverReplaced) {
  setup.emailConfirm = true;
  add("a@x.example");
  const QString waiting = send().savedList;
  EXPECT_EQ(contentOf(waiting).count("a@x.example|"), 1);
  const UnattendedResult second = send();
  EXPECT_FALSE(second.complete);
  EXPECT_NE(second.savedList, waiting);
  EXPECT_EQ(lists().size(), 2);
}

TEST_F(Unattended, WhatCouldNotBeSentIsInAList) {
  add("a@x.example");
  add("bad@x.example");
  add("c@x.example");
  const UnattendedResult result = send();
  EXPECT_FALSE(result.complete);
  EXPECT_EQ(person.notes.value(0), "(3) Emails sent ok: 2, errors: 1");
  EXPECT_TRUE(result.savedList.contains("in.pdf_emails_not_sent_"));
  EXPECT_EQ(lists().size(), 1) << "the list of those being sent is still there";
  EXPECT_EQ(contentOf(result.savedList).count("@x.example|"), 1);
  EXPECT_TRUE(contentOf(result.savedList).contains("bad@x.example|"));
  EXPECT_EQ(contentOf(run.source + "_email_report.csv").count(",OK\r"), 2);
  // A stop and wrong settings leave everything in a list.
  stop = [] { return true; };
  EXPECT_EQ(contentOf(send().savedList).count("@x.example|"), 3);
  setup.emailSmtp.clear();
  EXPECT_EQ(contentOf(send().savedList).count("@x.example|"), 3);
  EXPECT_TRUE(person.allNotes().contains("No e-mail was sent: "));
}

/// The list is on the disk before the first mail goes out, or that is told; it goes once its mails
/// are told of.
TEST_F(Unattended, AListIsKeptWhileItIsSent) {
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
  setup.emailEnable = false;
  person.notes.clear();
  EXPECT_TRUE(send().complete);
  EXPECT_EQ(person.notes, QStringList());
  EXPECT_EQ(server.taken().size(), 4);
}

/// It may have arrived: a list that is loaded and sent without a look must not send it twice.
TEST_F(Unattended, WhatMayHaveArrivedIsInNoList) {
  server.become({"close-unanswered"});
  add("a@x.example");
  const UnattendedResult result = send();
  EXPECT_FALSE(result.complete);
  EXPECT_EQ(lists(), QStringList());
  EXPECT_TRUE(person.allNotes().contains("a@x.example, " + run.outputs[0].file));
}

} // namespace
} // namespace folivex::test
