#include "mail/windows/CEmailStatusDlg.h"

#include "mail/delivery/SendOutcome.h"
#include "widgets/Controls.h"
#include "widgets/Theme.h"

#include <QCoreApplication>
#include <QFormLayout>
#include <QProgressBar>
#include <QPushButton>

#include <algorithm>

namespace folivex {

namespace {

constexpr int statusWidthInCharacters = 64;

QString counted(int count) {
  return countWithCommas(static_cast<std::size_t>(count));
}

} // namespace

CEmailStatusDlg::CEmailStatusDlg(QWidget* parent)
    : QDialog(parent),
      m_bar(named(new QProgressBar(this), "bar", "Share of the list that is done")),
      m_stop(named(new QPushButton(QStringLiteral("&Stop"), this), "stop",
                   "End here: what was not sent can be sent later")) {
  setObjectName(QStringLiteral("CEmailStatusDlg"));
  setWindowTitle(QStringLiteral("Email Status"));
  setWindowModality(Qt::ApplicationModal);
  auto* lines = new QWidget(this);
  auto* form = new QFormLayout(lines);
  form->setContentsMargins({});
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  const auto line = [&](const QString& caption, const char* name, const char* toolTip) {
    auto* value = named(new QLabel(lines), name, toolTip);
    value->setTextFormat(Qt::PlainText);
    value->setAccessibleName(caption);
    // A long address must not make the window wider.
    value->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    form->addRow(caption, value);
    return value;
  };
  m_recipient =
      line(QStringLiteral("Sending email:"), "recipient", "Who the e-mail on its way goes to");
  m_count = line(QStringLiteral("Count:"), "count", "E-mails tried, and those to send");
  m_sentOk = line(QStringLiteral("Sent OK:"), "sentOk", "E-mails that the server has taken");
  m_sentError =
      line(QStringLiteral("Sent Error:"), "sentError", "E-mails that failed; the log tells why");
  connect(m_stop, &QPushButton::clicked, this, &QDialog::reject);
  stack(this, {lines, m_bar, gap(), sideBySide(this, {gap(), m_stop})});
  resize(fontMetrics().averageCharWidth() * statusWidthInCharacters, sizeHint().height());
  display();
}

CEmailStatusDlg::~CEmailStatusDlg() {
  hide();
}

void CEmailStatusDlg::onProgress(const EmailProgress& progress) {
  m_progress = progress;
  m_isShown = false;
  displayWhenDue();
  if (alsoTell) {
    alsoTell(progress);
  }
}

void CEmailStatusDlg::handlePendingEvents() {
  displayWhenDue();
  QCoreApplication::processEvents();
}

bool CEmailStatusDlg::stopRequested() {
  return m_stopRequested || (alsoStop && alsoStop());
}

void CEmailStatusDlg::displayWhenDue() {
  if (!m_isShown && m_pace.isDue()) {
    display();
  }
}

void CEmailStatusDlg::display() {
  m_isShown = true;
  m_recipient->setText(m_recipient->fontMetrics().elidedText(m_progress.recipient, Qt::ElideMiddle,
                                                             m_recipient->width()));
  m_count->setText(
      QStringLiteral("%1 of %2").arg(counted(m_progress.handled), counted(m_mailCount)));
  m_sentOk->setText(counted(m_progress.sentOk));
  m_sentError->setText(counted(m_progress.errors));
  setTone(m_sentError, m_progress.errors > 0 ? Tone::Problem : Tone::Plain);
  m_bar->setRange(0, std::max(1, m_mailCount));
  m_bar->setValue(m_progress.handled);
}

void CEmailStatusDlg::resizeEvent(QResizeEvent* event) {
  QDialog::resizeEvent(event);
  m_isShown = false;
}

void CEmailStatusDlg::reject() {
  m_stopRequested = true;
  m_stop->setEnabled(false);
  m_stop->setText(QStringLiteral("Stopping..."));
}

} // namespace folivex
