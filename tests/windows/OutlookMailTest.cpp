// Mails through the mail program of the desktop, which a program of the tests stands in for.
#include "mail/OutlookMail.h"
#include "mail/delivery/EmailDelivery.h"
#include "mail/delivery/UnattendedDelivery.h"
#include "tests/support/OwnFolder.h"
#include "tests/support/Programs.h"
#include "tests/support/RecordingOperator.h"

namespace folivex::test {
namespace {

class Watcher : public SendWatcher {
public:
  void handlePendingEvents() override { ++events; }
  bool stopRequested() override { return stopAfterEvents > 0 && events >= stopAfterEvents; }
  void onProgress(const EmailProgress& /*progress*/) override {}

  int events = 0;
  int stopAfterEvents = 0;
};

/// Three outputs, of "r1@example.org" to "r3@example.org"; mails lie in "mails".
class OutlookMail : public OwnFolder {
protected:
  OutlookMail() {
    QDir(m_folder.path()).mkdir("mails");
    QDir(m_folder.path()).mkdir("out");
    standIn({"--register", QDir::toNativeSeparators(at("mails"))});
    setup.emailEnable = true;
    setup.emailConfirm = setup.emailTest = false;
    setup.useOutlook = setup.useOutlookAuto = true;
    setup.emailSubject = QString::fromUtf8("Contas de março 中");
    setup.emailMsg = QString::fromUtf8("Olá,\r\n\r\naté breve");
    setup.emailInvoiceCc = "office@example.org, boss@example.org";
    setup.emailLogFile = at("emails_log.txt");
    setup.outputDir = at("out");
    run.source = at("in.pdf");
    writeFile(run.source, "%PDF source");
    for (int i = 1; i <= 3; ++i) {
      const QString path = at(QString::fromUtf8("out/Ação %1.pdf").arg(i));
      writeFile(path, "%PDF " + QByteArray(100'000 * i, static_cast<char>('a' + i)));
      run.outputs.push_back({path,
                             i,
                             i,
                             {},
                             QStringLiteral("r%1@example.org").arg(i),
                             {},
                             platform::FileDigest::of(path)});
    }
  }
  ~OutlookMail() override { standIn({"--unregister"}); }

  void standIn(const QStringList& arguments) {
    EXPECT_EQ(runProgram(FOLIVEX_TEST_DIR "/outlook_standin", arguments).exitCode, 0);
  }
  void order(const QByteArray& lines) { writeFile(at("mails/orders"), lines); }

  SendSummary send() {
    EmailList list;
    EXPECT_TRUE(list.fill(run.outputs).empty());
    EmailDelivery delivery(setup, {});
    delivery.addRun(run);
    DeliveryResult result = delivery.send(list, {}, watcher);
    EXPECT_EQ(result.problem, "");
    delivery.kept().dropAll();
    EXPECT_EQ(delivery.close(), "");
    return std::move(result.summary);
  }
  std::vector<EntryState> states(const SendSummary& summary) const {
    std::vector<EntryState> all;
    for (const EntryResult& result : summary.entries) {
      all.push_back(result.state);
    }
    return all;
  }
  QByteArray inMail(int mail, const QString& name) const {
    return contentOf(at(QStringLiteral("mails/%1/%2").arg(mail).arg(name)));
  }

  SplitSetup setup;
  FinishedRun run;
  Watcher watcher;
};

TEST_F(OutlookMail, EachMailIsHandedOverWhole) {
  EXPECT_EQ(send().message(), "(3) Emails sent ok: 3, errors: 0");
  for (int i = 1; i <= 3; ++i) {
    EXPECT_EQ(inMail(i, "fields"), QString::fromUtf8("To=r%1@example.org\n"
                                                     "CC=office@example.org;boss@example.org\n"
                                                     "Subject=Contas de março 中\n"
                                                     "BodyFormat=1\n"
                                                     "Body=Olá,\\r\\n\\r\\naté breve\n")
                                       .arg(i)
                                       .toUtf8());
    const QString& file = run.outputs[static_cast<std::size_t>(i) - 1].file;
    EXPECT_EQ(inMail(i, "attached-1-" + QFileInfo(file).fileName()), contentOf(file));
    EXPECT_EQ(inMail(i, "fate"), "sent\n");
  }
  EXPECT_EQ(contentOf(setup.emailLogFile).count(" OK\r\r\n"), 3);
  setup.emailHtml = true;
  static_cast<void>(send());
  EXPECT_TRUE(inMail(4, "fields").contains("\nHTMLBody="));
  EXPECT_FALSE(inMail(4, "fields").contains("\nBody"));
}

TEST_F(OutlookMail, WhatIsShownIsNotSent) {
  setup.useOutlookAuto = false;
  const SendSummary summary = send();
  EXPECT_EQ(summary.message(), "(3) Emails sent ok: 0, errors: 0");
  EXPECT_TRUE(summary.details().startsWith("3 were opened for you"))
      << qPrintable(summary.details());
  EXPECT_TRUE(summary.rowsToSendAgain().empty());
  EXPECT_EQ(inMail(3, "fate"), "shown\n");
  EXPECT_EQ(contentOf(setup.emailLogFile).count("shown, not sent\r\r\n"), 3);

  RecordingOperator person;
  const std::function<bool()> neverStops;
  UnattendedDelivery nobody({}, person, neverStops);
  const UnattendedResult waits = nobody.send(setup, run);
  EXPECT_FALSE(waits.complete);
  EXPECT_EQ(contentOf(waits.savedList).count("@example.org|"), 3);
  EXPECT_FALSE(QFile::exists(at("mails/4"))) << "opened with nobody there";
}

struct Fault {
  const char* why;
  QByteArray orders;
  std::vector<EntryState> states;
};

TEST_F(OutlookMail, FaultsAreToldApart) {
  using enum EntryState;
  const Fault faults[] = {
      {"a refusal ended the run", "Send refuse 2", {Sent, Failed, Sent}},
      {"an attachment that was refused did not hold the mail",
       "Add silent 2",
       {Sent, Failed, Sent}},
      {"sent again though it may have gone out", "Send done-die 2", {Sent, Unknown, Sent}},
      {"lost though it never went out", "Subject die 2", {Sent, Sent, Sent}},
      {"a program that begins by ending counted as an answer",
       "CreateItem die",
       {Temporary, Temporary, Temporary}},
      {"no patience", "To busy 2", {Sent, Sent, Sent}},
  };
  for (const Fault& fault : faults) {
    ASSERT_TRUE(QDir(at("mails")).removeRecursively() && QDir(m_folder.path()).mkdir("mails"));
    order(fault.orders);
    EXPECT_EQ(states(send()), fault.states) << fault.why;
    const auto gone = std::ranges::count_if(
        fault.states, [](EntryState state) { return state == Sent || state == Unknown; });
    EXPECT_EQ(filesBelow(at("mails")).filter("/fate").size(), gone) << fault.why;
  }
}

TEST_F(OutlookMail, AStopEndsTheWaitForABusyProgram) {
  order("CreateItem always-busy");
  watcher.stopAfterEvents = 6;
  const SendSummary summary = send();
  EXPECT_TRUE(summary.stopped);
  EXPECT_EQ(summary.rowsIn({EntryState::NotReached}).size(), 3U);
}

TEST_F(OutlookMail, AnotherFileUnderTheNameStays) {
  run.outputs[1].identity = platform::FileDigest::ofBytes("%PDF of somebody else");
  const SendSummary summary = send();
  EXPECT_EQ(states(summary), std::vector({EntryState::Sent, EntryState::Held, EntryState::Sent}));
}

} // namespace
} // namespace folivex::test
