#include "mail/windows/CMailWaitDlg.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace folivex {

namespace {

constexpr int waitWidthInCharacters = 60;

} // namespace

CMailWaitDlg::CMailWaitDlg(const QString& title, const QString& text, QWidget* parent)
    : QDialog(parent), m_stop(new QPushButton(QStringLiteral("&Stop"), this)) {
  setObjectName(QStringLiteral("CMailWaitDlg"));
  setWindowTitle(title);
  setWindowModality(Qt::ApplicationModal);
  auto* label = new QLabel(this);
  label->setObjectName(QStringLiteral("text"));
  label->setTextFormat(Qt::PlainText);
  const int width = fontMetrics().averageCharWidth() * waitWidthInCharacters;
  label->setText(fontMetrics().elidedText(text, Qt::ElideMiddle, width));
  label->setToolTip(text.toHtmlEscaped());
  label->setMinimumWidth(width);
  auto* bar = new QProgressBar(this);
  bar->setObjectName(QStringLiteral("bar"));
  bar->setRange(0, 0); // nobody knows how long
  bar->setTextVisible(false);
  bar->setToolTip(QStringLiteral("Still at work"));
  m_stop->setObjectName(QStringLiteral("stop"));
  m_stop->setToolTip(QStringLiteral("Give up"));
  connect(m_stop, &QPushButton::clicked, this, [this] { reject(); });

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(m_stop);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(label);
  layout->addWidget(bar);
  layout->addLayout(buttons);
  QApplication::setOverrideCursor(Qt::BusyCursor);
  show();
}

CMailWaitDlg::~CMailWaitDlg() {
  hide();
  QApplication::restoreOverrideCursor();
}

void CMailWaitDlg::handlePendingEvents() {
  QCoreApplication::processEvents();
}

void CMailWaitDlg::reject() {
  m_stopRequested = true;
  m_stop->setEnabled(false);
}

} // namespace folivex
