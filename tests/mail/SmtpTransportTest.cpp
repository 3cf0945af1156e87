#include "mail/SmtpTransport.h"
#include "tests/mail/MailServerProcess.h"
#include "tests/support/Rows.h"

#include <QTemporaryDir>

namespace folivex::test {
namespace {

/// Bytes of every value, with line ends and lone dots where a mail would mind them.
QByteArray oddBytes(qsizetype size) {
  QByteArray bytes = "%PDF-1.7\r\n.\r\n..\n\r";
  quint32 state = 1;
  while (bytes.size() < size) {
    state = state * 1664525U + 1013904223U;
    bytes += static_cast<char>(state >> 24U);
  }
  return bytes;
}

MailResult sendOne(const MailServer& server, const MailMessage& message,
                   const SmtpOptions& options = {}) {
  SmtpTransport transport(server, options);
  PlainWait wait;
  return transport.send(message, wait);
}

struct Sent {
  MailMessage message;
  QString attachmentName;
  QByteArray attachment;
};

QString onOneLine(QString text) {
  return text.replace("\r\n", " ");
}

void expectArrived(const Sent& sent, const QJsonObject& got) {
  QStringList recipients = {"anna@example.org"};
  QStringList headers = {"Content-Type", "Date",       "From",        "To",
                         "Subject",      "Message-ID", "MIME-Version"};
  if (!sent.message.cc.isEmpty()) {
    recipients += {"b@example.org", "\"c,d\"@example.org"};
    headers.insert(4, "Cc");
  }
  EXPECT_EQ(strings(got["headers"]), headers);
  EXPECT_EQ(strings(got["recipients"]), recipients);
  EXPECT_EQ(strings(got["to"]) + strings(got["cc"]), recipients);
  // That parser leaves a blank between the pieces of a long name.
  QStringList from = strings(got["from"].toArray()[0]);
  if (sent.message.senderName.size() > 100) {
    from[0].remove(' ');
  }
  EXPECT_EQ(from, QStringList({onOneLine(sent.message.senderName), "office@example.org"}));
  EXPECT_EQ(got["subject"].toString(), onOneLine(sent.message.subject));
  EXPECT_EQ(got["bodyType"], sent.message.bodyKind == BodyKind::Html ? "text/html" : "text/plain");
  QString body = sent.message.body;
  body.replace("\r\n", "\n").replace("\n", "\r\n");
  EXPECT_EQ(got["body"].toString().trimmed(), body.trimmed());
  EXPECT_EQ(strings(got["defects"]), QStringList());
  const QJsonArray attachments = got["attachments"].toArray();
  ASSERT_EQ(attachments.size(), sent.attachmentName.isEmpty() ? 0 : 1);
  if (!attachments.isEmpty()) {
    EXPECT_EQ(attachments[0]["name"].toString(), onOneLine(sent.attachmentName));
    EXPECT_EQ(QByteArray::fromBase64(attachments[0]["bytes"].toString().toLatin1()),
              sent.attachment);
    EXPECT_EQ(attachments[0]["type"], sent.attachmentName.endsWith(".pdf")
                                          ? "application/pdf"
                                          : "application/octet-stream");
  }
}

/// Every mail is read back by another program's parser and must be the one that was meant. A row:
/// sender's name, subject, body and its kind, copy addresses, name of the attachment.
TEST(SmtpTransport, MailsArriveAsTheyWereMeant) {
  QTemporaryDir folder;
  MailServerProcess server;
  SmtpTransport transport(parseMailServer(server.text()));
  PlainWait wait;
  std::vector<Sent> all;
  forEachRow("mail/mails.json", [&](const SplitSetup&, const QStringList& row) {
    Sent sent{plainMail("anna@example.org"), row[5],
              row[5].endsWith(".pdf") ? oddBytes(200'000) : QByteArray()};
    MailMessage& message = sent.message;
    message.senderName = row[0];
    message.subject = row[1];
    message.body = row[2];
    message.bodyKind = row[3] == "html" ? BodyKind::Html : BodyKind::Plain;
    message.cc = row[4];
    if (!row[5].isEmpty()) {
      message.attachmentPath = folder.filePath(row[5]);
      writeFile(message.attachmentPath, sent.attachment);
    }
    const MailResult result = transport.send(message, wait);
    EXPECT_TRUE(result.sent()) << result.errorText.toStdString();
    all.push_back(sent);
  });
  EXPECT_EQ(server.connections(), 1);
  const std::vector<QJsonObject> got = server.mails();
  ASSERT_EQ(got.size(), all.size());
  for (std::size_t i = 0; i < got.size(); ++i) {
    SCOPED_TRACE(i);
    expectArrived(all[i], got[i]);
  }
}

TEST(SmtpTransport, AddressesBeyondAscii) {
  MailServerProcess server;
  SmtpTransport transport(parseMailServer(server.text()));
  PlainWait wait;
  EXPECT_TRUE(transport.send(plainMail("anna@bücher.example"), wait).sent());
  EXPECT_TRUE(transport.send(plainMail("rené@bücher.example"), wait).sent());
  EXPECT_EQ(server.taken(),
            QStringList({"anna@xn--bcher-kva.example", "rené@xn--bcher-kva.example"}));
  // A server that takes ASCII only gets nothing that it could misread, at its first mail or later.
  server.become({"none"});
  transport.disconnect();
  EXPECT_EQ(transport.send(plainMail("rené@example.org"), wait).outcome, MailOutcome::Refused);
  EXPECT_TRUE(transport.send(plainMail("anna@example.org"), wait).sent());
  EXPECT_EQ(transport.send(plainMail("rené@example.org"), wait).outcome, MailOutcome::Refused);
  EXPECT_EQ(server.mails().size(), 1U);
}

/// Nothing that is no single address reaches a server, and nothing is sent in its place.
TEST(SmtpTransport, RefusesWhatCannotBeSent) {
  MailServerProcess server;
  const MailServer to = parseMailServer(server.text());
  for (const char* bad : {"", "anna", "a@example.org, b@example.org", "<a@example.org>",
                          "a@example.org\r\nRCPT TO:<b@example.org>"}) {
    EXPECT_EQ(sendOne(to, plainMail(bad)).outcome, MailOutcome::Refused) << bad;
    MailMessage message = plainMail("anna@example.org");
    message.sender = bad;
    EXPECT_EQ(sendOne(to, message).outcome, MailOutcome::Refused) << bad;
  }
  MailMessage copied = plainMail("anna@example.org");
  copied.cc = "good@example.org; bad\r\nBcc: x";
  EXPECT_EQ(sendOne(to, copied).outcome, MailOutcome::Refused);
  MailMessage without = plainMail("anna@example.org");
  without.attachmentPath = "/no/such/file.pdf";
  EXPECT_EQ(sendOne(to, without).outcome, MailOutcome::Refused);
  EXPECT_EQ(server.mails().size(), 0U);

  const MailResult nowhere = sendOne(parseMailServer("host:99999"), plainMail("anna@example.org"));
  EXPECT_TRUE(nowhere.outcome == MailOutcome::Refused && nowhere.concernsEveryMail);
  EXPECT_EQ(sendOne(parseMailServer("127.0.0.1:1"), plainMail("anna@example.org")).outcome,
            MailOutcome::Temporary);
}

/// A row: the server, which asks for a login; how the setting begins; host in the certificate;
/// password given; whether the certificate is trusted; what is told.
TEST(SmtpTransport, EncryptionAndLogin) {
  forEachRow("mail/encryption.json", [](const SplitSetup&, const QStringList& row) {
    QTemporaryDir folder;
    MailServerProcess process({row[0], folder.path(), row[2]});
    MailServer server = parseMailServer(process.text(row[1]));
    server.login = row[3].isEmpty() ? "" : "me@example.org";
    server.password = row[3];
    SmtpOptions options;
    if (row[4] == "1" && row[0] != "login") {
      options.caFile = folder.filePath("server.pem");
    }
    const MailResult result = sendOne(server, plainMail("anna@example.org"), options);
    const bool isMeant = row[5] == "sent";
    EXPECT_EQ(result.outcome, isMeant ? MailOutcome::Sent : MailOutcome::Refused);
    EXPECT_TRUE(isMeant || result.errorText.contains(row[5])) << result.errorText.toStdString();
    EXPECT_FALSE(result.errorText.contains("3cret"));
    const std::vector<QJsonObject> mails = process.mails();
    ASSERT_EQ(mails.size(), isMeant ? 1U : 0U);
    if (isMeant) {
      EXPECT_TRUE(mails[0]["login"].toBool());
      EXPECT_EQ(mails[0]["encrypted"].toBool(), !row[1].isEmpty());
    }
  });
}

TEST(MailServer, TakesTheServerTextApart) {
  forEachRow("mail/servers.json", [](const SplitSetup&, const QStringList& row) {
    const MailServer server = parseMailServer(row[0]);
    const char* const kind = server.security == MailSecurity::None  ? "none"
                             : server.security == MailSecurity::Ssl ? "ssl"
                                                                    : "tls";
    EXPECT_EQ(server.problem.isEmpty() ? QString("%1 %2 %3").arg(kind, server.host).arg(server.port)
                                       : QString(),
              row[1]);
  });
}

} // namespace
} // namespace folivex::test
