#include "mail/SmtpTalk.h"

#include "mail/OpenSockets.h"

#include <curl/curl.h>

#include <array>
#include <atomic>
#include <chrono>
#include <future>
#include <thread>

namespace folivex {

namespace {

using Clock = std::chrono::steady_clock;

/// How often the window lives while a mail is on its way.
constexpr std::chrono::milliseconds tick(20);
/// How long a server may take to say good-bye.
constexpr std::chrono::milliseconds patienceAtEnd(2000);
/// The library's own limit stays behind ours, which knows what is being waited for.
constexpr int libraryMarginSeconds = 60;

void startLibrary() {
  static const CURLcode started = curl_global_init(CURL_GLOBAL_DEFAULT);
  static_cast<void>(started);
}

struct SlistDeleter {
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
using Slist = std::unique_ptr<curl_slist, SlistDeleter>;

Slist listOf(const QStringList& texts) {
  Slist list;
  for (const QString& text : texts) {
    curl_slist* const longer =
        curl_slist_append(list.get(), ('<' + text.toUtf8() + '>').constData());
    if (!longer) {
      break;
    }
    static_cast<void>(list.release());
    list.reset(longer);
  }
  return list;
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

TalkFault faultOf(CURLcode code, const SmtpReplies& replies) {
  switch (code) {
  case CURLE_OK:
    return TalkFault::None;
  case CURLE_COULDNT_RESOLVE_HOST:
    return TalkFault::NoSuchServer;
  case CURLE_COULDNT_CONNECT:
    return TalkFault::NotReached;
  case CURLE_OPERATION_TIMEDOUT:
    return TalkFault::TimedOut;
  case CURLE_PEER_FAILED_VERIFICATION:
    return TalkFault::Certificate;
  case CURLE_SSL_CONNECT_ERROR:
  case CURLE_SSL_CIPHER:
  case CURLE_SSL_CACERT_BADFILE:
  case CURLE_SSL_ISSUER_ERROR:
    return TalkFault::Encryption;
  case CURLE_USE_SSL_FAILED:
    return TalkFault::NoStartTls;
  case CURLE_LOGIN_DENIED:
  case CURLE_AUTH_ERROR:
    // Without a refusal there was no way to log in that both sides know.
    return replies.lastCode() >= 400 ? TalkFault::LoginRefused : TalkFault::LoginNotOffered;
  default:
    break;
  }
  if (replies.lastCode() >= 400) {
    return TalkFault::ServerRefused;
  }
  const bool lost =
      code == CURLE_SEND_ERROR || code == CURLE_RECV_ERROR || code == CURLE_GOT_NOTHING;
  return lost ? TalkFault::ConnectionLost : TalkFault::Other;
}

} // namespace

/// Owns the library's handle. The callbacks run on the talk's thread, all else on the caller's;
/// what both touch while the talk
/// goes on is atomic or under a lock.
class SmtpTalk::Session {
public:
  Session(MailServer server, SmtpOptions options)
      : m_server(std::move(server)), m_options(std::move(options)) {
    startLibrary();
  }
  ~Session() { disconnect(); }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  TalkResult attempt(const SmtpEnvelope& envelope, MimeStream& mail, Use use, MailWait& wait);
  void disconnect();
  int connectionCount() const { return m_connections; }

private:
  void begin(const SmtpEnvelope& envelope, MimeStream& mail);
  void setFixedOptions();
  void setTlsOptions();
  CURLcode performWatched(MailWait& wait);
  void watch(const std::future<CURLcode>& talk, MailWait& wait);
  std::chrono::milliseconds longestSilence() const;
  /// Ends the talk from the caller's thread.
  void breakOff(TalkFault why);
  /// From within a callback; the library then gives up by itself.
  void note(TalkFault why) { m_brokenOff.store(why); }
  void touch() { m_lastSign.store(Clock::now().time_since_epoch().count()); }

  static std::size_t onRead(char* to, std::size_t size, std::size_t count, void* self);
  static std::size_t onAnswer(char* line, std::size_t size, std::size_t count, void* self);
  static int onProgress(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t);
  static int onTrace(CURL*, curl_infotype kind, char* bytes, std::size_t count, void* self);
  static curl_socket_t onOpenSocket(void* self, curlsocktype, curl_sockaddr* address);
  static int onCloseSocket(void* self, curl_socket_t handle);
  bool acceptsOffers();

  MailServer m_server;
  SmtpOptions m_options;
  OpenSockets m_sockets; ///< outlives the handle, which closes them
  CURL* m_handle = nullptr;
  std::array<char, CURL_ERROR_SIZE> m_errorText{};
  int m_connections = 0;
  SmtpOffers m_offers; ///< of the kept connection

  // One attempt:
  const SmtpEnvelope* m_envelope = nullptr;
  MimeStream* m_mail = nullptr;
  SmtpReplies m_replies; ///< the talk's thread alone, until it has ended
  QByteArray m_command;  ///< the last one about a recipient
  std::atomic<bool> m_wholeMailOut = false;
  std::atomic<TalkFault> m_brokenOff = TalkFault::None;
  std::atomic<Clock::rep> m_lastSign = 0;
};

void SmtpTalk::Session::setFixedOptions() {
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
  curl_easy_setopt(m_handle, CURLOPT_READFUNCTION, &Session::onRead);
  curl_easy_setopt(m_handle, CURLOPT_READDATA, this);
  curl_easy_setopt(m_handle, CURLOPT_HEADERFUNCTION, &Session::onAnswer);
  curl_easy_setopt(m_handle, CURLOPT_HEADERDATA, this);
  curl_easy_setopt(m_handle, CURLOPT_NOPROGRESS, 0L);
  curl_easy_setopt(m_handle, CURLOPT_XFERINFOFUNCTION, &Session::onProgress);
  curl_easy_setopt(m_handle, CURLOPT_XFERINFODATA, this);
  curl_easy_setopt(m_handle, CURLOPT_VERBOSE, 1L);
  curl_easy_setopt(m_handle, CURLOPT_DEBUGFUNCTION, &Session::onTrace);
  curl_easy_setopt(m_handle, CURLOPT_DEBUGDATA, this);
  curl_easy_setopt(m_handle, CURLOPT_OPENSOCKETFUNCTION, &Session::onOpenSocket);
  curl_easy_setopt(m_handle, CURLOPT_OPENSOCKETDATA, this);
  curl_easy_setopt(m_handle, CURLOPT_CLOSESOCKETFUNCTION, &Session::onCloseSocket);
  curl_easy_setopt(m_handle, CURLOPT_CLOSESOCKETDATA, this);
  if (!m_server.login.isEmpty()) {
    curl_easy_setopt(m_handle, CURLOPT_USERNAME, m_server.login.toUtf8().constData());
    curl_easy_setopt(m_handle, CURLOPT_PASSWORD, m_server.password.toUtf8().constData());
    // A ticket of the desktop is not the login that was given.
    curl_easy_setopt(m_handle, CURLOPT_LOGIN_OPTIONS,
                     "AUTH=PLAIN;AUTH=LOGIN;AUTH=CRAM-MD5;AUTH=DIGEST-MD5;AUTH=NTLM");
  }
}

void SmtpTalk::Session::setTlsOptions() {
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

void SmtpTalk::Session::begin(const SmtpEnvelope& envelope, MimeStream& mail) {
  m_envelope = &envelope;
  m_mail = &mail;
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
      setTlsOptions();
    }
  }
}

TalkResult SmtpTalk::Session::attempt(const SmtpEnvelope& envelope, MimeStream& mail, Use use,
                                      MailWait& wait) {
  begin(envelope, mail);
  TalkResult result;
  if (!m_handle) {
    result.fault = TalkFault::Other;
    return result;
  }
  if (m_connections > 0 && envelope.needsUtf8 && !m_offers.utf8Addresses) {
    result.fault = TalkFault::Utf8NotOffered;
    return result;
  }
  const Slist recipients = listOf(envelope.recipients);
  curl_easy_setopt(m_handle, CURLOPT_MAIL_FROM, ('<' + envelope.sender.toUtf8() + '>').constData());
  curl_easy_setopt(m_handle, CURLOPT_MAIL_RCPT, recipients.get());
  curl_easy_setopt(m_handle, CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(mail.size()));
  curl_easy_setopt(m_handle, CURLOPT_FRESH_CONNECT, use == Use::Fresh ? 1L : 0L);
  const CURLcode code = performWatched(wait);
  curl_easy_setopt(m_handle, CURLOPT_MAIL_RCPT, nullptr);

  long made = 0;
  curl_easy_getinfo(m_handle, CURLINFO_NUM_CONNECTS, &made);
  m_connections += static_cast<int>(made);
  m_offers = m_replies.offers();
  result.onKeptConnection = made == 0;
  result.replies = m_replies;
  result.libraryText = QString::fromUtf8(m_errorText.data());
  const TalkFault brokenOff = m_brokenOff;
  result.fault = brokenOff != TalkFault::None ? brokenOff : faultOf(code, m_replies);
  if (result.fault == TalkFault::ServerRefused && m_command.startsWith("RCPT TO:<")) {
    const qsizetype end = m_command.lastIndexOf('>');
    result.refusedRecipient = QString::fromUtf8(m_command.mid(9, end - 9));
  }
  return result;
}

CURLcode SmtpTalk::Session::performWatched(MailWait& wait) {
  std::packaged_task<CURLcode()> perform([this] { return curl_easy_perform(m_handle); });
  std::future<CURLcode> code = perform.get_future();
  std::thread talk(std::move(perform));
  try {
    watch(code, wait);
  } catch (...) {
    breakOff(TalkFault::StoppedByPerson);
    talk.join();
    throw;
  }
  talk.join();
  return code.get();
}

void SmtpTalk::Session::watch(const std::future<CURLcode>& talk, MailWait& wait) {
  while (talk.wait_for(tick) != std::future_status::ready) {
    wait.handlePendingEvents();
    const Clock::duration silence =
        Clock::now().time_since_epoch() - Clock::duration(m_lastSign.load());
    if (m_brokenOff.load() == TalkFault::None) {
      if (wait.stopRequested()) {
        breakOff(TalkFault::StoppedByPerson);
      } else if (silence > longestSilence()) {
        breakOff(TalkFault::NoAnswer);
      }
    }
  }
}

std::chrono::milliseconds SmtpTalk::Session::longestSilence() const {
  return std::chrono::milliseconds(m_wholeMailOut ? m_options.finalAnswerTimeoutMs
                                                  : m_options.answerTimeoutMs);
}

void SmtpTalk::Session::breakOff(TalkFault why) {
  note(why);
  // While it waits for an answer the library looks at the flag once a second only.
  m_sockets.shutDownAll();
}

void SmtpTalk::Session::disconnect() {
  if (!m_handle) {
    return;
  }
  std::packaged_task<void()> cleanUp([this] { curl_easy_cleanup(m_handle); });
  const std::future<void> cleanedUp = cleanUp.get_future();
  std::thread goodbye(std::move(cleanUp));
  if (cleanedUp.wait_for(patienceAtEnd) != std::future_status::ready) {
    m_sockets.shutDownAll();
  }
  goodbye.join();
  m_handle = nullptr;
}

std::size_t SmtpTalk::Session::onRead(char* to, std::size_t size, std::size_t count, void* self) {
  Session& session = *static_cast<Session*>(self);
  session.touch();
  if (session.m_brokenOff.load() != TalkFault::None) {
    return CURL_READFUNC_ABORT;
  }
  const qint64 read =
      session.m_mail->read(to, static_cast<qint64>(size) * static_cast<qint64>(count));
  if (read < 0) {
    session.note(TalkFault::AttachmentFailed);
    return CURL_READFUNC_ABORT;
  }
  // Its size being known, the library does not ask for more once it has it all.
  if (session.m_mail->isAtEnd()) {
    session.m_replies.onDataEnd();
    session.m_wholeMailOut = true;
  }
  return static_cast<std::size_t>(read);
}

/// Before a mail is begun: what it needs must be offered, for the library would go on without.
bool SmtpTalk::Session::acceptsOffers() {
  if (!m_server.login.isEmpty() && !m_replies.offers().login) {
    note(TalkFault::LoginNotOffered);
    return false;
  }
  if (m_envelope->needsUtf8 && !m_replies.offers().utf8Addresses) {
    note(TalkFault::Utf8NotOffered);
    return false;
  }
  return true;
}

std::size_t SmtpTalk::Session::onAnswer(char* line, std::size_t size, std::size_t count,
                                        void* self) {
  Session& session = *static_cast<Session*>(self);
  session.touch();
  const bool known = session.m_replies.offersKnown();
  session.m_replies.onLine({line, static_cast<qsizetype>(size * count)});
  if (!known && session.m_replies.offersKnown() && !session.acceptsOffers()) {
    return 0;
  }
  return size * count;
}

int SmtpTalk::Session::onProgress(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
  return static_cast<Session*>(self)->m_brokenOff.load() != TalkFault::None ? 1 : 0;
}

int SmtpTalk::Session::onTrace(CURL*, curl_infotype kind, char* bytes, std::size_t count,
                               void* self) {
  Session& session = *static_cast<Session*>(self);
  if (kind != CURLINFO_HEADER_OUT) {
    return 0;
  }
  session.touch();
  const QByteArrayView command(bytes, static_cast<qsizetype>(count));
  if (command.startsWith("QUIT")) {
    session.m_replies.onGoodbye();
    return 0;
  }
  // The login passes here too; only commands about the mail are kept.
  const bool aboutMail =
      command.startsWith("MAIL ") || command.startsWith("RCPT ") || command.startsWith("DATA");
  session.m_command = aboutMail ? command.trimmed().toByteArray() : QByteArray();
  return 0;
}

curl_socket_t SmtpTalk::Session::onOpenSocket(void* self, curlsocktype, curl_sockaddr* address) {
  Session& session = *static_cast<Session*>(self);
  session.m_replies.startNew(session.m_server.security == MailSecurity::StartTls
                                 ? SmtpReplies::Upgrade::StartTls
                                 : SmtpReplies::Upgrade::None);
  return session.m_sockets.open(*address);
}

int SmtpTalk::Session::onCloseSocket(void* self, curl_socket_t handle) {
  return static_cast<Session*>(self)->m_sockets.close(handle);
}

SmtpTalk::SmtpTalk(MailServer server, SmtpOptions options)
    : m_session(std::make_unique<Session>(std::move(server), std::move(options))) {}

SmtpTalk::~SmtpTalk() = default;

TalkResult SmtpTalk::attempt(const SmtpEnvelope& envelope, MimeStream& mail, Use use,
                             MailWait& wait) {
  return m_session->attempt(envelope, mail, use, wait);
}

void SmtpTalk::disconnect() {
  m_session->disconnect();
}

int SmtpTalk::connectionCount() const {
  return m_session->connectionCount();
}

} // namespace folivex
