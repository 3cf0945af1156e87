#include "app/dialogs/SettingDialogs.h"

#include "app/dialogs/SetupChecks.h"
#include "engine/output/ExternalCommand.h"
#include "mail/EmailSettingsCheck.h"
#include "mail/MailServer.h"
#include "mail/OutlookMail.h"
#include "widgets/Controls.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>

namespace folivex {

namespace {

using S = SplitSetup;

void addSending(FormGrid grid) {
  grid.wide().box(&S::emailEnable, "&Enable sending of emails");
  grid.wide().box(&S::emailConfirm, "Co&nfirm before sending");
  grid.wide().box(&S::emailTest, "&Test mode! all emails will be sent to from address instead");
  grid.row("&Pause:").whole(&S::emailPause, {0, longestPause});
  grid.note(QStringLiteral("Milliseconds between sends,"));
  grid.row("Lo&g file:").text(&S::emailLogFile, Shown::End).whenEmpty("no log");
  grid.browse({.name = "browseLogFile",
               .toolTip = "Choose the log file",
               .what = Browse::For::NewFile,
               .filter = "Text files (*.txt)",
               .title = "Save txt log file",
               .offered = "emails_log.txt"});
}

void addServer(FormGrid& grid) {
  grid.row("SMTP Ser&ver:").text(&S::emailSmtp);
  grid.row("").note(QStringLiteral("* for SSL/Ports use e.g. ssl:smtp.example.com:465\n"
                                   "* for TLS use e.g. tls:smtp.example.com:587"));
  grid.wide().note(patienceText());
  grid.row("&Login:").text(&S::emailLogin);
  grid.row("Pass&word:").text(&S::emailPassword, Shown::Never);
  grid.wide().box(&S::useOutlook, "&Use Microsoft outlook instead of stmp server");
  if (const QString problem = outlookProblem(); !problem.isEmpty()) {
    grid.last<QCheckBox>()->setToolTip(problem);
  }
  grid.box(&S::useOutlookAuto, "Aut&o");
}

void addSearch(FormGrid grid) {
  constexpr WholeLimits limits{-1, std::numeric_limits<int>::max()};
  grid.row("Email match ve&rtical position:").whole(&S::emailMatchVert, limits);
  grid.before("to").whole(&S::emailMatchVertTo, limits);
  grid.row("Email match hori&zontal position:").whole(&S::emailMatchHorizFrom, limits);
  grid.before("to").whole(&S::emailMatchHorizTo, limits);
  grid.row("").note(QStringLiteral("(Set -1 for any position)"));
  grid.row("&After text:").text(&S::emailHorizAfterText);
  grid.row("Before te&xt:").text(&S::emailHorizBeforeText);
}

void addMessage(FormGrid grid) {
  grid.row("&From Address:").text(&S::emailFrom);
  grid.row("From Na&me:").text(&S::emailFromName);
  grid.row("&CC Address:").text(&S::emailInvoiceCc);
  grid.row("Sub&ject:").text(&S::emailSubject);
  grid.row("Message:").longText(&S::emailMsg);
  grid.wide().box(&S::emailHtml, "html message (STMP send onl&y)");
}

} // namespace

CConfigureDlg::CConfigureDlg(Dialogs& dialogs, QWidget* parent)
    : SetupDialog("splitCommand", "Split command", "split-command", checkExternalCommand, dialogs,
                  parent) {
  FormGrid grid = group("", "External program:");
  grid.wide().box(&S::configUseExternal, "&Use external command");
  grid.row("&External program:").text(&S::configExternalCommand, Shown::End);
  auto* command = grid.last<QLineEdit>();
  grid.browse({.name = "browseCommand",
               .toolTip = "Choose the program that is started for each output",
               .filter = "Programs (*.exe *.bat);;All files (*)",
               .title = "Choose the external program"});
  grid.row("&Parameters:").text(&S::configExternalParams);
  auto* parameters = grid.last<QLineEdit>();
  grid.insertions("insertPlaceholder", "&Insert", "Put a placeholder where the cursor stands",
                  {{"[IN]", "the source"},
                   {"[OUT]", "the output"},
                   {"[START]", "first page"},
                   {"[END]", "last page"}});
  grid.add(sideButton("offerCommand", QStringLiteral("&Default command"),
                      QStringLiteral("Put the usual program and its parameters into both fields"),
                      grid.line(), [command, parameters] {
                        command->setText(offeredExternalCommand());
                        parameters->setText(offeredExternalParams());
                      }));
  constexpr int startWidth = 620;
  finish(startWidth);
}

COtherSettingsDlg::COtherSettingsDlg(Dialogs& dialogs, QWidget* parent)
    : SetupDialog("otherSettings", "Other settings", "other-settings", checkOtherSettings, dialogs,
                  parent) {
  FormGrid grid = group("", "");
  grid.wide().box(&S::otherSettingsRemoveFiles,
                  "&Remove files from output folder before processing.");
  grid.wide().before("Remove &text from output filenames, use | for multiple");
  grid.wide().text(&S::otherSettingsRemoveText).whenEmpty("e.g.  Ltd|Inc.");
  grid.wide().note(QStringLiteral("* NOTE: this is case sensitive"));
  constexpr int startWidth = 520;
  finish(startWidth);
}

CReportOptionsDlg::CReportOptionsDlg(Dialogs& dialogs, QWidget* parent)
    : SetupDialog("reportOptions", "Report and file options", "report-options", checkReportOptions,
                  dialogs, parent) {
  constexpr auto* widest = "Horizontal Spacing Detection:";
  FormGrid reports = group("Reports", widest);
  reports.wide().box(&S::reportOptionsTxt, "Always write out a &txt report file");
  reports.wide().box(&S::reportOptionsCsv, "Always write out a &csv report file");
  reports.wide().box(&S::reportOptionsCurrent, "&Always write to current source file folder\n"
                                               "if no permissions then it will use output folder");
  reports.row("&Report output:").text(&S::reportOptionsOutputFolder, Shown::End);
  reports.browse({.name = "browseReportFolder",
                  .toolTip = "Choose the folder of the reports",
                  .what = Browse::For::Folder});
  FormGrid files = group("Files and words", widest);
  files.row("&Filelist:").text(&S::reportUseFileList, Shown::End);
  files.browse({.name = "browseFileList",
                .toolTip = "Choose the list of names",
                .filter = "Text files (*.txt *.lst);;All files (*)",
                .text = "Br&owse..."});
  files.row("Remove c&hars:").text(&S::reportRemoveChars);
  files.row("Horizontal &Spacing Detection:").factor(&S::horizWordSpacing);
  files.note(QStringLiteral("(default is 1.02, more is more tolerant)"));
  constexpr int startWidth = 620;
  finish(startWidth);
}

CEmailSettingsDlg::CEmailSettingsDlg(Dialogs& dialogs, QWidget* parent)
    : SetupDialog("emailSettings", "E-mail settings", "email-settings", checkEmailDialog, dialogs,
                  parent) {
  constexpr auto* widest = "Email match horizontal position:";
  addSending(group("Sending", widest));
  FormGrid server = group("Mail server", widest);
  addServer(server);
  server.wide();
  m_sendTest = sideButton("sendTest", QStringLiteral("&Send Test"),
                          QStringLiteral("Send one mail to the From address with these settings"),
                          server.line(), [this] { sendTest(); });
  server.add(m_sendTest);
  addSearch(group("Where the address stands on the page", widest));
  nextColumn();
  addMessage(group("Message", "From Address:"));
  constexpr int startWidth = 940;
  finish(startWidth);
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
