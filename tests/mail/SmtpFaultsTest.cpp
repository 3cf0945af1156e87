#include "mail/SmtpTransport.h"
#include "tests/mail/MailServerProcess.h"
#include "tests/support/Rows.h"

#include <QTemporaryDir>

namespace folivex::test {
namespace {

/// Where the server hangs for good any time will do; elsewhere a slow machine has its time.
SmtpOptions optionsFor(const QString& fault) {
  SmtpOptions options;
  (fault == "mute"                                         ? options.connectTimeoutMs
   : fault == "stall-in-mail" || fault == "endless-answer" ? options.answerTimeoutMs
   : fault == "hang-unanswered"                            ? options.finalAnswerTimeoutMs
                                                           : options.goodbyeTimeoutMs) = 200;
  return options;
}

QString nameOf(MailOutcome outcome) {
  return QStringList(
      {"Sent", "Refused", "Temporary", "Unknown", "Stopped", "FileChanged"})[int(outcome)];
}

/// One mail to a server that goes wrong at one point: it is called sent only if it was taken, and
/// tried once. A row: fault, what became of the mail, last answer, mails that the server got whole,
/// what is told.
TEST(SmtpFaults, TellWhatBecameOfTheMail) {
  QTemporaryDir folder;
  QFile large(folder.filePath("large.pdf"));
  ASSERT_TRUE(large.open(QIODevice::WriteOnly) && large.resize(30'000'000));
  MailServerProcess process;
  forEachRow("mail/faults.json", [&](const SplitSetup&, const QStringList& row) {
    const QStringList fault = row[0].split(' ');
    process.become(fault);
    MailServer server = parseMailServer(process.text());
    if (fault[0].contains("login")) {
      server.login = "me";
      server.password = "s3cret";
    }
    MailMessage message = plainMail("anna@example.org");
    message.cc = "copy@example.org";
    if (fault[0].endsWith("-in-mail")) {
      message.attachmentPath = large.fileName();
    }
    SmtpTransport transport(server, optionsFor(fault[0]));
    PlainWait wait;
    const MailResult result = transport.send(message, wait);
    transport.disconnect();
    SCOPED_TRACE(result.errorText.toStdString());
    EXPECT_EQ(nameOf(result.outcome), row[1]);
    EXPECT_EQ(result.sent() ? 250 : result.serverCode, row[2].toInt());
    EXPECT_EQ(result.errorText.isEmpty(), result.sent());
    EXPECT_TRUE(result.errorText.contains(row[4]));
    EXPECT_FALSE(result.errorText.contains("s3cret"));
    EXPECT_FALSE(result.errorText.contains(QByteArray("\0me\0s3cret", 10).toBase64()));
    EXPECT_EQ(process.mails().size(), row[3].toULong());
    EXPECT_EQ(!process.taken().isEmpty(), result.sent());
    EXPECT_EQ(process.connections(), 1);
  });
}

/// Limits of a connection cost a new connection and no mail; each is sent exactly once.
TEST(SmtpFaults, ConnectionLimitsCostNoMail) {
  struct Row {
    QStringList fault;
    int sent;
    int connections;
  };
  const Row rows[] = {
      {{"limit", "10"}, 25, 3},
      {{"close-after", "10"}, 25, 3},
      {{"limit", "0"}, 0, 25}, // never takes one: each is tried once
      {{"rate", "7"}, 7, -1},
  };
  MailServerProcess process;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.fault.join(' ').toStdString());
    process.become(row.fault);
    SmtpTransport transport(parseMailServer(process.text()));
    PlainWait wait;
    QStringList sent;
    for (int i = 0; i < 25; ++i) {
      const QString recipient = QStringLiteral("r%1@example.org").arg(i);
      const MailResult result = transport.send(plainMail(recipient), wait);
      EXPECT_EQ(result.outcome, result.sent() ? MailOutcome::Sent : MailOutcome::Temporary);
      sent += result.sent() ? QStringList(recipient) : QStringList();
    }
    EXPECT_EQ(process.taken(), sent);
    EXPECT_EQ(sent.size(), row.sent);
    EXPECT_TRUE(row.connections < 0 || process.connections() == row.connections)
        << process.connections();
    EXPECT_EQ(transport.connectionCount(), process.connections());
  }
}

/// The server hangs for good: only the stop brings send() back.
TEST(SmtpFaults, StopEndsTheWaitAtEveryPoint) {
  MailServerProcess process;
  for (const auto& [fault, outcome] :
       {std::pair("mute", MailOutcome::Stopped), {"hang-unanswered", MailOutcome::Unknown}}) {
    SCOPED_TRACE(fault);
    process.become({fault});
    SmtpTransport transport(parseMailServer(process.text()));
    PlainWait wait;
    int events = 0;
    MailOutcome nested = MailOutcome::Sent;
    wait.onEvents = [&] {
      if (++events == 5) {
        nested = transport.send(plainMail("bert@example.org"), wait).outcome;
      }
      wait.stop = events >= 10;
    };
    EXPECT_EQ(transport.send(plainMail("anna@example.org"), wait).outcome, outcome);
    EXPECT_EQ(nested, MailOutcome::Refused);
    EXPECT_EQ(process.taken(), QStringList());
  }
}

/// What goes out are the bytes that were compared, whatever becomes of the file meanwhile.
TEST(SmtpFaults, AnAttachmentIsReadOnceAndCompared) {
  MailServerProcess process;
  QTemporaryDir folder;
  MailMessage message = plainMail("anna@example.org");
  message.attachmentPath = folder.filePath("a.pdf");
  const QByteArray bytes = "%PDF" + QByteArray(3'000'000, 'x');
  writeFile(message.attachmentPath, bytes);
  message.attachmentIdentity = platform::FileDigest::of(message.attachmentPath);
  SmtpTransport transport(parseMailServer(process.text()));
  PlainWait wait;
  wait.onEvents = [&] { writeFile(message.attachmentPath, "%PDF of somebody else"); };
  EXPECT_TRUE(transport.send(message, wait).sent());
  wait.onEvents();
  const MailResult result = transport.send(message, wait);
  EXPECT_EQ(nameOf(result.outcome), "FileChanged");
  EXPECT_TRUE(result.errorText.contains("changed since it was written"))
      << result.errorText.toStdString();
  const std::vector<QJsonObject> mails = process.mails();
  ASSERT_EQ(mails.size(), 1U);
  const QJsonValue attached = mails[0]["attachments"].toArray()[0];
  EXPECT_EQ(QByteArray::fromBase64(attached["bytes"].toString().toLatin1()), bytes);
}

} // namespace
} // namespace folivex::test
