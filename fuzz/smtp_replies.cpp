// A mail server that says what the input says, behind its first byte, which chooses how the mail is
// sent. A mail counts as sent only when the server has all of it, and no password comes back in
// what a person is told.
#include "fuzz/Targets.h"
#include "mail/SmtpTransport.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <thread>

namespace fuzzing {

namespace {

using namespace folivex;

/// Says everything at once to everybody who comes: answers in advance are answers, and nobody waits
/// for anybody.
class TalkingServer {
public:
  explicit TalkingServer(QByteArray words) : m_words(std::move(words)) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const plain = reinterpret_cast<sockaddr*>(&address);
    require(m_listener >= 0 && bind(m_listener, plain, size) == 0 && listen(m_listener, 8) == 0 &&
            getsockname(m_listener, plain, &size) == 0);
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { serve(); });
  }
  ~TalkingServer() { stop(); }
  TalkingServer(const TalkingServer&) = delete;
  TalkingServer& operator=(const TalkingServer&) = delete;

  int port() const { return m_port; }

  /// What came in, over all connections.
  QByteArray stop() {
    if (m_thread.joinable()) {
      shutdown(m_listener, SHUT_RDWR); // which wakes accept()
      m_thread.join();
      close(m_listener);
    }
    return m_heard;
  }

private:
  void serve() {
    for (int peer = accept(m_listener, nullptr, nullptr); peer >= 0;
         peer = accept(m_listener, nullptr, nullptr)) {
      for (qsizetype sent = 0; sent < m_words.size();) {
        const ssize_t now = send(peer, m_words.data() + sent,
                                 static_cast<std::size_t>(m_words.size() - sent), MSG_NOSIGNAL);
        if (now <= 0) {
          break;
        }
        sent += now;
      }
      shutdown(peer, SHUT_WR);
      std::array<char, 4096> bytes = {};
      for (ssize_t count = 1; count > 0;) {
        count = recv(peer, bytes.data(), bytes.size(), 0);
        m_heard.append(bytes.data(), std::max<ssize_t>(count, 0));
      }
      close(peer);
    }
  }

  QByteArray m_words;
  QByteArray m_heard;
  int m_listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  int m_port = 0;
  std::thread m_thread;
};

class NobodyWaits : public MailWait {
public:
  void handlePendingEvents() override {}
  bool stopRequested() override { return false; }
};

} // namespace

void runSmtpReplies(const QByteArray& input) {
  const int way = input.isEmpty() ? 0 : input[0];
  TalkingServer server(input.mid(1));
  MailServer where;
  where.host = QStringLiteral("127.0.0.1");
  where.port = server.port();
  where.security = (way & 1) != 0 ? MailSecurity::StartTls : MailSecurity::None;
  if ((way & 2) != 0) {
    where.login = QStringLiteral("anna");
    where.password = QStringLiteral("open-sesame-7");
  }
  MailMessage mail;
  mail.sender = QStringLiteral("office@example.org");
  mail.recipient =
      (way & 4) != 0 ? QStringLiteral("käthe@example.org") : QStringLiteral("k@example.org");
  mail.cc = QStringLiteral("copy@example.org");
  mail.body = QStringLiteral("the whole mail");

  MailResult result;
  {
    NobodyWaits wait;
    SmtpTransport transport(where);
    for (int mails = 0; mails < 2; ++mails) {
      result = transport.send(mail, wait);
      require(result.sent() == result.errorText.isEmpty());
      require(where.password.isEmpty() || !result.errorText.contains(where.password));
    }
  }
  const QByteArray heard = server.stop();
  require(!result.sent() || heard.indexOf("\r\n.\r\n", heard.indexOf("the whole mail")) > 0);
}

} // namespace fuzzing
