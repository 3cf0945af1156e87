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
    writeFile(run.source, "%PDF source");
  }

  void add(const QString& address) {
    const QString path = folder.filePath(QStringLiteral("out/%1.pdf").arg(run.outputs.size()));
    writeFile(path, "%PDF of " + address.toUtf8());
    run.outputs.push_back({path, 1, 1, {}, address, {}, platform::FileDigest::of(path)});
  }
  /// As a program does that was started with the one source, unless it dies at the end.
  UnattendedResult send(bool dies = false) {
    UnattendedDelivery delivery({}, person, stop);
    std::optional<UnattendedResult> gone = delivery.goOn(setup, run.source);
    wasSplit = !gone;
    UnattendedResult result = gone ? std::move(*gone) : delivery.send(setup, run);
    if (!dies) {
      delivery.finish();
    }
    return result;
  }
  QStringList lists() const { return QDir(setup.outputDir).entryList({"*.lst"}); }
  QStringList leftOver() const { return QDir(setup.outputDir).entryList({"*.lst*"}); }

  MailServerProcess server{{"code-at-recipient", "550", "bad"}};
  QTemporaryDir folder;
  SplitSetup setup;
  FinishedRun run;
  RecordingOperator person;
  std::function<bool()> stop;
  bool wasSplit = false;
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
  EmailList list;
  EXPECT_TRUE(loadEmailList(list, waiting).ok);
  EXPECT_EQ(list.rows()[0].entry.identity, run.outputs[0].identity);
  setup.outputDir = folder.filePath("gone");
  EXPECT_EQ(send().savedList, "");
}

/// The same command goes on with what is left: it neither splits again nor mails anybody twice.
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
  EXPECT_EQ(send().savedList, result.savedList);
  EXPECT_FALSE(wasSplit);
  // A setup that waits for a person leaves them to one.
  setup.emailConfirm = true;
  EXPECT_EQ(send().savedList, result.savedList);
  setup.emailConfirm = false;
  EXPECT_EQ(server.taken(), QStringList({"a@x.example", "c@x.example"}));
  server.become({"none"});
  EXPECT_TRUE(send().complete);
  EXPECT_EQ(server.taken(), QStringList("bad@x.example"));
  EXPECT_EQ(leftOver(), QStringList());
  // A stop and wrong settings leave everything in a list.
  stop = [] { return true; };
  EXPECT_EQ(contentOf(send().savedList).count("@x.example|"), 3);
  EXPECT_TRUE(wasSplit) << "what came to its end is no work to go on with";
  setup.emailSmtp.clear();
  EXPECT_EQ(contentOf(send().savedList).count("@x.example|"), 3);
  EXPECT_TRUE(person.allNotes().contains("No e-mail was sent: "));
}

/// The list is on the disk before the first mail goes out, or nothing does; it goes when the
/// command has come to its end.
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
  EXPECT_TRUE(send(true).complete);
  EXPECT_EQ(kept.count("@x.example|"), 2);
  // A program that died over a later source begins with this one again.
  EXPECT_TRUE(send().complete);
  EXPECT_FALSE(wasSplit);
  EXPECT_EQ(leftOver(), QStringList());
  setup.outputDir = folder.filePath("gone");
  EXPECT_FALSE(send().complete);
  EXPECT_TRUE(person.allNotes().contains("No e-mail was sent: the record of what was sent, "));
  setup.emailEnable = false;
  person.notes.clear();
  EXPECT_TRUE(send().complete);
  EXPECT_EQ(person.notes, QStringList());
  EXPECT_EQ(server.taken().size(), 2);
}

/// It stays for a person in a list that knows it: neither the same command nor who loads the list
/// without a look sends it twice.
TEST_F(Unattended, WhatMayHaveArrivedIsNotSentAgain) {
  server.become({"close-unanswered"});
  add("a@x.example");
  const UnattendedResult result = send();
  EXPECT_FALSE(result.complete);
  ASSERT_EQ(lists().size(), 1);
  EXPECT_TRUE(lists()[0].startsWith("in.pdf_emails_may_have_arrived_"));
  EXPECT_TRUE(person.allNotes().contains("a@x.example, " + run.outputs[0].file));
  EmailList list;
  EXPECT_TRUE(loadEmailList(list, result.savedList).ok);
  EXPECT_EQ(list.rows().at(0).entry.mayHaveReached, QStringList("a@x.example"));
  person.notes.clear();
  EXPECT_FALSE(send().complete);
  EXPECT_TRUE(person.allNotes().contains("1 e-mail may have arrived"));
  EXPECT_EQ(server.mails().size(), 1U);
}

/// Another source under the name, or other settings, are other work: the old list stays, told.
TEST_F(Unattended, OtherBytesAreOtherWork) {
  add("bad@x.example");
  const QString left = send().savedList;
  const auto expectOtherWork = [&] {
    person.notes.clear();
    EXPECT_FALSE(send().complete);
    EXPECT_TRUE(wasSplit);
    EXPECT_TRUE(person.allNotes().contains(left + " holds e-mails of an earlier run"))
        << person.allNotes().toStdString();
    EXPECT_TRUE(QFile::exists(left));
  };
  setup.findString = "other:";
  expectOtherWork();
  setup.findString = SplitSetup().findString;
  setup.emailSubject = "How mails travel and what they say is no matter";
  EXPECT_FALSE(send().complete);
  EXPECT_FALSE(wasSplit);
  writeFile(run.source, "%PDF sourcf"); // as long as before
  expectOtherWork();
}

/// Two programs that were started with the same source: one of them mails.
TEST_F(Unattended, AListInWorkIsLeftToWhoSendsIt) {
  add("a@x.example");
  EXPECT_TRUE(send(true).complete);
  const QString list = setup.outputDir + "/" + lists().value(0);
  SendJournal other;
  ASSERT_TRUE(other.open(list, {}));
  EXPECT_FALSE(send().complete);
  EXPECT_FALSE(wasSplit);
  // One that has split meanwhile.
  UnattendedDelivery late({}, person);
  EXPECT_FALSE(late.send(setup, run).complete);
  EXPECT_EQ(server.taken().size(), 1);
  EXPECT_EQ(lists().size(), 1);
}

/// Nobody is there who could look: it is told, and waits in a list that says why.
TEST_F(Unattended, DoubtfulFilesWaitForAPerson) {
  for (const char* address : {"a@x.example", "b@x.example", "c@x.example", "d@x.example"}) {
    add(address);
  }
  writeFile(run.outputs[0].file, "%PDF of somebody else");
  run.outputs[1].addressesDiffer = true;
  run.outputs[2].holdsEarlierPages = true;
  EmailList list;
  EXPECT_TRUE(loadEmailList(list, send().savedList).ok);
  EXPECT_EQ(server.taken(), QStringList("d@x.example"));
  ASSERT_EQ(list.count(), 3U);
  EXPECT_EQ(list.rows()[0].entry.identity, run.outputs[0].identity);
  EXPECT_TRUE(list.rows()[1].entry.addressesDiffer && list.rows()[2].entry.holdsEarlierPages);
  EXPECT_TRUE(person.allNotes().contains("a person has to look at their files"));
}

} // namespace
} // namespace folivex::test
