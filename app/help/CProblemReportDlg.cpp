#include "app/help/CProblemReportDlg.h"

#include "widgets/Controls.h"
#include "widgets/Dialogs.h"
#include "widgets/TextExport.h"
#include "widgets/WindowMemory.h"

#include <QCheckBox>
#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>

namespace folivex {

namespace {

QString addressKey() {
  return QStringLiteral("problemReport/address");
}

/// Above this line the person writes, below it the report begins.
QString rulingLine() {
  return QStringLiteral("----- What the program adds -----");
}

} // namespace

CProblemReportDlg::CProblemReportDlg(ProblemReport report, Dialogs& dialogs, WindowMemory& memory,
                                     QWidget* parent)
    : QDialog(parent), m_report(std::move(report)), m_dialogs(dialogs), m_memory(memory) {
  setObjectName(QStringLiteral("problemReportDialog"));
  setWindowTitle(QStringLiteral("Problem report"));
  setProperty("helpTopic", QStringLiteral("problem-report"));
  buildControls();
  m_text->setPlainText(QStringLiteral("What happened, and what did you expect?\n\n\n"));
  fill();
  m_text->moveCursor(QTextCursor::Down); // below the question
  m_text->setFocus();
}

CProblemReportDlg::~CProblemReportDlg() {
  // A field that loses the cursor while the window goes must not ask for what is gone already.
  hide();
}

void CProblemReportDlg::buildControls() {
  auto* intro = new QLabel(QStringLiteral("Nothing has left this computer. Read the text, change "
                                          "what you like, then copy, save or mail it."),
                           this);
  intro->setWordWrap(true);
  m_text = named(new QPlainTextEdit(this), "reportText", "The report; you may change all of it");
  m_text->setAccessibleName(QStringLiteral("Report"));
  m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  m_text->setTabChangesFocus(true);
  m_includeNames = named(
      new QCheckBox(QStringLiteral("&Include file names and search words"), this), "includeNames",
      "They often help to find the fault. Passwords and addresses are left out in any case");
  connect(m_includeNames, &QCheckBox::toggled, this, [this] { fill(); });
  m_to = named(new QLineEdit(this), "reportTo",
               "E-mail address of whoever looks after Folivex for you");
  m_to->setText(m_memory.text(addressKey()));
  m_told = named(new QLabel(this), "reportTold");
  m_told->setTextFormat(Qt::PlainText);
  m_told->setWordWrap(true);
  QWidget* to = sideBySide(this, {labelFor(m_to, QStringLiteral("Send &to:")), {m_to, 1}});
  stack(this, {intro, {m_text, 1}, m_includeNames, to, m_told, buildButtons()});
  constexpr QSize startSize(720, 640);
  resizeOnScreen(this, startSize);
}

QWidget* CProblemReportDlg::buildButtons() {
  const auto button = [this](const char* name, const char* text, const char* toolTip,
                             void (CProblemReportDlg::*act)()) {
    return sideButton(name, QString::fromLatin1(text), QString::fromLatin1(toolTip), this,
                      [this, act] { (this->*act)(); });
  };
  return sideBySide(
      this,
      {button("reportCopy", "&Copy", "Put the text into the clipboard", &CProblemReportDlg::copy),
       button("reportSave", "&Save as...", "Write the text to a file", &CProblemReportDlg::save),
       button("reportMail", "Open in &mail program",
              "Open a mail with the text in your own mail program; you send it",
              &CProblemReportDlg::openMail),
       gap(),
       button("reportClose", "Close", "Close; the text is not kept", &CProblemReportDlg::reject)});
}

/// Makes the report anew, below what the person wrote.
void CProblemReportDlg::fill() {
  const PrivateNames names =
      m_includeNames->isChecked() ? PrivateNames::Included : PrivateNames::LeftOut;
  QString own = m_text->toPlainText().section(rulingLine(), 0, 0);
  if (!own.isEmpty() && !own.endsWith(u'\n')) {
    own += u'\n';
  }
  m_text->setPlainText(own + rulingLine() + QStringLiteral("\n\n") + m_report.text(names));
}

void CProblemReportDlg::copy() {
  QGuiApplication::clipboard()->setText(m_text->toPlainText());
  m_told->setText(QStringLiteral("The report is in the clipboard."));
}

void CProblemReportDlg::save() {
  const QString path = m_dialogs.saveFile(
      this, {QStringLiteral("Save the report"), QStringLiteral("Text files (*.txt);;All files (*)"),
             QStringLiteral("folivex_problem.txt"), QStringLiteral("txt")});
  if (path.isEmpty()) {
    return;
  }
  const QString problem = exportText(path, m_text->toPlainText());
  m_told->setText(problem.isEmpty()
                      ? QStringLiteral("Saved: %1").arg(path)
                      : QStringLiteral("%1: cannot be written: %2").arg(path, problem));
}

void CProblemReportDlg::openMail() {
  const QString text = m_text->toPlainText();
  QString address = mailAddress(m_to->text(), m_report.subject(), text);
  const bool isTooLong = address.size() > longestMailAddress;
  if (isTooLong) {
    QGuiApplication::clipboard()->setText(text);
    address = mailAddress(m_to->text(), m_report.subject(),
                          QStringLiteral("The report is in the clipboard: paste it here."));
  }
  if (!m_dialogs.openOutside(address)) {
    m_told->setText(QStringLiteral("No mail program was found. Copy the report, or save it."));
  } else if (isTooLong) {
    m_told->setText(
        QStringLiteral("The report is too long to be handed over. It is in the clipboard: paste "
                       "it into the mail."));
  } else {
    m_told->setText(
        QStringLiteral("The mail is open in your mail program. It is sent from there."));
  }
}

void CProblemReportDlg::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  // The cursor was put below the question while nothing had a size, which scrolled that away.
  m_text->verticalScrollBar()->setValue(0);
}

void CProblemReportDlg::done(int result) {
  m_memory.setText(addressKey(), m_to->text().trimmed());
  QDialog::done(result);
}

} // namespace folivex
