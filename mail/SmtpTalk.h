// SmtpTalk: the one place that knows the SMTP library.
#pragma once

#include "mail/MailServer.h"
#include "mail/MailTransport.h"
#include "mail/MimeMail.h"
#include "mail/SmtpReplies.h"

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <future>
#include <mutex>
#include <vector>

namespace folivex {

/// A mail that has passed messageProblem().
struct OutgoingMail {
  explicit OutgoingMail(const MailMessage& mail);

  const MailMessage& message;
  QByteArrayList head;
  QByteArray sender;         ///< addresses in the form for servers, in "<" and ">"
  QByteArrayList recipients; ///< those of copies included
  bool needsUtf8 = false;    ///< some address is more than ASCII before its "@"
};

enum class TalkFault : std::uint8_t {
  None,
  NoSuchServer,
  NotReached,
  TimedOut, ///< while connecting
  ConnectionLost,
  Encryption,
  Certificate,
  NoStartTls,
  LoginRefused,
  ServerRefused, ///< see the last code of the answers
  Other,
  // This side broke off:
  StoppedByPerson,
  NoAnswer,
  LoginNotOffered,
  Utf8NotOffered,
  AttachmentFailed, ///< the text says why
  AttachmentChanged
};

/// What one attempt came to.
struct TalkResult {
  TalkFault fault = TalkFault::None;
  QString text;                  ///< in the library's own words, may be empty
  bool onKeptConnection = false; ///< it had served another mail before
  QString refusedRecipient;      ///< the one that the server said no to
  SmtpReplies replies;
};

/// The sockets of a connection, so that another thread can end a wait on them. For any thread.
class OpenSockets {
public:
  /// Makes a socket and remembers it.
  curl_socket_t open(const curl_sockaddr& address);
  int close(curl_socket_t handle);
  /// Ends every talk at once: whoever waits on a socket sees it closed. The sockets stay open.
  void shutDownAll();

private:
  std::mutex m_mutex;
  std::vector<curl_socket_t> m_open;
};

/// A server and the connection to it. The library waits for the last answer to a mail within one
/// call, so it works on a thread of its own, on which all callbacks run; what both threads touch is
/// atomic or under a lock. attempt() and disconnect() belong to the caller's thread.
class SmtpTalk {
public:
  SmtpTalk(const MailServer& server, const SmtpOptions& options);
  ~SmtpTalk() { disconnect(); }
  SmtpTalk(const SmtpTalk&) = delete;
  SmtpTalk& operator=(const SmtpTalk&) = delete;

  /// Hands over one mail, on the kept connection when that lives and `fresh` is not asked for.
  enum class Use : std::uint8_t { Kept, Fresh };
  TalkResult attempt(const OutgoingMail& outgoing, Use use, MailWait& wait);
  void disconnect();
  int connectionCount() const { return m_connections; }

private:
  void begin(const OutgoingMail& outgoing);
  void setFixedOptions();
  void setSecurityOptions();
  CURLcode performWatched(MailWait& wait);
  bool isSilentTooLong() const;
  /// Ends the talk from the caller's thread.
  void breakOff(TalkFault why);
  TalkFault faultOf(CURLcode code) const;
  bool acceptsOffers();
  void touch() { m_lastSign = std::chrono::steady_clock::now().time_since_epoch().count(); }

  static std::size_t onAnswer(char* line, std::size_t size, std::size_t count, void* self);
  static int onProgress(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t);
  static int onTrace(CURL*, curl_infotype kind, char* bytes, std::size_t count, void* self);
  static curl_socket_t onOpenSocket(void* self, curlsocktype, curl_sockaddr* address);
  static int onCloseSocket(void* self, curl_socket_t handle);

  MailServer m_server;
  SmtpOptions m_options;
  OpenSockets m_sockets;
  CURL* m_handle = nullptr;
  std::array<char, CURL_ERROR_SIZE> m_errorText{};
  int m_connections = 0;
  SmtpOffers m_offers; ///< of the kept connection

  // One attempt:
  const OutgoingMail* m_outgoing = nullptr;
  const MimeMail* m_mail = nullptr;
  SmtpReplies m_replies; ///< the library's thread alone, until it has ended
  QByteArray m_command;  ///< the last one about a recipient
  std::atomic<bool> m_wholeMailOut = false;
  std::atomic<TalkFault> m_brokenOff = TalkFault::None;
  std::atomic<std::chrono::steady_clock::rep> m_lastSign = 0;
};

} // namespace folivex
