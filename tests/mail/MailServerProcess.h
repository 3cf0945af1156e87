// MailServerProcess: the mail servers of the tests, as processes on the loopback.
#pragma once

#include "mail/MailServer.h"
#include "mail/MailTransport.h"
#include "tests/support/Programs.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <functional>
#include <vector>

namespace folivex::test {

/// One server; it tells its port when it listens, and its mails when it is stopped.
class MailServerProcess {
public:
  MailServerProcess(const char* script, const QStringList& arguments) {
    const QString path = QStringLiteral(FOLIVEX_SOURCE_DIR "/tests/mail/") + QLatin1String(script);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral("/usr/bin/python3"),
                    QStringList{QStringLiteral("-B"), path} + arguments);
    const QJsonObject first = nextRecord();
    m_port = first[QLatin1String("port")].toInt();
    EXPECT_GT(m_port, 0) << "no mail server: is python3-aiosmtpd installed?";
  }
  ~MailServerProcess() { stop(); }
  MailServerProcess(const MailServerProcess&) = delete;
  MailServerProcess& operator=(const MailServerProcess&) = delete;

  int port() const { return m_port; }
  QString text(const QString& prefix = {}) const {
    return prefix + QStringLiteral("127.0.0.1:%1").arg(m_port);
  }

  /// Everything that came in until now; ends the server.
  const std::vector<QJsonObject>& mails() {
    stop();
    return m_mails;
  }
  int connections() {
    stop();
    return m_connections;
  }

private:
  QJsonObject nextRecord() {
    while (!m_process.canReadLine()) {
      if (!m_process.waitForReadyRead(hangLimit)) {
        return {};
      }
    }
    return QJsonDocument::fromJson(m_process.readLine()).object();
  }

  void stop() {
    if (m_process.state() == QProcess::NotRunning) {
      return;
    }
    m_process.closeWriteChannel();
    for (QJsonObject record = nextRecord(); !record.isEmpty(); record = nextRecord()) {
      if (record.contains(QLatin1String("connections"))) {
        m_connections = record[QLatin1String("connections")].toInt();
        break;
      }
      m_mails.push_back(record);
    }
    m_process.kill();
    m_process.waitForFinished(hangLimit);
  }

  QProcess m_process;
  int m_port = 0;
  int m_connections = 0;
  std::vector<QJsonObject> m_mails;
};

/// Waits without a window; can stop.
class PlainWait : public MailWait {
public:
  void handlePendingEvents() override {
    if (onEvents) {
      onEvents();
    }
  }
  bool stopRequested() override { return stop; }

  std::function<void()> onEvents;
  bool stop = false;
};

inline QStringList strings(const QJsonValue& array) {
  QStringList texts;
  for (const auto& value : array.toArray()) {
    texts += value.toString();
  }
  return texts;
}

inline MailMessage plainMail(const QString& recipient) {
  MailMessage message;
  message.sender = QStringLiteral("office@example.org");
  message.recipient = recipient;
  message.subject = QStringLiteral("Your statement");
  message.body = QStringLiteral("Please find it attached.");
  return message;
}

} // namespace folivex::test
