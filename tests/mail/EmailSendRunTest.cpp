#include "mail/EmailSendRun.h"
#include "engine/setup/SplitSetup.h"
#include "mail/EmailSettingsCheck.h"
#include "mail/MailTransportChoice.h"
#include "mail/SendTest.h"
#include "mail/SmtpTransport.h"
#include "tests/mail/MailServerProcess.h"
#include "tests/support/RunBench.h"

#include <QTemporaryDir>

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
  SendSummary run(const QString& server, const EmailEntries& entries,
                  Source source = Source::SplitRun, const SentBefore& before = {}) {
    setup.emailSmtp = server;
    SmtpTransport transport(mailServerOf(setup), options);
    EmailSendRun sending(
        setup, source,
        {transport, watcher, RealLibraries::get().split.get(), report, [this] { return now; }});
    sending.skipSentBefore(before);
    return sending.run(entries);
  }
  QByteArray log() const { return contentOf(setup.emailLogFile); }

  QTemporaryDir folder;
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
  MailServerProcess server("faulty_smtp_server.py", {"code-at-recipient", "550", "bad"});
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

TEST_F(EmailSend, TestModeReachesNobodyElse) {
  MailServerProcess server("smtp_server.py", {});
  setup.emailTest = true;
  setup.emailInvoiceCc = "boss@example.org";
  EmailEntry own = entry("anna@example.org", "1.pdf");
  own.cc = "bert@example.org";
  EXPECT_EQ(run(server.text(), {own}, Source::Spreadsheet).counts.sentOk, 1);
  ASSERT_EQ(server.mails().size(), 1U);
  EXPECT_EQ(strings(server.mails()[0]["recipients"]), QStringList("office@example.org"));
  EXPECT_TRUE(log().contains("office@example.org") && !log().contains("anna@"));
}

TEST_F(EmailSend, EntriesOfASpreadsheetCarryTheirOwnTexts) {
  MailServerProcess server("smtp_server.py", {});
  setup.emailInvoiceCc = "boss@example.org";
  EmailEntry own = entry("anna@example.org", "1.pdf");
  own.body = "Dear\r\nAnna\\nhello";
  own.cc = "bert@example.org";
  own.subject = "Yours";
  own.invoiceNumberInSubject = "4711";
  EmailEntry bare = entry("carl@example.org", "2.pdf");
  run(server.text(), {own, bare}, Source::Spreadsheet);
  setup.emailHtml = true;
  run(server.text(), {own}, Source::ListFile);
  ASSERT_EQ(server.mails().size(), 3U);
  const auto mail = [&](std::size_t i) {
    const QJsonObject got = server.mails()[i];
    return QStringList{got["subject"].toString(), got["body"].toString().trimmed(),
                       strings(got["cc"]).join(','), got["bodyType"].toString()};
  };
  EXPECT_EQ(mail(0),
            QStringList({"Yours 4711", "DearAnna\r\nhello", "bert@example.org", "text/plain"}));
  EXPECT_EQ(mail(1),
            QStringList({"Statement", "General\r\ntext", "boss@example.org", "text/plain"}));
  EXPECT_EQ(mail(2),
            QStringList({"Yours 4711", "General\r\ntext", "boss@example.org", "text/html"}));
}

TEST_F(EmailSend, SendsThePageRangeOfAnEntry) {
  MailServerProcess server("smtp_server.py", {});
  TextPdf pdf;
  for (int page = 1; page <= 3; ++page) {
    pdf.page({QStringLiteral("page%1").arg(page)});
  }
  EmailEntry range;
  range.address = "anna@example.org";
  range.file = folder.filePath("all.pdf");
  writeFile(range.file, pdf.bytes());
  range.extractPageStart = range.extractPageEnd = 2;
  EmailEntry beyond = range;
  beyond.extractPageEnd = 9;
  EXPECT_EQ(run(server.text(), {range, beyond}).message(), "(2) Emails sent ok: 1, errors: 1");
  ASSERT_EQ(server.mails().size(), 1U);
  const QJsonObject attached = server.mails()[0]["attachments"].toArray()[0].toObject();
  EXPECT_EQ(attached["name"].toString(), "all p2-2.pdf");
  const QString got = folder.filePath("got.pdf");
  writeFile(got, QByteArray::fromBase64(attached["bytes"].toString().toLatin1()));
  EXPECT_EQ(pageTexts(got), QStringList("page2"));
}

/// A run broke off; what its log proves is not sent twice, what it does not prove is sent.
TEST_F(EmailSend, GoesOnWhereARunBrokeOff) {
  EmailEntries entries;
  for (int i = 0; i < 6; ++i) {
    entries.push_back(
        entry(QStringLiteral("r%1@example.org").arg(i), QStringLiteral("%1.pdf").arg(i)));
  }
  {
    MailServerProcess server("faulty_smtp_server.py", {"rate", "2"});
    watcher.stopAfter = 4;
    const SendSummary summary = run(server.text(), entries);
    EXPECT_TRUE(summary.stopped);
    EXPECT_EQ(states(summary),
              std::vector({EntryState::Sent, EntryState::Sent, EntryState::Temporary,
                           EntryState::Temporary, EntryState::NotReached, EntryState::NotReached}));
  }
  {
    MailServerProcess server("faulty_smtp_server.py", {"close-unanswered"});
    watcher = {};
    EXPECT_EQ(states(run(server.text(), {entries[2]})), std::vector({EntryState::Unknown}));
  }
  // An older line about another file of the name, and a line that the crash tore.
  now = QDateTime(QDate(1999, 1, 1), QTime(0, 0));
  {
    QFile logFile(setup.emailLogFile);
    ASSERT_TRUE(logFile.open(QIODevice::Append));
    logFile.write(emailLogLine(now, entries[3].address, entries[3].file, "OK")
                      .replace("\n", "\r\n")
                      .toUtf8());
    logFile.write(emailLogLine(QDateTime(QDate(2099, 1, 1), QTime(0, 0)), entries[4].address,
                               entries[4].file, "OK")
                      .toUtf8()
                      .chopped(4));
  }
  const SentBefore before = SentBefore::fromLog(setup.emailLogFile);
  MailServerProcess server("faulty_smtp_server.py", {"none"});
  watcher = {};
  setup.emailSmtp = server.text();
  SmtpTransport transport(mailServerOf(setup));
  const EmailSendRun asking(setup, Source::SplitRun,
                            {transport, watcher, nullptr, nullptr, [this] { return now; }});
  EXPECT_EQ(asking.countSentBefore(entries, before).sent, 2U);
  EXPECT_EQ(asking.countSentBefore(entries, before).mayHaveArrived, 1U);
  const SendSummary summary = run(server.text(), entries, Source::SplitRun, before);
  EXPECT_EQ(states(summary),
            std::vector({EntryState::SentBefore, EntryState::SentBefore, EntryState::Unknown,
                         EntryState::Sent, EntryState::Sent, EntryState::Sent}));
  EXPECT_EQ(server.mails().size(), 3U);
  // The torn line spoils no line behind it.
  EXPECT_TRUE(log().contains("\n1999-01-01 00:00:00 r4@example.org"));
}

/// Whatever goes wrong: every mail of the list is tried or given its reason, and nothing that was
/// not taken counts as sent.
TEST_F(EmailSend, EveryFaultIsCountedLoggedAndToldAndTheRunGoesOn) {
  struct Row {
    QStringList fault;
    int sent;
    const char* told;
  };
  const Row rows[] = {
      {{"code-at-recipient", "550", "r2"}, 3, "550 nobody here (recipient r2@"},
      {{"close-unanswered"}, 0, "may have arrived"},
      {{"rate", "2"}, 2, "451 rate limit"},
  };
  EmailEntries entries;
  for (int i = 0; i < 4; ++i) {
    entries.push_back(entry(QStringLiteral("r%1@example.org").arg(i), "1.pdf"));
  }
  for (const Row& row : rows) {
    SCOPED_TRACE(row.told);
    QFile::remove(setup.emailLogFile);
    watcher = {};
    MailServerProcess server("faulty_smtp_server.py", row.fault);
    EXPECT_EQ(run(server.text(), entries).message(),
              QStringLiteral("(4) Emails sent ok: %1, errors: %2").arg(row.sent).arg(4 - row.sent));
    EXPECT_EQ(log().count(" OK\r\r\n"), row.sent);
    EXPECT_EQ(log().count("\nerror: ") + (log().startsWith("error: ") ? 1 : 0), 4 - row.sent);
    EXPECT_EQ(log().count(row.told), 2 * (4 - row.sent)) << log().toStdString();
    QStringList taken;
    for (const QJsonObject& mail : server.mails()) {
      taken += mail["accepted"].toBool() ? strings(mail["recipients"]) : QStringList();
    }
    EXPECT_EQ(taken.size(), row.sent);
    EXPECT_EQ(taken.removeDuplicates(), 0) << "sent twice";
  }
}

/// What the checks let pass is what the server gets.
TEST_F(EmailSend, BlanksAroundAddressesAndAPauseBelowZeroMeanNothing) {
  MailServerProcess server("smtp_server.py", {});
  setup.emailFrom = " office@example.org ";
  setup.emailInvoiceCc = "boss@example.org ";
  setup.emailPause = -1;
  EXPECT_EQ(run(server.text(), {entry("anna@example.org ", "1.pdf")}).counts.sentOk, 1)
      << log().toStdString();
  const MailTransportChoice choice = transportFor(setup);
  PlainWait wait;
  EXPECT_TRUE(sendTest(setup, choice, wait).ok);
  QStringList recipients;
  for (const QJsonObject& mail : server.mails()) {
    recipients += strings(mail["recipients"]).join(u' ');
  }
  EXPECT_EQ(recipients, QStringList({"anna@example.org boss@example.org", "office@example.org"}));
}

TEST_F(EmailSend, LeavesAServerAloneThatRefusesTheLogin) {
  MailServerProcess server("faulty_smtp_server.py", {"login-refused"});
  setup.emailLogin = "me";
  setup.emailPassword = "s3cret";
  EmailEntries entries;
  for (int i = 0; i < 10; ++i) {
    entries.push_back(entry(QStringLiteral("r%1@example.org").arg(i), "1.pdf"));
  }
  // No pause between mails that are not tried: in one, only the stop would go on.
  int ticks = 0;
  watcher.onEvents = [&] {
    setup.emailPause = watcher.last.errors >= 3 ? 3'600'000 : 0;
    ticks += setup.emailPause > 0 ? 1 : 0;
    watcher.stopAfter = ticks > 100 ? 0 : -1;
  };
  const SendSummary summary = run(server.text(), entries);
  EXPECT_EQ(summary.message(), "(10) Emails sent ok: 0, errors: 10");
  EXPECT_EQ(server.connections(), 3);
  EXPECT_EQ(summary.rowsToSendAgain().size(), 10U);
  // Those that were not tried stand with those of the same cause.
  EXPECT_EQ(summary.rowsIn({EntryState::Failed}).size(), 10U);
  EXPECT_EQ(summary.details(), "");
}

TEST_F(EmailSend, APathThatAListCutIsTold) {
  MailServerProcess server("smtp_server.py", {});
  EmailEntry found = entry("anna@example.org", "1.pd");
  EmailEntry gone = entry("bert@example.org", "2.pd");
  QFile::remove(gone.file);
  found.fileIsCut = gone.fileIsCut = true;
  gone.extractPageStart = gone.extractPageEnd = 1;
  const SendSummary summary = run(server.text(), {found, gone});
  EXPECT_EQ(states(summary), std::vector({EntryState::Sent, EntryState::Failed}));
  EXPECT_TRUE(summary.entries[1].errorText.contains("longer than an e-mail list holds"))
      << summary.entries[1].errorText.toStdString();
}

TEST_F(EmailSend, APauseStandsBeforeTheFirstMailToo) {
  MailServerProcess server("smtp_server.py", {});
  setup.emailPause = 3'600'000;
  watcher.stopAfter = 0; // only the stop ends the pause
  const SendSummary summary = run(server.text(), {entry("anna@example.org", "1.pdf")});
  EXPECT_EQ(states(summary), std::vector({EntryState::NotReached}));
  EXPECT_EQ(server.mails().size(), 0U);
}

TEST_F(EmailSend, ALogThatCannotBeOpenedStopsNothing) {
  MailServerProcess server("smtp_server.py", {});
  for (const QString& path : {folder.path(), folder.filePath("no/log.txt"), QString("nul")}) {
    setup.emailLogFile = path;
    EXPECT_EQ(run(server.text(), {entry("anna@example.org", "1.pdf")}).counts.sentOk, 1)
        << path.toStdString();
  }
}

TEST_F(EmailSend, SendTestTellsHowItWent) {
  qputenv("TMPDIR", folder.path().toUtf8());
  PlainWait wait;
  MailServerProcess server("smtp_server.py", {});
  setup.emailSmtp = server.text();
  MailTransportChoice good = transportFor(setup);
  const SendTestResult sent = sendTest(setup, good, wait);
  EXPECT_EQ(sent.message,
            "Message(s) Sent Successfully.\n\nNOTE: mailto and cc message sent to from address.");
  ASSERT_EQ(server.mails().size(), 1U);
  EXPECT_EQ(strings(server.mails()[0]["to"]) + strings(server.mails()[0]["cc"]),
            QStringList({"office@example.org", "office@example.org"}));

  const MailTransportChoice gone = transportFor(setup);
  const SendTestResult failed = sendTest(setup, gone, wait);
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
  struct Row {
    std::function<void(SplitSetup&)> change;
    const char* field; ///< of the finding, empty for none
    FindingWeight weight = FindingWeight::Problem;
  };
  const Row rows[] = {
      {[](auto&) {}, ""},
      {[](auto& s) { s.emailSmtp.clear(); }, "EMAILSMTP"},
      {[](auto& s) { s.emailFrom = "office"; }, "EMAILFROM"},
      {[](auto& s) { s.emailInvoiceCc = "a@example.org;b"; }, "EMAILINVOICECC"},
      {[](auto& s) { s.emailPause = 3'600'001; }, "EMAILPAUSE"},
      {[](auto& s) { s.emailSubject = " "; }, "EMAILSUBJECT", FindingWeight::Hint},
      {[](auto& s) {
         s.emailLogin = "me";
         s.emailPassword = "s3cret";
       },
       "EMAILSMTP", FindingWeight::Hint},
      {[](auto& s) { s.emailPassword = "s3cret"; }, "EMAILLOGIN", FindingWeight::Hint},
  };
  setup.emailSmtp = "mail.example.org";
  for (const Row& row : rows) {
    SplitSetup changed = setup;
    row.change(changed);
    const auto findings = checkEmailSettings(changed);
    ASSERT_EQ(findings.size(), QLatin1String(row.field).isEmpty() ? 0U : 1U) << row.field;
    EXPECT_EQ(hasProblem(findings), !findings.empty() && row.weight == FindingWeight::Problem);
    if (!findings.empty()) {
      EXPECT_EQ(findings[0].field, row.field);
      EXPECT_FALSE(findings[0].text.contains("s3cret"));
    }
  }
  EXPECT_TRUE(pauseProblem(" 250 ").isEmpty());
  EXPECT_FALSE(pauseProblem("3s").isEmpty());
#ifndef Q_OS_WIN
  setup.useOutlook = true;
  EXPECT_TRUE(hasProblem(checkEmailSettings(setup)));
  EXPECT_EQ(transportFor(setup).transport, nullptr);
  EXPECT_TRUE(transportFor(setup).problem.contains("Windows only"));
#endif
}

} // namespace
} // namespace folivex::test
