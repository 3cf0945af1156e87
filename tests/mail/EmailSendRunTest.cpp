#include "mail/EmailSendRun.h"
#include "engine/setup/SplitSetup.h"
#include "mail/EmailSettingsCheck.h"
#include "mail/MailTransportChoice.h"
#include "mail/SendTest.h"
#include "mail/SmtpTransport.h"
#include "tests/mail/MailServerProcess.h"
#include "tests/support/Rows.h"
#include "tests/support/RunBench.h"

#include <QTemporaryDir>

#include <csignal>
#include <sys/resource.h>

namespace folivex::test {
namespace {

using Source = EmailSendRun::ListSource;

/// Answers and keeps what the status dialog would show.
class Watcher : public SendWatcher {
public:
  void handlePendingEvents() override {
    if (onEvents) {
      onEvents();
    }
  }
  bool stopRequested() override { return stopAfter >= 0 && last.handled >= stopAfter; }
  void onProgress(const EmailProgress& progress) override {
    last = progress;
    recipients += progress.recipient;
  }

  EmailProgress last;
  QStringList recipients;
  std::function<void()> onEvents;
  int stopAfter = -1;
};

class EmailSend : public testing::Test {
protected:
  EmailSend() {
    setup.emailFrom = "office@example.org";
    setup.emailFromName = "The Office";
    setup.emailSubject = "Statement";
    setup.emailMsg = "General\r\ntext";
    setup.emailTest = false;
    setup.emailLogFile = folder.filePath("emails_log.txt");
  }

  QString file(const QString& name) {
    QString path = folder.filePath(name);
    writeFile(path, "%PDF " + name.toUtf8());
    return path;
  }
  EmailEntry entry(const QString& address, const QString& name) {
    EmailEntry made;
    made.address = address;
    made.file = file(name);
    return made;
  }
  /// "r0@example.org" with "0.pdf" and so on.
  EmailEntries numbered(int count) {
    EmailEntries entries;
    for (int i = 0; i < count; ++i) {
      entries.push_back(entry(QStringLiteral("r%1@example.org").arg(i), QString("%1.pdf").arg(i)));
    }
    return entries;
  }
  /// Each run is a program of its own: what an earlier one left stands in the journal.
  SendSummary run(const QString& server, EmailEntries entries, Source source = Source::SplitRun) {
    setup.emailSmtp = server;
    SmtpTransport transport(mailServerOf(setup), options);
    SendJournal journal;
    EXPECT_TRUE(journal.open(list, {}) && journal.enter(entries))
        << journal.problem().toStdString();
    EmailSendRun sending(
        setup, source,
        {transport, watcher, {&journal}, RealLibraries::get().split.get(), report, [this] {
           return now;
         }});
    return sending.run(entries);
  }
  QByteArray log() const { return contentOf(setup.emailLogFile); }

  QTemporaryDir folder;
  QString list = folder.filePath("mails.lst");
  SplitSetup setup;
  SmtpOptions options;
  Watcher watcher;
  EmailReport* report = nullptr;
  QDateTime now = QDateTime(QDate(2099, 3, 4), QTime(5, 6, 7));
};

QByteArray padded(const QString& text, int width) {
  return text.toUtf8().leftJustified(width);
}

std::vector<EntryState> states(const SendSummary& summary) {
  std::vector<EntryState> all;
  all.reserve(summary.entries.size());
  for (const EntryResult& result : summary.entries) {
    all.push_back(result.state);
  }
  return all;
}

TEST_F(EmailSend, CountsLogsAndReportsEveryEntry) {
  MailServerProcess server({"code-at-recipient", "550", "bad"});
  EmailCsvReport csv;
  const QString csvPath = folder.filePath("in.pdf_email_report.csv");
  ASSERT_EQ(csv.open(csvPath, "/in/in.pdf", now), "");
  report = &csv;
  EmailEntries entries = {entry("anna@example.org", "1.pdf"), entry("", "2.pdf"),
                          entry("bad@example.org", "3, \"x\".pdf"), entry("no address", "4.pdf")};
  entries.push_back(entry("late@example.org", "5.pdf"));
  QFile::remove(entries[4].file);
  const SendSummary summary = run(server.text(), entries);
  EXPECT_TRUE(csv.close());
  EXPECT_EQ(summary.message(), "(4) Emails sent ok: 1, errors: 3");
  EXPECT_EQ(states(summary),
            std::vector({EntryState::Sent, EntryState::NoAddress, EntryState::Failed,
                         EntryState::Failed, EntryState::Failed}));
  EXPECT_EQ(summary.rowsToSendAgain(), std::vector<std::size_t>({2, 3, 4}));
  EXPECT_EQ(watcher.last.handled, 4);
  const QByteArray time = "2099-03-04 05:06:07 ";
  const QByteArray first =
      time + padded("anna@example.org", 100) + ' ' + padded(entries[0].file, 80) + " OK\r\r\n";
  const QByteArray third = "error: " + summary.entries[2].errorText.toUtf8() + "\r\n" + time +
                           padded("bad@example.org", 100) + ' ' + padded(entries[2].file, 80) +
                           " Error - " + summary.entries[2].errorText.toUtf8() + "\r\r\n";
  EXPECT_TRUE(log().startsWith(first + third)) << log().toStdString();
  EXPECT_EQ(log().count("\r\r\n"), 4);
  EXPECT_EQ(QFile::permissions(setup.emailLogFile) & 0x0077, QFile::Permissions());
  const QByteArray lines = contentOf(csvPath);
  EXPECT_TRUE(lines.contains("2099-03-04 05:06:07,anna@example.org," + entries[0].file.toUtf8() +
                             ",OK\r\r\n"));
  EXPECT_TRUE(lines.contains(",\"" + entries[2].file.toUtf8().replace("\"", "\"\"") + "\","))
      << lines.toStdString();
}

/// A sheet's entry has texts of its own; what the checks let pass is what the server gets.
TEST_F(EmailSend, WhoGetsWhichMail) {
  MailServerProcess server;
  setup.emailFrom = " office@example.org ";
  setup.emailInvoiceCc = "boss@example.org ";
  setup.emailPause = -1;
  EmailEntry own = entry("anna@example.org ", "1.pdf");
  own.body = "Dear\r\nAnna\\nhello";
  own.cc = "bert@example.org";
  own.subject = "Yours";
  own.invoiceNumberInSubject = "4711";
  run(server.text(), {own, entry("carl@example.org", "2.pdf")}, Source::Spreadsheet);
  setup.emailHtml = true;
  list = folder.filePath("other.lst");
  run(server.text(), {own}, Source::ListFile);
  setup.emailTest = true; // reaches nobody else
  run(server.text(), {own}, Source::Spreadsheet);
  EXPECT_EQ(log().count("anna@"), 2);
  QStringList got;
  for (const QJsonObject& mail : server.mails()) {
    got += QStringList({strings(mail["recipients"]).join(' '), mail["subject"].toString(),
                        mail["body"].toString().trimmed(), mail["bodyType"].toString()})
               .join(" / ");
  }
  EXPECT_EQ(got,
            QStringList({"anna@example.org bert@example.org / Yours 4711 / DearAnna\r\nhello / "
                         "text/plain",
                         "carl@example.org boss@example.org / Statement / General\r\ntext / "
                         "text/plain",
                         "anna@example.org boss@example.org / Yours 4711 / General\r\ntext / "
                         "text/html",
                         "office@example.org / Yours 4711 / DearAnna\r\nhello / text/html"}));
}

TEST_F(EmailSend, WhatIsAttached) {
  MailServerProcess server;
  EmailEntry range = entry("anna@example.org", "all.pdf");
  writeFile(range.file, statements({"page1", "page2", "page3"}).bytes());
  range.identity = platform::FileDigest::of(range.file);
  range.extractPageStart = range.extractPageEnd = 2;
  EmailEntry beyond = range;
  beyond.extractPageEnd = 9;
  // A path that a list cut may lead to a file all the same.
  EmailEntry cut = entry("anna@example.org", "1.pd");
  cut.fileIsCut = true;
  EmailEntry gone = cut;
  gone.file += "f";
  gone.extractPageStart = gone.extractPageEnd = 1;
  const SendSummary summary = run(server.text(), {range, beyond, cut, gone});
  EXPECT_EQ(states(summary), std::vector({EntryState::Sent, EntryState::Failed, EntryState::Sent,
                                          EntryState::Failed}));
  EXPECT_TRUE(summary.entries[3].errorText.contains("longer than an e-mail list holds"))
      << summary.entries[3].errorText.toStdString();
  const std::vector<QJsonObject> mails = server.mails();
  ASSERT_EQ(mails.size(), 2U);
  const QJsonValue attached = mails[0]["attachments"].toArray()[0];
  EXPECT_EQ(attached["name"].toString(), "all p2-2.pdf");
  EXPECT_EQ(QByteArray::fromBase64(attached["bytes"].toString().toLatin1()),
            contentOf(folder.filePath("all p2-2.pdf")));
}

/// A run broke off; what its journal tells of is not sent twice, whatever became of the log.
TEST_F(EmailSend, GoesOnWhereARunBrokeOff) {
  const EmailEntries entries = numbered(6);
  MailServerProcess server({"rate", "2"});
  watcher.stopAfter = 4;
  const SendSummary first = run(server.text(), entries);
  EXPECT_TRUE(first.stopped);
  EXPECT_EQ(first.message(), "(4) Emails sent ok: 2, errors: 2");
  EXPECT_EQ(states(first),
            std::vector({EntryState::Sent, EntryState::Sent, EntryState::Temporary,
                         EntryState::Temporary, EntryState::NotReached, EntryState::NotReached}));
  server.become({"close-unanswered"});
  watcher = {};
  const SendSummary second = run(server.text(), {entries[2]});
  EXPECT_EQ(states(second), std::vector({EntryState::Unknown}));
  EXPECT_EQ(second.message(), "(1) Emails sent ok: 0, errors: 1");
  // A death in the middle of a mail, and one while the next line was written.
  {
    EmailEntries again = entries;
    SendJournal journal;
    ASSERT_TRUE(journal.open(list, {}) && journal.enter(again));
    EXPECT_TRUE(journal.begin(3, entries[3].address));
    SendJournal other;
    EXPECT_FALSE(other.open(list, {}));
    EXPECT_TRUE(other.isInWork()) << "a list was sent twice at the same time";
  }
  const QString journalPath = SendJournal::pathBeside(list);
  const QByteArray torn = "{\"begin\":4,\"to\":\"r4@exam";
  writeFile(journalPath, contentOf(journalPath) + torn);
  QFile::remove(setup.emailLogFile);
  server.become({"none"});
  watcher = {};
  EXPECT_EQ(states(run(server.text(), entries)),
            std::vector({EntryState::SentBefore, EntryState::SentBefore, EntryState::Unknown,
                         EntryState::Unknown, EntryState::Sent, EntryState::Sent}));
  EXPECT_EQ(states(run(server.text(), entries)),
            std::vector({EntryState::SentBefore, EntryState::SentBefore, EntryState::Unknown,
                         EntryState::Unknown, EntryState::SentBefore, EntryState::SentBefore}));
  EXPECT_EQ(server.taken(), QStringList({"r4@example.org", "r5@example.org"}));
  // A mail of test mode has not reached the one that it is for.
  setup.emailTest = true;
  EXPECT_EQ(run(server.text(), {entries[0]}).counts.sentOk, 1);
  EXPECT_EQ(states(run(server.text(), {entries[0]})), std::vector({EntryState::SentBefore}));
}

/// What lies at the path by now may be somebody else's: it is compared, whole or page by page.
TEST_F(EmailSend, AFileThatIsNotTheOneThatWasWrittenIsNotSent) {
  MailServerProcess server;
  EmailEntries entries = numbered(3);
  EmailEntry range = entry("range@example.org", "all.pdf");
  writeFile(range.file, statements({"page1", "page2"}).bytes());
  range.extractPageStart = range.extractPageEnd = 1;
  entries.push_back(range);
  for (EmailEntry& each : entries) {
    each.identity = platform::FileDigest::of(each.file);
  }
  writeFile(entries[1].file, contentOf(entries[1].file).replace("1", "2")); // as long as before
  writeFile(range.file, statements({"other", "pages"}).bytes());
  entries[2].addressesDiffer = true;
  const SendSummary summary = run(server.text(), entries);
  EXPECT_EQ(states(summary),
            std::vector({EntryState::Sent, EntryState::Held, EntryState::Held, EntryState::Held}));
  EXPECT_EQ(summary.rowsToSendAgain(), std::vector<std::size_t>({1, 2, 3}));
  EXPECT_EQ(server.taken(), QStringList("r0@example.org"));
  EXPECT_EQ(log().count("Error - the file"), 3) << log().toStdString();
  EXPECT_EQ(log().count("changed since it was written"), 4);
}

/// Files of a process can grow up to here, as on a disk that is full.
class FullDisk {
public:
  explicit FullDisk(qint64 bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit limit{static_cast<rlim_t>(bytes), m_before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_before); }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

private:
  rlimit m_before{};
};

/// A mail that could not be told of beforehand is not sent, and one that could be is known.
TEST_F(EmailSend, AJournalThatCannotBeWrittenEndsTheRun) {
  MailServerProcess server;
  const EmailEntries entries = numbered(5);
  setup.emailLogFile.clear();
  std::unique_ptr<FullDisk> full;
  watcher.onEvents = [&] {
    if (!full && watcher.last.handled == 2) {
      full = std::make_unique<FullDisk>(QFileInfo(SendJournal::pathBeside(list)).size() + 20);
    }
  };
  const SendSummary summary = run(server.text(), entries);
  full.reset();
  EXPECT_EQ(states(summary),
            std::vector({EntryState::Sent, EntryState::Sent, EntryState::NotReached,
                         EntryState::NotReached, EntryState::NotReached}));
  EXPECT_TRUE(summary.details().contains("3 were not sent: the record of what was sent, " +
                                         SendJournal::pathBeside(list)))
      << summary.details().toStdString();
  EXPECT_EQ(server.taken().size(), 2);
  watcher = {};
  EXPECT_EQ(run(server.text(), entries).counts.sentOk, 3);
  EXPECT_EQ(server.taken().size(), 5);
  // A place where none can be made, a planted link, and a file of somebody else's.
  SendJournal journal;
  EXPECT_FALSE(journal.open(folder.filePath("no/mails.lst"), {}));
  const QString victim = file("victim.txt");
  QFile::link(victim, folder.filePath("linked.lst.sent"));
  EXPECT_FALSE(journal.open(folder.filePath("linked.lst"), {}));
  QFile::rename(victim, folder.filePath("mine.lst.sent"));
  EXPECT_FALSE(journal.open(folder.filePath("mine.lst"), {}));
  EXPECT_EQ(contentOf(folder.filePath("mine.lst.sent")), "%PDF victim.txt");
}

/// After three mails that no server answered, or let in, nothing more is tried, and what was not
/// tried is no failure; a server that says "later" is asked about each mail.
TEST_F(EmailSend, ASilentServerIsLeftAloneABusyOneIsNot) {
  options.finalAnswerTimeoutMs = 200;
  for (const char* fault : {"mute", "hang-unanswered", "endless-answer", "login-refused"}) {
    SCOPED_TRACE(fault);
    QFile::remove(SendJournal::pathBeside(list));
    QFile::remove(setup.emailLogFile);
    options.answerTimeoutMs = QByteArray(fault) == "endless-answer" ? 200 : 120'000;
    options.connectTimeoutMs = QByteArray(fault) == "login-refused" ? 30'000 : 200;
    setup.emailLogin = QByteArray(fault) == "login-refused" ? "me" : "";
    setup.emailPassword = "s3cret";
    MailServerProcess server({fault});
    watcher = {};
    const SendSummary summary = run(server.text(), numbered(10));
    EXPECT_EQ(summary.counts.handled, 3);
    EXPECT_EQ(summary.rowsIn({EntryState::NotReached}).size(), 7U);
    EXPECT_TRUE(summary.details().contains("7 were not sent: three e-mails in a row failed"))
        << summary.details().toStdString();
    EXPECT_EQ(log().count("\r\r\n"), 3) << log().toStdString();
    EXPECT_EQ(server.connections(), 3);
  }
  options = {};
  setup.emailLogin.clear();
  MailServerProcess busy({"code-at-sender", "451"});
  QFile::remove(SendJournal::pathBeside(list));
  EXPECT_EQ(run(busy.text(), numbered(10)).counts.handled, 10);
}

TEST_F(EmailSend, ALogThatCannotBeOpenedStopsNothing) {
  MailServerProcess server;
  for (const QString& path : {folder.path(), folder.filePath("no/log.txt"), QString("nul")}) {
    setup.emailLogFile = path;
    QFile::remove(SendJournal::pathBeside(list));
    EXPECT_EQ(run(server.text(), {entry("anna@example.org", "1.pdf")}).counts.sentOk, 1)
        << path.toStdString();
  }
}

TEST_F(EmailSend, SendTestTellsHowItWent) {
  qputenv("TMPDIR", folder.path().toUtf8());
  PlainWait wait;
  MailServerProcess server;
  setup.emailSmtp = server.text();
  EXPECT_EQ(sendTest(setup, transportFor(setup), wait).message,
            "Message(s) Sent Successfully.\n\nNOTE: mailto and cc message sent to from address.");
  ASSERT_EQ(server.taken(), QStringList("office@example.org"));
  EXPECT_EQ(strings(server.mails()[0]["cc"]), QStringList("office@example.org"));

  setup.emailSmtp = "127.0.0.1:1";
  const SendTestResult failed = sendTest(setup, transportFor(setup), wait);
  const QString path = folder.filePath("folivex_mail_error.txt");
  EXPECT_FALSE(failed.ok);
  EXPECT_EQ(failed.reportPath, path);
  EXPECT_TRUE(
      failed.message.startsWith("Error in configuration:the server 127.0.0.1 cannot be reached"));
  EXPECT_TRUE(failed.message.endsWith(
      ", message not sent to:office@example.org\nError report output to file:" + path))
      << failed.message.toStdString();
  const QString error = failed.message.section(", message not sent to:", 0, 0).section(":", 1);
  EXPECT_EQ(contentOf(path), "\xEF\xBB\xBF" + error.toUtf8() + "\r\r\n");
}

TEST_F(EmailSend, SettingsAreCheckedBeforeARun) {
  forEachRow("mail/settings.json", [](const SplitSetup& changed, const QStringList& row) {
    const auto findings = checkEmailSettings(changed);
    ASSERT_EQ(findings.size(), row[0].isEmpty() ? 0 : 1);
    EXPECT_EQ(hasProblem(findings), row[1] == "problem");
    for (const SettingFinding& finding : findings) {
      EXPECT_EQ(finding.key, row[0]);
      EXPECT_FALSE(finding.text.contains("s3cret"));
    }
  });
#ifndef Q_OS_WIN
  setup.useOutlook = true;
  EXPECT_TRUE(hasProblem(checkEmailSettings(setup)));
  EXPECT_EQ(transportFor(setup).transport, nullptr);
  EXPECT_TRUE(transportFor(setup).problem.contains("Windows only"));
#endif
}

} // namespace
} // namespace folivex::test
