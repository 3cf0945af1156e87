#include "mail/SmtpTransport.h"

#include "mail/MailHeader.h"
#include "mail/SmtpTalk.h"

#include <QScopedValueRollback>

#include <algorithm>

namespace folivex {

namespace {

constexpr int serviceClosing = 421;

/// An answer that quotes what it was sent must not carry the password into a log.
QString withoutPassword(QString text, const MailServer& server) {
  if (server.password.isEmpty()) {
    return text;
  }
  const QByteArray login = server.login.toUtf8();
  const QByteArray password = server.password.toUtf8();
  const QByteArray plain = QByteArray(1, '\0') + login + QByteArray(1, '\0') + password;
  for (const QByteArray& secret : {plain.toBase64(), password.toBase64(), password}) {
    text.replace(QString::fromUtf8(secret), QStringLiteral("***"));
  }
  return text;
}

QString answerOf(const SmtpReplies& replies, const MailServer& server) {
  const QString text =
      withoutControlCharacters(withoutPassword(QString::fromUtf8(replies.lastText()), server));
  return QStringLiteral("%1 %2").arg(replies.lastCode()).arg(text).trimmed();
}

MailOutcome outcomeOf(int code) {
  const int family = code / 100;
  return family == 2   ? MailOutcome::Sent
         : family == 4 ? MailOutcome::Temporary
                       : MailOutcome::Refused;
}

MailResult refused(const QString& text) {
  MailResult result;
  result.errorText = text;
  return result;
}

/// What a fault before the end of the mail means, whoever the mail is for.
struct FaultMeaning {
  TalkFault fault;
  MailOutcome outcome;
  bool concernsEveryMail;
  const char* text; ///< "%1" stands for the server
};

constexpr FaultMeaning meanings[] = {
    {TalkFault::NoSuchServer, MailOutcome::Temporary, true, "the server %1 was not found"},
    {TalkFault::NotReached, MailOutcome::Temporary, true, "the server %1 cannot be reached"},
    {TalkFault::TimedOut, MailOutcome::Temporary, true,
     "the server %1 did not let us in within the time allowed"},
    {TalkFault::ConnectionLost, MailOutcome::Temporary, false,
     "the server %1 closed the connection before the mail was handed over"},
    {TalkFault::NoAnswer, MailOutcome::Temporary, true, "the server %1 stopped answering"},
    {TalkFault::Encryption, MailOutcome::Refused, true,
     "no encrypted connection to the server %1 could be set up"},
    {TalkFault::Certificate, MailOutcome::Refused, true,
     "the certificate of the server %1 cannot be trusted"},
    {TalkFault::NoStartTls, MailOutcome::Refused, true,
     "the server %1 does not offer the encryption that \"tls:\" asks for"},
    {TalkFault::LoginRefused, MailOutcome::Refused, true,
     "the server %1 refused the login or its password"},
    {TalkFault::LoginNotOffered, MailOutcome::Refused, true,
     "a login is set, but the server %1 offers none on this connection that could be used"},
    {TalkFault::Utf8NotOffered, MailOutcome::Refused, false,
     "the server %1 takes no address with letters beyond a-z before the \"@\""},
    {TalkFault::Other, MailOutcome::Refused, false,
     "the mail could not be handed to the server %1"},
    {TalkFault::ServerRefused, MailOutcome::Refused, false, "the server %1 refused the mail"},
    {TalkFault::StoppedByPerson, MailOutcome::Stopped, false, "stopped before the mail was sent"},
};

const FaultMeaning& meaningOf(TalkFault fault) {
  const auto* const found =
      std::find_if(std::begin(meanings), std::end(meanings),
                   [fault](const FaultMeaning& m) { return m.fault == fault; });
  return found != std::end(meanings) ? *found : meaningOf(TalkFault::Other);
}

MailResult answered(const TalkResult& talked, const MailServer& server) {
  MailResult result;
  result.serverCode = talked.replies.verdict();
  result.outcome = outcomeOf(result.serverCode);
  if (!result.sent()) {
    result.errorText = QStringLiteral("the server %1 refused the mail: %2")
                           .arg(server.host, answerOf(talked.replies, server));
  }
  return result;
}

/// The end of the mail went out and nobody said what became of it.
MailResult unanswered(const TalkResult& talked, const MailServer& server) {
  MailResult result;
  result.outcome = MailOutcome::Unknown;
  result.concernsEveryMail = talked.fault == TalkFault::NoAnswer;
  const char* const why = talked.fault == TalkFault::StoppedByPerson ? "we stopped"
                          : talked.fault == TalkFault::NoAnswer      ? "it stopped answering"
                                                                     : "the connection broke";
  result.errorText = QStringLiteral("the whole mail went to the server %1, but %2 before it was "
                                    "confirmed: it may have arrived")
                         .arg(server.host, QLatin1String(why));
  return result;
}

MailResult failed(const TalkResult& talked, const MailServer& server) {
  if (talked.fault == TalkFault::AttachmentFailed || talked.fault == TalkFault::AttachmentChanged) {
    MailResult result = refused(talked.text);
    if (talked.fault == TalkFault::AttachmentChanged) {
      result.outcome = MailOutcome::FileChanged;
    }
    return result;
  }
  const FaultMeaning& meaning = meaningOf(talked.fault);
  MailResult result;
  result.outcome = meaning.outcome;
  result.concernsEveryMail = meaning.concernsEveryMail;
  result.errorText = QString::fromLatin1(meaning.text).replace(QLatin1String("%1"), server.host);
  const int code = talked.replies.lastCode();
  if (code >= 400) {
    result.serverCode = code;
    result.errorText += QStringLiteral(": ") + answerOf(talked.replies, server);
    if (meaning.outcome == MailOutcome::Refused) {
      result.outcome = outcomeOf(code);
    }
    if (result.outcome == MailOutcome::Temporary) {
      result.concernsEveryMail = false; // it answers, and may take the next one
    }
  } else if (!talked.text.isEmpty() && meaning.outcome != MailOutcome::Stopped) {
    result.errorText +=
        QStringLiteral(" (%1)").arg(withoutControlCharacters(withoutPassword(talked.text, server)));
  }
  if (!talked.refusedRecipient.isEmpty()) {
    result.errorText += QStringLiteral(" (recipient %1)").arg(talked.refusedRecipient);
  }
  return result;
}

/// The server has had enough of a connection that served mails before, and cannot have taken this
/// one: its end never went out.
bool asksForNewConnection(const TalkResult& talked) {
  const bool ended =
      talked.fault == TalkFault::ConnectionLost ||
      (talked.fault == TalkFault::ServerRefused && talked.replies.lastCode() == serviceClosing);
  return talked.onKeptConnection && ended && !talked.replies.dataEnded();
}

} // namespace

SmtpTransport::SmtpTransport(const MailServer& server, const SmtpOptions& options)
    : m_server(server), m_talk(std::make_unique<SmtpTalk>(server, options)) {}

SmtpTransport::~SmtpTransport() = default;

MailResult SmtpTransport::send(const MailMessage& message, MailWait& wait) {
  if (m_isSending) {
    return refused(QStringLiteral("another mail is being sent"));
  }
  if (!m_server.problem.isEmpty()) {
    MailResult result = refused(m_server.problem);
    result.concernsEveryMail = true;
    return result;
  }
  if (const QString problem = messageProblem(message); !problem.isEmpty()) {
    return refused(problem);
  }
  const QScopedValueRollback sending(m_isSending, true);
  const OutgoingMail mail(message);
  TalkResult talked = m_talk->attempt(mail, SmtpTalk::Use::Kept, wait);
  if (asksForNewConnection(talked)) {
    talked = m_talk->attempt(mail, SmtpTalk::Use::Fresh, wait);
  }
  return talked.replies.verdict() > 0 ? answered(talked, m_server)
         : talked.replies.dataEnded() ? unanswered(talked, m_server)
                                      : failed(talked, m_server);
}

void SmtpTransport::disconnect() {
  if (!m_isSending) {
    m_talk->disconnect();
  }
}

int SmtpTransport::connectionCount() const {
  return m_talk->connectionCount();
}

} // namespace folivex
