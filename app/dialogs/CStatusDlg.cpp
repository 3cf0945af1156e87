#include "app/dialogs/CStatusDlg.h"

#include "app/dialogs/RunEstimate.h"
#include "widgets/Controls.h"
#include "widgets/ElidedLabel.h"

#include <QProgressBar>
#include <QPushButton>

namespace folivex {

namespace {

constexpr int paintMs = 50;

QLabel* line(QLabel* label, const char* name, const char* toolTip) {
  label->setTextFormat(Qt::PlainText);
  return named(label, name, toolTip);
}

} // namespace

CStatusDlg::CStatusDlg(QWidget* parent) : QDialog(parent), m_pace(paintMs) {
  setObjectName(QStringLiteral("status"));
  setWindowModality(Qt::WindowModal);
  buildControls();
}

void CStatusDlg::buildControls() {
  m_source = line(new ElidedLabel(this), "statusSource", "The file that is being worked on");
  m_text = line(new ElidedLabel(this), "statusText", "What is being done");
  m_page = line(new QLabel(this), "statusPage", "The page that is being worked on");
  m_outputs = line(new QLabel(this), "statusOutputs", "Outputs made so far");
  m_timeLeft = line(new QLabel(this), "statusTimeLeft", "Estimated from the pages done");
  m_bar = named(new QProgressBar(this), "statusBar", "Share of the pages that are done");
  m_stop = named(new QPushButton(QStringLiteral("&Stop"), this), "stop",
                 "End the run after the page that is being worked on");
  connect(m_stop, &QPushButton::clicked, this, &CStatusDlg::reject);
  stack(this, {m_source, m_text, m_bar, sideBySide(this, {m_page, gap(), m_outputs}), gap(),
               sideBySide(this, {m_timeLeft, gap(), m_stop})});
  constexpr int startWidth = 460;
  resize(startWidth, sizeHint().height());
}

void CStatusDlg::begin(const QString& title, const QString& source) {
  m_isStopping = false;
  m_progress = {};
  m_pace.reset();
  m_elapsed.start();
  m_stop->setEnabled(true);
  setWindowTitle(title);
  m_source->setText(source.isEmpty() ? QString()
                                     : QStringLiteral("Processing file: %1").arg(source));
  display();
  show();
}

void CStatusDlg::progress(const Progress& progress) {
  m_progress = progress;
  if (m_pace.isDue()) {
    display();
    setVisible(!m_isStopping); // a message may have stood in its place
  }
}

void CStatusDlg::display() {
  const bool isCounted = m_progress.pageCount > 0 && m_progress.page > 0;
  m_text->setText(m_isStopping ? QStringLiteral("Stopping...") : m_progress.text);
  m_bar->setRange(0, isCounted ? m_progress.pageCount : 0);
  m_bar->setValue(m_progress.page);
  m_page->setText(isCounted ? QStringLiteral("Extracting Page: %1 of %2")
                                  .arg(m_progress.page)
                                  .arg(m_progress.pageCount)
                            : QString());
  m_outputs->setText(QStringLiteral("Outputs: %1").arg(m_progress.outputs));
  m_timeLeft->setText(timeLeftText(m_progress.page, m_progress.pageCount, m_elapsed.elapsed()));
}

void CStatusDlg::end() {
  if (!m_isStopping) {
    hide();
  }
}

void CStatusDlg::reject() {
  if (m_isStopping) {
    return;
  }
  m_isStopping = true;
  if (onStop) {
    onStop();
  }
  done(stopped);
}

} // namespace folivex
