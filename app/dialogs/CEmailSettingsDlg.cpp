#include "app/dialogs/CEmailSettingsDlg.h"

#include "app/dialogs/FormGrid.h"
#include "app/dialogs/SettingUse.h"
#include "app/dialogs/SetupChecks.h"
#include "mail/MailServer.h"
#include "mail/OutlookMail.h"
#include "widgets/Controls.h"
#include "widgets/Dialogs.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

namespace folivex {

CEmailSettingsDlg::CEmailSettingsDlg(Dialogs& dialogs, QWidget* parent)
    : SetupDialog("emailSettings", "E-mail settings", "email-settings", checkEmailDialog, dialogs,
                  parent) {
  // In the order of the columns, which is the order that the Tab key takes.
  const QList<QWidget*> left = {buildSending(), buildServer(), buildSearch()};
  constexpr int startWidth = 940;
  finish(left, {buildMessage()}, startWidth);
}

QWidget* CEmailSettingsDlg::buildServer() {
  auto* group = new QGroupBox(QStringLiteral("Mail server"), this);
  QLineEdit* server = m_binding.field(&SplitSetup::emailSmtp, group);
  QLineEdit* login = m_binding.field(&SplitSetup::emailLogin, group);
  QLineEdit* password = m_binding.field(&SplitSetup::emailPassword, group);
  password->setEchoMode(QLineEdit::Password);
  m_sendTest = sideButton("sendTest", QStringLiteral("&Send Test"),
                          QStringLiteral("Send one mail to the From address with these settings"),
                          group, [this] { sendTest(); });
  auto* outlook =
      new QCheckBox(QStringLiteral("&Use Microsoft outlook instead of stmp server"), group);
  outlook->setToolTip(outlookProblem());
  m_binding.bind(&SplitSetup::useOutlook, outlook);
  QCheckBox* automatic = m_binding.box(&SplitSetup::useOutlookAuto, QStringLiteral("Aut&o"), group);

  FormGrid grid(group, m_binding);
  grid.row(QStringLiteral("SMTP Ser&ver:"), {server});
  grid.row(QString(),
           {new QLabel(QStringLiteral("* for SSL/Ports use e.g. ssl:smtp.example.com:465\n"
                                      "* for TLS use e.g. tls:smtp.example.com:587"),
                       group)});
  grid.wide({new QLabel(patienceText(), group)});
  grid.row(QStringLiteral("&Login:"), {login});
  grid.row(QStringLiteral("Pass&word:"), {password});
  grid.wide({outlook, automatic});
  grid.wide({m_sendTest});
  return group;
}

QWidget* CEmailSettingsDlg::buildSending() {
  auto* group = new QGroupBox(QStringLiteral("Sending"), this);
  FormGrid grid(group, m_binding);
  const auto box = [&](bool SplitSetup::*setting, const char* label) {
    grid.wide({m_binding.box(setting, QString::fromLatin1(label), group)});
  };
  box(&SplitSetup::emailEnable, "&Enable sending of emails");
  box(&SplitSetup::emailConfirm, "Co&nfirm before sending");
  box(&SplitSetup::emailTest, "&Test mode! all emails will be sent to from address instead");
  constexpr int longestPause = 3'600'000;
  QLineEdit* pause = m_binding.numberField(&SplitSetup::emailPause, group, {0, longestPause});
  QLineEdit* log = m_binding.field(&SplitSetup::emailLogFile, group, SetupBinding::Shown::End);
  log->setPlaceholderText(QStringLiteral("no log"));
  QPushButton* browse = browseButton(
      "browseLogFile", QStringLiteral("&Browse..."), QStringLiteral("Choose the log file"), log,
      [this](const QString& now) {
        const QString offered = QStringLiteral("emails_log.txt");
        return m_dialogs.saveFile(this, {QStringLiteral("Save txt log file"),
                                         QStringLiteral("Text files (*.txt)"),
                                         now.isEmpty() ? offered : now, QStringLiteral("TXT")});
      });
  grid.row(QStringLiteral("&Pause:"),
           {pause, new QLabel(QStringLiteral("Milliseconds between sends,"), group)});
  grid.row(QStringLiteral("Lo&g file:"), {log, browse});
  return group;
}

QWidget* CEmailSettingsDlg::buildMessage() {
  auto* group = new QGroupBox(QStringLiteral("Message"), this);
  FormGrid grid(group, m_binding);
  const auto field = [&](QString SplitSetup::*setting, const char* label) {
    grid.row(QString::fromLatin1(label), {m_binding.field(setting, group)});
  };
  field(&SplitSetup::emailFrom, "&From Address:");
  field(&SplitSetup::emailFromName, "From Na&me:");
  field(&SplitSetup::emailInvoiceCc, "&CC Address:");
  field(&SplitSetup::emailSubject, "Sub&ject:");
  auto* message = new QPlainTextEdit(group);
  constexpr int linesAtLeast = 5;
  message->setMinimumHeight(linesAtLeast * message->fontMetrics().lineSpacing());
  message->setTabChangesFocus(true);
  m_binding.bind(&SplitSetup::emailMsg, message);
  grid.row(QStringLiteral("Message:"), {message});
  grid.wide({m_binding.box(&SplitSetup::emailHtml, QStringLiteral("html message (STMP send onl&y)"),
                           group)});
  return group;
}

QWidget* CEmailSettingsDlg::buildSearch() {
  auto* group = new QGroupBox(QStringLiteral("Where the address stands on the page"), this);
  FormGrid grid(group, m_binding);
  const auto range = [&](int SplitSetup::*from, int SplitSetup::*to, const char* label) {
    constexpr WholeLimits limits{-1, std::numeric_limits<int>::max()};
    QLineEdit* first = m_binding.numberField(from, group, limits);
    QLineEdit* last = m_binding.numberField(to, group, limits);
    grid.row(QString::fromLatin1(label), {first, labelFor(last, QStringLiteral("to")), last});
  };
  range(&SplitSetup::emailMatchVert, &SplitSetup::emailMatchVertTo,
        "Email match ve&rtical position:");
  range(&SplitSetup::emailMatchHorizFrom, &SplitSetup::emailMatchHorizTo,
        "Email match hori&zontal position:");
  grid.row(QString(), {new QLabel(QStringLiteral("(Set -1 for any position)"), group)});
  grid.row(QStringLiteral("&After text:"),
           {m_binding.field(&SplitSetup::emailHorizAfterText, group)});
  grid.row(QStringLiteral("Before te&xt:"),
           {m_binding.field(&SplitSetup::emailHorizBeforeText, group)});
  return group;
}

QSet<QString> CEmailSettingsDlg::idle(const SplitSetup& setup) const {
  QSet<QString> keys = idleSettings(setup);
  // A setup from elsewhere may have it on: it must be possible to switch it off here.
  if (!outlookProblem().isEmpty() && !setup.useOutlook) {
    keys += QStringLiteral("USEOUTLOOK");
  }
  return keys;
}

void CEmailSettingsDlg::sendTest() {
  // Checked as if sending were enabled: the test sends.
  SplitSetup setup = shown();
  setup.emailEnable = true;
  if (tellProblems(setup)) {
    onSendTest(shown());
  }
}

void CEmailSettingsDlg::showEvent(QShowEvent* event) {
  m_sendTest->setEnabled(onSendTest != nullptr);
  SetupDialog::showEvent(event);
}

} // namespace folivex
