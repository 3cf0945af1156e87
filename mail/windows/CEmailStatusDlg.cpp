#include "mail/windows/CEmailStatusDlg.h"

#include "mail/delivery/SendOutcome.h"
#include "widgets/Theme.h"

#include <QCoreApplication>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace folivex {

namespace {

constexpr int statusWidthInCharacters = 64;
constexpr qint64 displayMs = 50;

QString counted(int count) {
  return countWithCommas(static_cast<std::size_t>(count));
}

} // namespace

CEmailStatusDlg::CEmailStatusDlg(QWidget* parent)
    : QDialog(parent), m_bar(new QProgressBar(this)),
      m_stop(new QPushButton(QStringLiteral("&Stop"), this)) {
  setObjectName(QStringLiteral("CEmailStatusDlg"));
  setWindowTitle(QStringLiteral("Email Status"));
  setWindowModality(Qt::ApplicationModal);
  auto* layout = new QVBoxLayout(this);
  auto* lines = new QFormLayout;
  lines->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  layout->addLayout(lines);
  m_recipient = addLine(QStringLiteral("Sending email:"), "recipient",
                        QStringLiteral("Who the e-mail on its way goes to"));
  m_count = addLine(QStringLiteral("Count:"), "count",
                    QStringLiteral("E-mails tried, and those to send"));
  m_sentOk = addLine(QStringLiteral("Sent OK:"), "sentOk",
                     QStringLiteral("E-mails that the server has taken"));
  m_sentError = addLine(QStringLiteral("Sent Error:"), "sentError",
                        QStringLiteral("E-mails that failed; the log tells why"));
  m_bar->setObjectName(QStringLiteral("bar"));
  m_bar->setToolTip(QStringLiteral("Share of the list that is done"));
  layout->addWidget(m_bar);

  m_stop->setObjectName(QStringLiteral("stop"));
  m_stop->setToolTip(QStringLiteral("End here: what was not sent can be sent later"));
  connect(m_stop, &QPushButton::clicked, this, [this] { reject(); });
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(m_stop);
  layout->addStretch(1);
  layout->addLayout(buttons);
  resize(fontMetrics().averageCharWidth() * statusWidthInCharacters, sizeHint().height());
  display();
}

CEmailStatusDlg::~CEmailStatusDlg() {
  hide();
}

QLabel* CEmailStatusDlg::addLine(const QString& caption, const char* name, const QString& toolTip) {
  auto* value = new QLabel(this);
  value->setObjectName(QLatin1String(name));
  value->setTextFormat(Qt::PlainText);
  value->setToolTip(toolTip);
  value->setAccessibleName(caption);
  // A long address must not make the window wider.
  value->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  static_cast<QFormLayout*>(layout()->itemAt(0)->layout())->addRow(caption, value);
  return value;
}

void CEmailStatusDlg::onProgress(const EmailProgress& progress) {
  m_progress = progress;
  m_isShown = false;
  displayWhenDue();
}

void CEmailStatusDlg::handlePendingEvents() {
  displayWhenDue();
  QCoreApplication::processEvents();
}

bool CEmailStatusDlg::stopRequested() {
  return m_stopRequested || (alsoStop && alsoStop());
}

void CEmailStatusDlg::displayWhenDue() {
  if (!m_isShown && (!m_sinceDisplay.isValid() || m_sinceDisplay.elapsed() >= displayMs)) {
    display();
    m_sinceDisplay.start();
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
