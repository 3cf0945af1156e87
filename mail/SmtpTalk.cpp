#include "mail/SmtpTalk.h"

#include "mail/MailAddress.h"

#include <QScopeGuard>

#include <algorithm>

#ifdef _WIN32
#include <winsock2.h>

#include <windows.h>
#else
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace folivex {

namespace {

using Clock = std::chrono::steady_clock;

/// How often the window lives while a mail is on its way.
constexpr std::chrono::milliseconds tick(20);
/// The library's own limit stays behind ours, which knows what is being waited for.
constexpr int libraryMarginSeconds = 60;
/// Greeting and EHLO, by STARTTLS its answer and EHLO again: then the offers are known.
constexpr int answersToOffers = 2;
constexpr int answersToOffersByStartTls = 4;

bool isAscii(const QByteArray& text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
}

QByteArray pathOf(const QString& address) {
  return '<' + addressForServer(address).toUtf8() + '>';
}

/// Without a path: the library then greets with this machine's own name.
QByteArray urlOf(const MailServer& server) {
  const bool ssl = server.security == MailSecurity::Ssl;
  const int standardPort = ssl ? 465 : server.security == MailSecurity::StartTls ? 587 : 25;
  const QByteArray host = server.host.toUtf8();
  return (ssl ? QByteArray("smtps://") : QByteArray("smtp://")) +
         (host.contains(':') ? '[' + host + ']' : host) + ':' +
         QByteArray::number(server.port > 0 ? server.port : standardPort);
}

#ifdef _WIN32
constexpr int notInherited = 0; // see keepFromPrograms()
constexpr int bothWays = SD_BOTH;
constexpr auto closeHandle = &closesocket;
#else
/// No program that is started meanwhile inherits the connection.
constexpr int notInherited = SOCK_CLOEXEC;
constexpr int bothWays = SHUT_RDWR;
constexpr auto closeHandle = &::close;
#endif

/// Where a socket cannot be made so that no program started meanwhile inherits it.
void keepFromPrograms([[maybe_unused]] curl_socket_t handle) {
#ifdef _WIN32
  SetHandleInformation(reinterpret_cast<HANDLE>(handle), HANDLE_FLAG_INHERIT, 0);
#endif
}

struct CodeMeaning {
  CURLcode code;
  TalkFault fault;
};

constexpr CodeMeaning codeMeanings[] = {
    {CURLE_OK, TalkFault::None},
    {CURLE_COULDNT_RESOLVE_HOST, TalkFault::NoSuchServer},
    {CURLE_COULDNT_CONNECT, TalkFault::NotReached},
    {CURLE_OPERATION_TIMEDOUT, TalkFault::TimedOut},
    {CURLE_PEER_FAILED_VERIFICATION, TalkFault::Certificate},
    {CURLE_SSL_CONNECT_ERROR, TalkFault::Encryption},
    {CURLE_SSL_CIPHER, TalkFault::Encryption},
    {CURLE_SSL_CACERT_BADFILE, TalkFault::Encryption},
    {CURLE_SSL_ISSUER_ERROR, TalkFault::Encryption},
    {CURLE_USE_SSL_FAILED, TalkFault::NoStartTls},
    {CURLE_LOGIN_DENIED, TalkFault::LoginRefused},
    {CURLE_AUTH_ERROR, TalkFault::LoginRefused},
    // These only where the server said nothing:
    {CURLE_SEND_ERROR, TalkFault::ConnectionLost},
    {CURLE_RECV_ERROR, TalkFault::ConnectionLost},
    {CURLE_GOT_NOTHING, TalkFault::ConnectionLost},
};

} // namespace

OutgoingMail::OutgoingMail(const MailMessage& mail)
    : message(mail), head(mailHead(mail)),
      sender(pathOf(mail.sender)), recipients{pathOf(mail.recipient)} {
  for (const QString& copy : copyAddresses(mail.cc)) {
    if (const QByteArray path = pathOf(copy); !recipients.contains(path)) {
      recipients += path;
    }
  }
  needsUtf8 = !isAscii(sender + recipients.join());
}

curl_socket_t OpenSockets::open(const curl_sockaddr& address) {
  const curl_socket_t handle =
      ::socket(address.family, address.socktype | notInherited, address.protocol);
  if (handle != CURL_SOCKET_BAD) {
    keepFromPrograms(handle);
    const std::lock_guard lock(m_mutex);
    m_open.push_back(handle);
  }
  return handle;
}

int OpenSockets::close(curl_socket_t handle) {
  // Under the lock: a number that was given back may be another socket a moment later.
  const std::lock_guard lock(m_mutex);
  std::erase(m_open, handle);
  return closeHandle(handle);
}

void OpenSockets::shutDownAll() {
  const std::lock_guard lock(m_mutex);
  for (const curl_socket_t handle : m_open) {
    ::shutdown(handle, bothWays);
  }
}

SmtpTalk::SmtpTalk(const MailServer& server, const SmtpOptions& options)
    : m_server(server), m_options(options) {
  static const CURLcode started = curl_global_init(CURL_GLOBAL_DEFAULT);
  static_cast<void>(started);
}

void SmtpTalk::setFixedOptions() {
  curl_easy_setopt(m_handle, CURLOPT_URL, urlOf(m_server).constData());
  curl_easy_setopt(m_handle, CURLOPT_PROTOCOLS_STR, "smtp,smtps");
  // The environment has no say in where mails and passwords go.
  curl_easy_setopt(m_handle, CURLOPT_PROXY, "");
  curl_easy_setopt(m_handle, CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
  curl_easy_setopt(m_handle, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(m_handle, CURLOPT_QUICK_EXIT, 1L);
  curl_easy_setopt(m_handle, CURLOPT_MAXCONNECTS, 1L);
  curl_easy_setopt(m_handle, CURLOPT_UPLOAD, 1L);
  curl_easy_setopt(m_handle, CURLOPT_ERRORBUFFER, m_errorText.data());
  curl_easy_setopt(m_handle, CURLOPT_CONNECTTIMEOUT_MS,
                   static_cast<long>(m_options.connectTimeoutMs));
  const int longest = std::max(m_options.answerTimeoutMs, m_options.finalAnswerTimeoutMs);
  curl_easy_setopt(m_handle, CURLOPT_SERVER_RESPONSE_TIMEOUT,
                   static_cast<long>(longest / 1000 + libraryMarginSeconds));
  curl_easy_setopt(m_handle, CURLOPT_HEADERFUNCTION, &SmtpTalk::onAnswer);
  curl_easy_setopt(m_handle, CURLOPT_HEADERDATA, this);
  curl_easy_setopt(m_handle, CURLOPT_NOPROGRESS, 0L);
  curl_easy_setopt(m_handle, CURLOPT_XFERINFOFUNCTION, &SmtpTalk::onProgress);
  curl_easy_setopt(m_handle, CURLOPT_XFERINFODATA, this);
  curl_easy_setopt(m_handle, CURLOPT_VERBOSE, 1L);
  curl_easy_setopt(m_handle, CURLOPT_DEBUGFUNCTION, &SmtpTalk::onTrace);
  curl_easy_setopt(m_handle, CURLOPT_DEBUGDATA, this);
  curl_easy_setopt(m_handle, CURLOPT_OPENSOCKETFUNCTION, &SmtpTalk::onOpenSocket);
  curl_easy_setopt(m_handle, CURLOPT_OPENSOCKETDATA, this);
  curl_easy_setopt(m_handle, CURLOPT_CLOSESOCKETFUNCTION, &SmtpTalk::onCloseSocket);
  curl_easy_setopt(m_handle, CURLOPT_CLOSESOCKETDATA, this);
}

void SmtpTalk::setSecurityOptions() {
  if (!m_server.login.isEmpty()) {
    curl_easy_setopt(m_handle, CURLOPT_USERNAME, m_server.login.toUtf8().constData());
    curl_easy_setopt(m_handle, CURLOPT_PASSWORD, m_server.password.toUtf8().constData());
    // A ticket of the desktop is not the login that was given.
    curl_easy_setopt(m_handle, CURLOPT_LOGIN_OPTIONS,
                     "AUTH=PLAIN;AUTH=LOGIN;AUTH=CRAM-MD5;AUTH=DIGEST-MD5;AUTH=NTLM");
  }
  curl_easy_setopt(m_handle, CURLOPT_SSL_VERIFYPEER, 1L);
  curl_easy_setopt(m_handle, CURLOPT_SSL_VERIFYHOST, 2L);
  curl_easy_setopt(m_handle, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  curl_easy_setopt(m_handle, CURLOPT_USE_SSL,
                   static_cast<long>(m_server.security == MailSecurity::None ? CURLUSESSL_NONE
                                                                             : CURLUSESSL_ALL));
  if (!m_options.caFile.isEmpty()) {
    curl_easy_setopt(m_handle, CURLOPT_CAINFO, m_options.caFile.toUtf8().constData());
    curl_easy_setopt(m_handle, CURLOPT_CAPATH, nullptr);
  }
}

void SmtpTalk::begin(const OutgoingMail& outgoing) {
  m_outgoing = &outgoing;
  m_replies.startKept(m_offers);
  m_command.clear();
  m_wholeMailOut = false;
  m_brokenOff = TalkFault::None;
  m_errorText[0] = '\0';
  touch();
  if (!m_handle) {
    m_handle = curl_easy_init();
    if (m_handle) {
      setFixedOptions();
      setSecurityOptions();
    }
  }
}

TalkResult SmtpTalk::attempt(const OutgoingMail& outgoing, Use use, MailWait& wait) {
  begin(outgoing);
  TalkResult result;
  if (!m_handle) {
    result.fault = TalkFault::Other;
    return result;
  }
  if (m_connections > 0 && outgoing.needsUtf8 && !m_offers.utf8Addresses) {
    result.fault = TalkFault::Utf8NotOffered;
    return result;
  }
  MimeMail mail;
  if (!mail.open(m_handle, outgoing.message, outgoing.head)) {
    result.fault = mail.isOtherFile() ? TalkFault::AttachmentChanged : TalkFault::AttachmentFailed;
    result.text = mail.errorText();
    return result;
  }
  m_mail = &mail;
  const CurlList recipients = curlList(outgoing.recipients);
  curl_easy_setopt(m_handle, CURLOPT_MAIL_FROM, outgoing.sender.constData());
  curl_easy_setopt(m_handle, CURLOPT_MAIL_RCPT, recipients.get());
  curl_easy_setopt(m_handle, CURLOPT_FRESH_CONNECT, use == Use::Fresh ? 1L : 0L);
  const CURLcode code = performWatched(wait);

  long made = 0;
  curl_easy_getinfo(m_handle, CURLINFO_NUM_CONNECTS, &made);
  m_connections += static_cast<int>(made);
  m_offers = m_replies.offers();
  result.onKeptConnection = made == 0;
  result.replies = m_replies;
  result.fault = faultOf(code);
  result.text = QString::fromUtf8(m_errorText.data());
  if (result.fault == TalkFault::ServerRefused && m_command.startsWith("RCPT TO:<")) {
    const qsizetype end = m_command.lastIndexOf('>');
    result.refusedRecipient = QString::fromUtf8(m_command.mid(9, end - 9));
  }
  return result;
}

TalkFault SmtpTalk::faultOf(CURLcode code) const {
  if (m_brokenOff != TalkFault::None) {
    return m_brokenOff;
  }
  const auto* const known = std::find_if(std::begin(codeMeanings), std::end(codeMeanings),
                                         [code](const CodeMeaning& m) { return m.code == code; });
  const TalkFault fault = known != std::end(codeMeanings) ? known->fault : TalkFault::Other;
  const bool refused = m_replies.lastCode() >= 400;
  if (fault == TalkFault::LoginRefused && !refused) {
    return TalkFault::LoginNotOffered; // there was no way to log in that both sides know
  }
  return refused && (fault == TalkFault::Other || fault == TalkFault::ConnectionLost)
             ? TalkFault::ServerRefused
             : fault;
}

CURLcode SmtpTalk::performWatched(MailWait& wait) {
  auto code = std::async(std::launch::async, curl_easy_perform, m_handle);
  auto end = qScopeGuard([this] { breakOff(TalkFault::StoppedByPerson); });
  while (code.wait_for(tick) != std::future_status::ready) {
    wait.handlePendingEvents();
    if (m_brokenOff == TalkFault::None) {
      if (wait.stopRequested()) {
        breakOff(TalkFault::StoppedByPerson);
      } else if (isSilentTooLong()) {
        breakOff(TalkFault::NoAnswer);
      }
    }
  }
  end.dismiss();
  return code.get();
}

bool SmtpTalk::isSilentTooLong() const {
  const Clock::duration silence = Clock::now().time_since_epoch() - Clock::duration(m_lastSign);
  return silence > std::chrono::milliseconds(m_wholeMailOut ? m_options.finalAnswerTimeoutMs
                                                            : m_options.answerTimeoutMs);
}

void SmtpTalk::breakOff(TalkFault why) {
  m_brokenOff = why;
  // While it waits for an answer the library looks at the flag once a second only.
  m_sockets.shutDownAll();
}

void SmtpTalk::disconnect() {
  if (m_handle) {
    const auto goodbye = std::async(std::launch::async, curl_easy_cleanup, m_handle);
    if (goodbye.wait_for(std::chrono::milliseconds(m_options.goodbyeTimeoutMs)) !=
        std::future_status::ready) {
      m_sockets.shutDownAll();
    }
    m_handle = nullptr;
  }
}

/// Before a mail is begun: what it needs must be offered, for the library would go on without.
bool SmtpTalk::acceptsOffers() {
  const SmtpOffers& offers = m_replies.offers();
  if (!m_server.login.isEmpty() && !offers.login) {
    m_brokenOff = TalkFault::LoginNotOffered;
    return false;
  }
  if (m_outgoing->needsUtf8 && !offers.utf8Addresses) {
    m_brokenOff = TalkFault::Utf8NotOffered;
    return false;
  }
  return true;
}

std::size_t SmtpTalk::onAnswer(char* line, std::size_t size, std::size_t count, void* self) {
  SmtpTalk& talk = *static_cast<SmtpTalk*>(self);
  const bool known = talk.m_replies.offersKnown();
  // Lines alone are no sign of life: an answer may go on without end.
  if (talk.m_replies.onLine({line, static_cast<qsizetype>(size * count)})) {
    talk.touch();
  }
  return known || !talk.m_replies.offersKnown() || talk.acceptsOffers() ? size * count : 0;
}

int SmtpTalk::onProgress(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
  return static_cast<SmtpTalk*>(self)->m_brokenOff != TalkFault::None ? 1 : 0;
}

int SmtpTalk::onTrace(CURL*, curl_infotype kind, char* bytes, std::size_t count, void* self) {
  SmtpTalk& talk = *static_cast<SmtpTalk*>(self);
  if (kind == CURLINFO_DATA_OUT) {
    talk.touch();
    // The line that ends the mail goes out behind its last bytes, in the same call.
    if (talk.m_mail->isAtEnd()) {
      talk.m_replies.onDataEnd();
      talk.m_wholeMailOut = true;
    }
  } else if (kind == CURLINFO_HEADER_OUT) {
    talk.touch();
    const QByteArrayView command(bytes, static_cast<qsizetype>(count));
    if (command.startsWith("QUIT")) {
      talk.m_replies.onGoodbye();
      return 0;
    }
    // The login passes here too; only commands about the mail are kept.
    const bool aboutMail =
        command.startsWith("MAIL ") || command.startsWith("RCPT ") || command.startsWith("DATA");
    talk.m_command = aboutMail ? command.trimmed().toByteArray() : QByteArray();
  }
  return 0;
}

curl_socket_t SmtpTalk::onOpenSocket(void* self, curlsocktype, curl_sockaddr* address) {
  SmtpTalk& talk = *static_cast<SmtpTalk*>(self);
  talk.m_replies.startNew(talk.m_server.security == MailSecurity::StartTls
                              ? answersToOffersByStartTls
                              : answersToOffers);
  return talk.m_sockets.open(*address);
}

int SmtpTalk::onCloseSocket(void* self, curl_socket_t handle) {
  return static_cast<SmtpTalk*>(self)->m_sockets.close(handle);
}

} // namespace folivex
