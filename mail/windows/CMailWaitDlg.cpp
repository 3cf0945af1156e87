#include "mail/windows/CMailWaitDlg.h"

#include "widgets/Controls.h"

#include <QApplication>
#include <QProgressBar>
#include <QPushButton>

namespace folivex {

namespace {

constexpr int waitWidthInCharacters = 60;

} // namespace

CMailWaitDlg::CMailWaitDlg(const QString& title, const QString& text, QWidget* parent)
    : QDialog(parent),
      m_stop(named(new QPushButton(QStringLiteral("&Stop"), this), "stop", "Give up")) {
  setObjectName(QStringLiteral("CMailWaitDlg"));
  setWindowTitle(title);
  setWindowModality(Qt::ApplicationModal);
  auto* label = named(new QLabel(this), "text");
  label->setTextFormat(Qt::PlainText);
  const int width = fontMetrics().averageCharWidth() * waitWidthInCharacters;
  label->setText(fontMetrics().elidedText(text, Qt::ElideMiddle, width));
  label->setToolTip(text.toHtmlEscaped());
  label->setMinimumWidth(width);
  auto* bar = named(new QProgressBar(this), "bar", "Still at work");
  bar->setRange(0, 0); // nobody knows how long
  bar->setTextVisible(false);
  connect(m_stop, &QPushButton::clicked, this, &QDialog::reject);
  stack(this, {label, bar, sideBySide(this, {gap(), m_stop})});
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
