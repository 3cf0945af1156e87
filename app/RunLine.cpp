#include "app/RunLine.h"

#include "app/dialogs/ElidedLabel.h"

#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QVBoxLayout>

namespace folivex {

namespace {

constexpr int noteLines = 4;
/// A damaged file may have a finding for every page.
constexpr int mostNotes = 5000;

} // namespace

RunLine::RunLine(QWidget* parent)
    : QWidget(parent), m_status(new ElidedLabel(this)), m_bar(new QProgressBar(this)),
      m_notes(new QPlainTextEdit(this)) {
  m_status->setObjectName(QStringLiteral("statusLine"));
  m_status->setToolTip(QStringLiteral("What is going on"));
  m_bar->setObjectName(QStringLiteral("progress"));
  m_bar->setToolTip(QStringLiteral("Share of the pages that are done"));
  m_bar->setTextVisible(false);
  constexpr int barWidth = 160;
  m_bar->setFixedWidth(barWidth);
  m_bar->setVisible(false);
  m_notes->setObjectName(QStringLiteral("notes"));
  m_notes->setToolTip(QStringLiteral("What was found along the way"));
  m_notes->setReadOnly(true);
  m_notes->setTabChangesFocus(true);
  m_notes->setMaximumBlockCount(mostNotes);
  m_notes->setFixedHeight(noteLines * m_notes->fontMetrics().lineSpacing() +
                          2 * static_cast<int>(m_notes->document()->documentMargin()) +
                          2 * m_notes->frameWidth());
  m_notes->setVisible(false);
  auto* line = new QHBoxLayout;
  line->addWidget(m_status, 1);
  line->addWidget(m_bar);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_notes);
  layout->addLayout(line);
}

void RunLine::begin(const QString& text) {
  clearNotes();
  setStatus(text);
  m_bar->setRange(0, 0);
  m_bar->setVisible(true);
}

void RunLine::end() {
  m_bar->setVisible(false);
}

void RunLine::setStatus(const QString& text) {
  m_status->setText(text);
}

void RunLine::progress(const Progress& progress) {
  m_status->setText(progress.text);
  m_bar->setRange(0, progress.page > 0 ? progress.pageCount : 0);
  m_bar->setValue(progress.page);
}

void RunLine::note(const QString& text) {
  m_notes->appendPlainText(text);
  m_notes->setVisible(true);
}

void RunLine::clearNotes() {
  m_notes->clear();
  m_notes->setVisible(false);
}

QStringList RunLine::lastTold() const {
  constexpr int most = 50;
  QStringList lines = m_notes->toPlainText().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
  lines = lines.mid(std::max<qsizetype>(lines.size() - most, 0));
  return lines << m_status->text();
}

} // namespace folivex
