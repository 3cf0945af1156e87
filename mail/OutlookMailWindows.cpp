#include "mail/OleObject.h"
#include "mail/OutlookMail.h"
#include "platform/Paths.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QScopedValueRollback>

#include <utility>

namespace folivex {

namespace {

constexpr auto programName = L"Outlook.Application";
/// For a dialog of Outlook that somebody has to answer first, and for its start.
constexpr int patienceMilliseconds = 60'000;

// OlItemType and OlBodyFormat of its object model.
constexpr long mailItem = 0;
constexpr long plainFormat = 1;

OleValue text(const QString& text) {
  return OleValue(text.toStdWString());
}

/// The way that a mail had come when it failed.
enum class Step { Preparing, HandingOver };

MailResult resultOf(const OleFailure& failure, Step step) {
  using Kind = OleFailure::Kind;
  MailResult result;
  const bool mayHaveGone = failure.kind == Kind::Unknown && step == Step::HandingOver;
  result.outcome = mayHaveGone                     ? MailOutcome::Unknown
                   : failure.kind == Kind::Refused ? MailOutcome::Refused
                                                   : MailOutcome::Temporary;
  result.concernsEveryMail = failure.kind == Kind::Absent || failure.kind == Kind::Busy;
  const QString reason = QString::fromStdWString(failure.text).simplified();
  result.errorText =
      failure.kind == Kind::Absent ? QStringLiteral("Outlook cannot be started: %1").arg(reason)
      : mayHaveGone ? QStringLiteral("Outlook got the mail to send, but before it was confirmed "
                                     "%1: it may have gone out")
                          .arg(reason)
                    : QStringLiteral("Outlook did not take the mail: %1").arg(reason);
  return result;
}

class COutlookMail : public MailTransport {
public:
  explicit COutlookMail(OutlookMode mode) : m_mode(mode) {}

  MailResult send(const MailMessage& message, MailWait& wait) override {
    MailResult result;
    if (m_wait != nullptr) { // events come in while Outlook is waited for
      result.errorText = QStringLiteral("another mail is being sent");
      return result;
    }
    const QScopedValueRollback waiting(m_wait, &wait);
    wait.handlePendingEvents();
    MailMessage checked = message;
    checked.sender = message.recipient; // Outlook has its own
    result.errorText = messageProblem(checked);
    if (!result.errorText.isEmpty()) {
      return result;
    }
    const bool isKept = static_cast<bool>(m_outlook);
    m_isLost = false;
    result = attempt(message);
    // It was closed since the last mail, which says nothing about this one.
    return isKept && m_isLost && result.outcome == MailOutcome::Temporary ? attempt(message)
                                                                          : result;
  }

  void disconnect() override {
    if (m_wait == nullptr) {
      m_outlook = {};
    }
  }

private:
  MailResult attempt(const MailMessage& message) {
    Step step = Step::Preparing;
    m_patience.setRemainingTime(patienceMilliseconds);
    try {
      if (!m_outlook) {
        m_outlook = OleObject(programName, [this] { return isPatient(); });
      }
      const OleObject mail = prepared(message);
      if (!hasRightFile(message)) {
        return changed(message);
      }
      step = m_mode == OutlookMode::Send ? Step::HandingOver : Step::Preparing;
      mail.call(m_mode == OutlookMode::Send ? L"Send" : L"Display");
    } catch (const OleFailure& failure) {
      using Kind = OleFailure::Kind;
      m_isLost = failure.kind == Kind::Lost || failure.kind == Kind::Unknown;
      if (m_isLost) {
        m_outlook = {}; // the next mail starts it anew
      }
      if (failure.kind == Kind::Busy && m_wait->stopRequested()) {
        return stopped();
      }
      return resultOf(failure, step);
    }
    MailResult result;
    result.outcome = m_mode == OutlookMode::Send ? MailOutcome::Sent : MailOutcome::Shown;
    return result;
  }

  OleObject prepared(const MailMessage& message) const {
    OleObject mail = m_outlook.call(L"CreateItem", OleValue(mailItem));
    mail.put(L"To", text(message.recipient));
    mail.put(L"CC", text(copyAddresses(message.cc).join(u';')));
    mail.put(L"Subject", text(message.subject));
    if (message.bodyKind == BodyKind::Html) {
      mail.put(L"HTMLBody", text(message.body));
    } else {
      mail.put(L"BodyFormat", OleValue(plainFormat)); // else it is as the person writes mails
      mail.put(L"Body", text(message.body));
    }
    if (!message.attachmentPath.isEmpty()) {
      const QFileInfo file(platform::withoutTrailingBlanks(message.attachmentPath));
      mail.object(L"Attachments")
          .call(L"Add", text(QDir::toNativeSeparators(file.absoluteFilePath())));
    }
    return mail;
  }

  /// Looked at when Outlook has its copy.
  static bool hasRightFile(const MailMessage& message) {
    return message.attachmentPath.isEmpty() || !message.attachmentIdentity.isKnown() ||
           platform::FileDigest::of(message.attachmentPath) == message.attachmentIdentity;
  }

  static MailResult changed(const MailMessage& message) {
    MailResult result;
    result.outcome = MailOutcome::FileChanged;
    result.errorText = QStringLiteral("the file %1 has changed since it was written: it is not "
                                      "sent unless a person accepts it in the list")
                           .arg(message.attachmentPath);
    return result;
  }

  static MailResult stopped() {
    MailResult result;
    result.outcome = MailOutcome::Stopped;
    result.errorText = QStringLiteral("stopped before the mail was sent");
    return result;
  }

  bool isPatient() const {
    m_wait->handlePendingEvents();
    return !m_wait->stopRequested() && !m_patience.hasExpired();
  }

  OutlookMode m_mode;
  OleThread m_thread;
  OleObject m_outlook;        ///< gone before the thread's ability is
  MailWait* m_wait = nullptr; ///< while a mail is on its way
  QDeadlineTimer m_patience;
  bool m_isLost = false;
};

} // namespace

QString outlookProblem() {
  return OleObject::isRegistered(programName)
             ? QString()
             : QStringLiteral("Outlook is not installed on this machine: give an SMTP server "
                              "instead.");
}

std::unique_ptr<MailTransport> makeOutlookMail(OutlookMode mode) {
  return std::make_unique<COutlookMail>(mode);
}

} // namespace folivex
