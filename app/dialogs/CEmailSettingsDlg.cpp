#include "app/dialogs/CEmailSettingsDlg.h"

#include "app/dialogs/FormGrid.h"
#include "app/dialogs/SettingUse.h"
#include "app/dialogs/SetupChecks.h"
#include "mail/OutlookMail.h"
#include "widgets/Controls.h"
#include "widgets/Dialogs.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

namespace folivex {

namespace {

QLabel* buddyLabel(const QString& text, QWidget* field, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setBuddy(field);
  return label;
}

QString offeredLogFile() {
  return QStringLiteral("emails_log.txt");
}

} // namespace

CEmailSettingsDlg::CEmailSettingsDlg(Dialogs& dialogs, QWidget* parent)
    : SetupDialog("emailSettings", QStringLiteral("E-mail settings"),
                  QStringLiteral("email-settings"), dialogs, parent) {
  // In the order of the columns, which is the order that the Tab key takes.
  const QList<QWidget*> left = {buildSending(), buildServer(), buildSearch()};
  constexpr int startWidth = 940;
  finish(left, {buildMessage()}, startWidth);
}

QWidget* CEmailSettingsDlg::buildServer() {
  auto* group = new QGroupBox(QStringLiteral("Mail server"), this);
  auto* server = new QLineEdit(group);
  auto* login = new QLineEdit(group);
  QLineEdit* password = passwordField(group);
  m_binding.bind(&SplitSetup::emailSmtp, server);
  m_binding.bind(&SplitSetup::emailLogin, login);
  m_binding.bind(&SplitSetup::emailPassword, password);
  m_sendTest =
      sideButton("sendTest", QStringLiteral("&Send Test"),
                 QStringLiteral("Send one mail to the From address with these settings"), group);
  connect(m_sendTest, &QPushButton::clicked, this, [this] { sendTest(); });
  auto* outlook =
      new QCheckBox(QStringLiteral("&Use Microsoft outlook instead of stmp server"), group);
  auto* automatic = new QCheckBox(QStringLiteral("Aut&o"), group);
  const OutlookAvailability available = outlookAvailable();
  if (!available.available) {
    outlook->setToolTip(available.reason);
  }
  m_binding.bind(&SplitSetup::useOutlook, outlook);
  m_binding.bind(&SplitSetup::useOutlookAuto, automatic);

  FormGrid grid(group, m_binding);
  grid.row(QStringLiteral("SMTP Ser&ver:"), {server});
  grid.row(QString(),
           {new QLabel(QStringLiteral("* for SSL/Ports use e.g. ssl:smtp.example.com:465\n"
                                      "* for TLS use e.g. tls:smtp.example.com:587"),
                       group)});
  grid.row(QStringLiteral("&Login:"), {login});
  grid.row(QStringLiteral("Pass&word:"), {password});
  grid.wide({outlook, automatic});
  grid.wide({m_sendTest});
  return group;
}

QWidget* CEmailSettingsDlg::buildSending() {
  auto* group = new QGroupBox(QStringLiteral("Sending"), this);
  auto* enable = new QCheckBox(QStringLiteral("&Enable sending of emails"), group);
  auto* confirm = new QCheckBox(QStringLiteral("Co&nfirm before sending"), group);
  auto* test = new QCheckBox(
      QStringLiteral("&Test mode! all emails will be sent to from address instead"), group);
  QLineEdit* pause = numberField(group);
  auto* log = new QLineEdit(group);
  log->setPlaceholderText(QStringLiteral("no log"));
  m_binding.bind(&SplitSetup::emailEnable, enable);
  m_binding.bind(&SplitSetup::emailConfirm, confirm);
  m_binding.bind(&SplitSetup::emailTest, test);
  constexpr int longestPause = 3'600'000;
  m_binding.bind(&SplitSetup::emailPause, pause, {0, longestPause});
  m_binding.bind(&SplitSetup::emailLogFile, log, SetupBinding::Shown::End);
  QPushButton* browse = sideButton("browseLogFile", QStringLiteral("&Browse..."),
                                   QStringLiteral("Choose the log file"), group);
  connect(browse, &QPushButton::clicked, this, [this] { chooseLogFile(); });

  FormGrid grid(group, m_binding);
  grid.wide({enable});
  grid.wide({confirm});
  grid.wide({test});
  grid.row(QStringLiteral("&Pause:"),
           {pause, new QLabel(QStringLiteral("Milliseconds between sends,"), group)});
  grid.row(QStringLiteral("Lo&g file:"), {log, browse});
  return group;
}

QWidget* CEmailSettingsDlg::buildMessage() {
  auto* group = new QGroupBox(QStringLiteral("Message"), this);
  auto* from = new QLineEdit(group);
  auto* name = new QLineEdit(group);
  auto* copy = new QLineEdit(group);
  auto* subject = new QLineEdit(group);
  auto* message = new QPlainTextEdit(group);
  constexpr int linesAtLeast = 5;
  message->setMinimumHeight(linesAtLeast * message->fontMetrics().lineSpacing());
  message->setTabChangesFocus(true);
  auto* html = new QCheckBox(QStringLiteral("html message (STMP send onl&y)"), group);
  m_binding.bind(&SplitSetup::emailFrom, from);
  m_binding.bind(&SplitSetup::emailFromName, name);
  m_binding.bind(&SplitSetup::emailInvoiceCc, copy);
  m_binding.bind(&SplitSetup::emailSubject, subject);
  m_binding.bind(&SplitSetup::emailMsg, message);
  m_binding.bind(&SplitSetup::emailHtml, html);

  FormGrid grid(group, m_binding);
  grid.row(QStringLiteral("&From Address:"), {from});
  grid.row(QStringLiteral("From Na&me:"), {name});
  grid.row(QStringLiteral("&CC Address:"), {copy});
  grid.row(QStringLiteral("Sub&ject:"), {subject});
  grid.row(QStringLiteral("Message:"), {message});
  grid.wide({html});
  return group;
}

QWidget* CEmailSettingsDlg::buildSearch() {
  auto* group = new QGroupBox(QStringLiteral("Where the address stands on the page"), this);
  const auto number = [&](int SplitSetup::*setting) {
    QLineEdit* field = numberField(group);
    m_binding.bind(setting, field, {-1, std::numeric_limits<int>::max()});
    return field;
  };
  QLineEdit* vert = number(&SplitSetup::emailMatchVert);
  QLineEdit* vertTo = number(&SplitSetup::emailMatchVertTo);
  QLineEdit* horiz = number(&SplitSetup::emailMatchHorizFrom);
  QLineEdit* horizTo = number(&SplitSetup::emailMatchHorizTo);
  auto* after = new QLineEdit(group);
  auto* before = new QLineEdit(group);
  m_binding.bind(&SplitSetup::emailHorizAfterText, after);
  m_binding.bind(&SplitSetup::emailHorizBeforeText, before);

  FormGrid grid(group, m_binding);
  grid.row(QStringLiteral("Email match ve&rtical position:"),
           {vert, buddyLabel(QStringLiteral("to"), vertTo, group), vertTo});
  grid.row(QStringLiteral("Email match hori&zontal position:"),
           {horiz, buddyLabel(QStringLiteral("to"), horizTo, group), horizTo});
  grid.row(QStringLiteral("&After text:"), {after});
  grid.row(QStringLiteral("Before te&xt:"), {before});
  return group;
}

QSet<QString> CEmailSettingsDlg::idle(const SplitSetup& setup) const {
  QSet<QString> keys = idleSettings(setup);
  // A setup from elsewhere may have it on: it must be possible to switch it off here.
  if (!outlookAvailable().available && !setup.useOutlook) {
    keys += QStringLiteral("USEOUTLOOK");
  }
  return keys;
}

SettingFindings CEmailSettingsDlg::check(const SplitSetup& setup) const {
  return checkEmailDialog(setup);
}

void CEmailSettingsDlg::chooseLogFile() {
  auto* log = static_cast<QLineEdit*>(m_binding.control(QStringLiteral("EMAILLOGFILE")));
  const QString chosen = m_dialogs.saveFile(
      this, {QStringLiteral("Save txt log file"), QStringLiteral("Text files (*.txt)"),
             log->text().isEmpty() ? offeredLogFile() : log->text(), QStringLiteral("TXT")});
  if (!chosen.isEmpty()) {
    log->setText(chosen);
  }
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
