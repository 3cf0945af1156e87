// MailServerProcess: the mail server of the tests, as a process on the loopback.
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

inline QStringList strings(const QJsonValue& array) {
  return array.toVariant().toStringList();
}

/// One server with the fault given (see smtp_server.py), or one that takes everything.
class MailServerProcess {
public:
  explicit MailServerProcess(const QStringList& fault = {}) {
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    startProgram(m_process, "/usr/bin/python3",
                 QStringList{"-B", FOLIVEX_SOURCE_DIR "/tests/mail/smtp_server.py"} + fault);
    m_port = nextRecord()["port"].toInt();
    EXPECT_GT(m_port, 0) << "no mail server: is python3-aiosmtpd installed?";
  }
  ~MailServerProcess() {
    m_process.kill();
    m_process.waitForFinished(hangLimit);
  }
  MailServerProcess(const MailServerProcess&) = delete;
  MailServerProcess& operator=(const MailServerProcess&) = delete;

  int port() const { return m_port; }
  QString text(const QString& prefix = {}) const {
    return prefix + QStringLiteral("127.0.0.1:%1").arg(m_port);
  }

  /// Begins anew with another fault: what came in before is forgotten.
  void become(const QStringList& fault) { ask(fault); }

  /// Every mail that came in whole, until now.
  const std::vector<QJsonObject>& mails() {
    ask({});
    return m_mails;
  }
  /// The recipients of those that it took.
  QStringList taken() {
    QStringList recipients;
    for (const QJsonObject& mail : mails()) {
      recipients += mail["accepted"].toBool() ? strings(mail["recipients"]) : QStringList();
    }
    return recipients;
  }
  int connections() {
    ask({});
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

  void ask(const QStringList& fault) {
    m_process.write(
        QJsonDocument(QJsonArray::fromStringList(fault)).toJson(QJsonDocument::Compact) + '\n');
    m_mails.clear();
    QJsonObject record = nextRecord();
    for (; !record.isEmpty() && !record.contains("connections"); record = nextRecord()) {
      m_mails.push_back(record);
    }
    m_connections = record["connections"].toInt(-1);
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

inline MailMessage plainMail(const QString& recipient) {
  MailMessage message;
  message.sender = "office@example.org";
  message.recipient = recipient;
  message.subject = "Your statement";
  message.body = "Please find it attached.";
  return message;
}

} // namespace folivex::test
