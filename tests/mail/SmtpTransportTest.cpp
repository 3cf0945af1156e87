#include "mail/SmtpTransport.h"
#include "tests/mail/MailServerProcess.h"

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
  const char* fault;
  QString senderName = {};
  QString subject = "Your statement";
  QString body = "Please find it attached.";
  BodyKind bodyKind = BodyKind::Plain;
  QString cc = {};
  QString attachmentName = {};
  QByteArray attachment = {};
};

MailMessage with(const std::function<void(MailMessage&)>& change) {
  MailMessage message = plainMail(QStringLiteral("anna@example.org"));
  change(message);
  return message;
}

QString onOneLine(QString text) {
  return text.replace(QLatin1String("\r\n"), QLatin1String(" "));
}

/// Every mail is read back by another program's parser and must be the one that was meant.
TEST(SmtpTransport, MailsArriveAsTheyWereMeant) {
  QTemporaryDir folder;
  const QString longName =
      QStringLiteral("Sehr langer Dateiname ").repeated(5) + QStringLiteral("Größe.pdf");
  const Sent sent[] = {
      {.fault = "accents and CJK",
       .senderName = "Büro \"Süd\", 株式会社",
       .subject = "Überweisung 请求書 für Özgür 😀",
       .body = "Grüße\r\n.\r\n..zwei\r\nvon uns \r\n" + QString("ä").repeated(500) + "\n請求書\n"},
      {.fault = "HTML", .body = "<p class=\"x\">Bücher</p>\n", .bodyKind = BodyKind::Html},
      {.fault = "specials in an ASCII name",
       .senderName = "Office \\ \"South\", Inc. <x@y.example>"},
      {.fault = "line ends in subject and name",
       .senderName = "Me\r\nBcc: evil@example.org",
       .subject = "Hello\r\nBcc: evil@example.org\r\nbody"},
      {.fault = "a subject that looks encoded", .subject = "=?UTF-8?Q?=0D=0ABcc:_x?="},
      {.fault = "blanks in a subject", .subject = " two  blanks "},
      {.fault = "10,000 characters of words, and an ASCII body that servers would change",
       .subject = QString("invoice, \"quoted\" ").repeated(600).trimmed(),
       .body = "one\r\n.\r\n..two \n" + QString("three ").repeated(400)},
      {.fault = "10,000 characters of one word", .subject = QString(10'000, u'x')},
      {.fault = "10,000 characters beyond ASCII",
       .senderName = QString("Ü").repeated(300),
       .subject = QString("é漢😀").repeated(2'500)},
      {.fault = "copies", .cc = "b@example.org; \"c,d\"@example.org"},
      {.fault = "PDF", .attachmentName = "statement 7.pdf", .attachment = oddBytes(200'000)},
      {.fault = "empty file", .attachmentName = "empty.bin"},
      {.fault = "accents in the file name",
       .bodyKind = BodyKind::Html,
       .attachmentName = "Rechnung für 株式会社 100%.pdf",
       .attachment = "x"},
      {.fault = "a long file name", .attachmentName = longName, .attachment = "x"},
      {.fault = "quotes in the file name", .attachmentName = "a \"b\" ;c=d.pdf", .attachment = "x"},
      {.fault = "line ends in the file name",
       .attachmentName = "a\r\nBcc: evil@example.org\r\n.pdf",
       .attachment = "x"},
  };
  MailServerProcess server("smtp_server.py", {});
  SmtpTransport transport(parseMailServer(server.text()));
  PlainWait wait;
  for (const Sent& mail : sent) {
    MailMessage message = plainMail("anna@example.org");
    message.senderName = mail.senderName;
    message.cc = mail.cc;
    message.subject = mail.subject;
    message.body = mail.body;
    message.bodyKind = mail.bodyKind;
    if (!mail.attachmentName.isEmpty()) {
      message.attachmentPath = folder.filePath(mail.attachmentName);
      writeFile(message.attachmentPath, mail.attachment);
    }
    const MailResult result = transport.send(message, wait);
    EXPECT_TRUE(result.sent()) << mail.fault << ": " << result.errorText.toStdString();
  }
  transport.disconnect();
  ASSERT_EQ(server.mails().size(), std::size(sent));
  EXPECT_EQ(server.connections(), 1);
  for (std::size_t i = 0; i < std::size(sent); ++i) {
    const Sent& message = sent[i];
    SCOPED_TRACE(message.fault);
    const QJsonObject got = server.mails()[i];
    const bool copies = !message.cc.isEmpty();
    QStringList recipients = {"anna@example.org"};
    if (copies) {
      recipients += {"b@example.org", "\"c,d\"@example.org"};
    }
    EXPECT_EQ(strings(got["recipients"]), recipients);
    EXPECT_EQ(strings(got["to"]), recipients.first(1));
    EXPECT_EQ(strings(got["cc"]), recipients.mid(1));
    // That parser leaves a blank between the pieces of a long name.
    QStringList from = strings(got["from"].toArray()[0]);
    if (message.senderName.size() > 100) {
      from[0].remove(' ');
    }
    EXPECT_EQ(from, QStringList({onOneLine(message.senderName), "office@example.org"}));
    EXPECT_EQ(got["subject"].toString(), onOneLine(message.subject));
    EXPECT_EQ(got["bodyType"].toString(),
              message.bodyKind == BodyKind::Html ? "text/html" : "text/plain");
    QString body = message.body;
    body.replace("\r\n", "\n").replace("\n", "\r\n");
    EXPECT_EQ(got["body"].toString().trimmed(), body.trimmed());
    EXPECT_EQ(strings(got["defects"]), QStringList());
    EXPECT_LE(got["longestLine"].toInt(), 998);
    EXPECT_EQ(got["bareLineEnds"].toInt(), 0);
    QStringList headers = {"Content-Type", "Date",       "From",        "To",
                           "Subject",      "Message-ID", "MIME-Version"};
    if (copies) {
      headers.insert(4, "Cc");
    }
    QStringList own = strings(got["headers"]);
    own.removeIf([](const QString& name) { return name.startsWith("X-"); }); // the server's
    EXPECT_EQ(own, headers);
    const QJsonArray attachments = got["attachments"].toArray();
    ASSERT_EQ(attachments.size(), message.attachmentName.isEmpty() ? 0 : 1);
    if (!attachments.isEmpty()) {
      EXPECT_EQ(attachments[0]["name"].toString(), onOneLine(message.attachmentName));
      EXPECT_EQ(QByteArray::fromBase64(attachments[0]["bytes"].toString().toLatin1()),
                message.attachment);
      EXPECT_EQ(attachments[0]["type"].toString(), message.attachmentName.endsWith(".pdf")
                                                       ? "application/pdf"
                                                       : "application/octet-stream");
    }
  }
}

TEST(SmtpTransport, AddressesBeyondAscii) {
  MailServerProcess server("smtp_server.py", {});
  const MailServer to = parseMailServer(server.text());
  EXPECT_TRUE(sendOne(to, plainMail("anna@bücher.example")).sent());
  EXPECT_TRUE(sendOne(to, plainMail("rené@bücher.example")).sent());
  ASSERT_EQ(server.mails().size(), 2U);
  EXPECT_EQ(strings(server.mails()[0]["recipients"]), QStringList("anna@xn--bcher-kva.example"));
  EXPECT_EQ(strings(server.mails()[1]["recipients"]), QStringList("rené@xn--bcher-kva.example"));

  // A server that takes ASCII only gets nothing that it could misread.
  MailServerProcess old("faulty_smtp_server.py", {"none"});
  SmtpTransport transport(parseMailServer(old.text()));
  PlainWait wait;
  EXPECT_EQ(transport.send(plainMail("rené@example.org"), wait).outcome, MailOutcome::Refused);
  EXPECT_TRUE(transport.send(plainMail("anna@example.org"), wait).sent());
  EXPECT_EQ(transport.send(plainMail("rené@example.org"), wait).outcome, MailOutcome::Refused);
  transport.disconnect();
  EXPECT_EQ(old.mails().size(), 1U);
}

/// Nothing that is no single address reaches a server, and nothing is sent in its place.
TEST(SmtpTransport, RefusesWhatIsNoAddress) {
  MailServerProcess server("smtp_server.py", {});
  const MailServer to = parseMailServer(server.text());
  const QStringList bad = {"",
                           "anna",
                           "a@example.org, b@example.org",
                           "a@example.org\r\nRCPT TO:<b@example.org>",
                           "a@example.org> <b@example.org",
                           "a@example.org\n",
                           QString(10'000, u'a') + "@example.org",
                           "a@" + QString(10'000, u'x') + ".example",
                           "<a@example.org>"};
  for (const QString& address : bad) {
    EXPECT_EQ(sendOne(to, plainMail(address)).outcome, MailOutcome::Refused);
    EXPECT_EQ(sendOne(to, with([&](auto& m) { m.sender = address; })).outcome,
              MailOutcome::Refused);
  }
  EXPECT_EQ(sendOne(to, with([](auto& m) { m.cc = "good@example.org; bad\r\nBcc: x"; })).outcome,
            MailOutcome::Refused);
  EXPECT_EQ(sendOne(to, with([](auto& m) { m.attachmentPath = "/no/such/file.pdf"; })).outcome,
            MailOutcome::Refused);
  EXPECT_EQ(server.mails().size(), 0U);
}

TEST(SmtpTransport, EncryptionAndLogin) {
  const QString password = QStringLiteral("pässwört §3cret");
  struct Row {
    const char* fault;
    const char* security; ///< of the server
    const char* prefix;   ///< of the setting
    const char* host;     ///< in the certificate
    bool login;           ///< the server asks for one
    const char* given;    ///< the password given, null for no login
    bool trusted;         ///< the certificate is
    MailOutcome outcome;
    const char* says; ///< in the error text
  };
  const char* const good = "pässwört §3cret";
  const char* const own = "127.0.0.1";
  const Row rows[] = {
      {"login in the clear", "none", "", own, true, good, true, MailOutcome::Sent, ""},
      {"login over SSL", "ssl", "ssl:", own, true, good, true, MailOutcome::Sent, ""},
      {"login over STARTTLS", "tls", "tls:", own, true, good, true, MailOutcome::Sent, ""},
      {"wrong password", "tls", "tls:", own, true, "wrong §3cret", true, MailOutcome::Refused,
       "refused the login"},
      {"login not given", "tls", "tls:", own, true, nullptr, true, MailOutcome::Refused, "530"},
      {"unknown certificate", "ssl", "ssl:", own, true, good, false, MailOutcome::Refused,
       "certificate"},
      {"certificate of another host", "tls", "tls:", "mail.example.org", true, good, true,
       MailOutcome::Refused, "certificate"},
      {"STARTTLS not there", "none", "tls:", own, true, good, true, MailOutcome::Refused,
       "does not offer the encryption"},
      {"SSL on a plain port", "none", "ssl:", own, true, good, true, MailOutcome::Refused,
       "no encrypted connection"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.fault);
    QTemporaryDir folder;
    QStringList arguments = {"--security",  row.security,         "--folder",
                             folder.path(), "--certificate-host", row.host};
    if (row.login) {
      arguments += {"--login", "me@example.org", "--password", password};
    }
    MailServerProcess process("smtp_server.py", arguments);
    MailServer server = parseMailServer(process.text(row.prefix));
    server.login = row.given ? "me@example.org" : "";
    server.password = row.given ? QString(row.given) : QString();
    SmtpOptions options;
    if (row.trusted && row.security != QLatin1String("none")) {
      options.caFile = folder.filePath("server.pem");
    }
    const MailResult result = sendOne(server, plainMail("anna@example.org"), options);
    EXPECT_EQ(result.outcome, row.outcome) << result.errorText.toStdString();
    EXPECT_TRUE(result.errorText.contains(row.says)) << result.errorText.toStdString();
    EXPECT_FALSE(result.errorText.contains("3cret"));
    EXPECT_EQ(process.mails().size(), result.sent() ? 1U : 0U);
    if (result.sent()) {
      EXPECT_EQ(process.mails()[0]["login"].toBool(), row.login);
      EXPECT_EQ(process.mails()[0]["encrypted"].toBool(), row.security != QLatin1String("none"));
    }
  }
}

TEST(MailServer, TakesTheServerTextApart) {
  struct Row {
    const char* text;
    MailSecurity security;
    const char* host;
    int port;
    bool good;
  };
  const Row rows[] = {
      {"mail.example.org", MailSecurity::None, "mail.example.org", 0, true},
      {" mail.example.org : 2525 ", MailSecurity::None, "mail.example.org", 2525, true},
      {"ssl:mail.example.org", MailSecurity::Ssl, "mail.example.org", 0, true},
      {"tls:mail.example.org:587", MailSecurity::StartTls, "mail.example.org", 587, true},
      {"tls:[2001:db8::1]:587", MailSecurity::StartTls, "2001:db8::1", 587, true},
      {"mail.example.org:", MailSecurity::None, "mail.example.org", 0, false},
      {"mail.example.org:70000", MailSecurity::None, "mail.example.org", 0, false},
      {"mail.example.org:25:26", MailSecurity::None, "mail.example.org", 0, false},
      {"smtp://mail.example.org", MailSecurity::None, "smtp", 0, false},
      {"ssl:", MailSecurity::Ssl, "", 0, false},
      {"user@mail.example.org/x", MailSecurity::None, "user@mail.example.org/x", 0, false},
      {"", MailSecurity::None, "", 0, false},
  };
  for (const Row& row : rows) {
    const MailServer server = parseMailServer(row.text);
    EXPECT_EQ(server.security, row.security) << row.text;
    EXPECT_EQ(server.host, row.host) << row.text;
    EXPECT_EQ(server.port, row.port) << row.text;
    EXPECT_EQ(server.problem.isEmpty(), row.good) << row.text;
  }
}

} // namespace
} // namespace folivex::test
