#include "mail/OutlookMail.h"

#include <QAxObject>
#include <QDir>
#include <QFileInfo>

#include <objbase.h>

namespace folivex {

namespace {

constexpr int mailItem = 0;

class COutlookMail : public MailTransport {
public:
  explicit COutlookMail(OutlookMode mode)
      : m_mode(mode), m_initialised(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
  ~COutlookMail() override {
    m_outlook.reset();
    if (m_initialised) {
      CoUninitialize();
    }
  }
  COutlookMail(const COutlookMail&) = delete;
  COutlookMail& operator=(const COutlookMail&) = delete;

  MailResult send(const MailMessage& message, MailWait& wait) override {
    wait.handlePendingEvents();
    MailMessage checked = message;
    checked.sender = message.recipient; // Outlook has its own
    m_errorText = messageProblem(checked);
    MailResult result;
    if (m_errorText.isEmpty() && handOver(message)) {
      result.outcome = MailOutcome::Sent;
    } else {
      result.errorText =
          m_errorText.isEmpty() ? QStringLiteral("Outlook did not take the mail") : m_errorText;
    }
    return result;
  }

private:
  bool handOver(const MailMessage& message) {
    if (!m_outlook) {
      m_outlook = std::make_unique<QAxObject>(QStringLiteral("Outlook.Application"));
    }
    if (m_outlook->isNull()) {
      m_outlook.reset();
      m_errorText = QStringLiteral("Outlook cannot be started");
      return false;
    }
    const std::unique_ptr<QAxObject> mail(m_outlook->querySubObject("CreateItem(int)", mailItem));
    if (!mail) {
      return false;
    }
    QObject::connect(
        mail.get(), &QAxObject::exception, mail.get(),
        [this](int, const QString&, const QString& text, const QString&) { m_errorText = text; });
    const bool html = message.bodyKind == BodyKind::Html;
    if (!mail->setProperty("To", message.recipient) ||
        !mail->setProperty("CC", copyAddresses(message.cc).join(u';')) ||
        !mail->setProperty("Subject", message.subject) ||
        !mail->setProperty(html ? "HTMLBody" : "Body", message.body) ||
        !attach(*mail, message.attachmentPath)) {
      return false;
    }
    mail->dynamicCall(m_mode == OutlookMode::Send ? "Send()" : "Display()");
    return m_errorText.isEmpty();
  }

  static bool attach(QAxObject& mail, const QString& file) {
    if (file.isEmpty()) {
      return true;
    }
    const QString path = QDir::toNativeSeparators(QFileInfo(file).absoluteFilePath());
    const std::unique_ptr<QAxObject> all(mail.querySubObject("Attachments"));
    const std::unique_ptr<QAxObject> one(all ? all->querySubObject("Add(QString)", path) : nullptr);
    return one != nullptr;
  }

  OutlookMode m_mode;
  bool m_initialised;
  std::unique_ptr<QAxObject> m_outlook;
  QString m_errorText;
};

} // namespace

OutlookAvailability outlookAvailable() {
  CLSID id{};
  return SUCCEEDED(CLSIDFromProgID(L"Outlook.Application", &id))
             ? OutlookAvailability{true, {}}
             : OutlookAvailability{false,
                                   QStringLiteral("Outlook is not installed on this machine: "
                                                  "give an SMTP server instead.")};
}

std::unique_ptr<MailTransport> makeOutlookMail(OutlookMode mode) {
  return outlookAvailable().available ? std::make_unique<COutlookMail>(mode) : nullptr;
}

} // namespace folivex
