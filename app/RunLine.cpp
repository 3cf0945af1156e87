#include "app/RunLine.h"

#include "widgets/Controls.h"
#include "widgets/ElidedLabel.h"

#include <QLayout>
#include <QPlainTextEdit>
#include <QProgressBar>

#include <algorithm>

namespace folivex {

namespace {

constexpr int noteLines = 4;
/// A damaged file may have a finding for every page.
constexpr int mostNotes = 5000;

} // namespace

RunLine::RunLine(QWidget* parent)
    : QWidget(parent), m_status(new ElidedLabel(this)), m_bar(new QProgressBar(this)),
      m_notes(new QPlainTextEdit(this)) {
  named(m_status, "statusLine", "What is going on");
  named(m_bar, "progress", "Share of the pages that are done");
  m_bar->setTextVisible(false);
  constexpr int barWidth = 160;
  m_bar->setFixedWidth(barWidth);
  m_bar->setVisible(false);
  named(m_notes, "notes", "What was found along the way");
  m_notes->setReadOnly(true);
  m_notes->setTabChangesFocus(true);
  m_notes->setMaximumBlockCount(mostNotes);
  m_notes->setVisible(false);
  stack(this, {m_notes, sideBySide(this, {{m_status, 1}, m_bar})});
  layout()->setContentsMargins(0, 0, 0, 0);
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
  fitNotes();
  m_notes->setVisible(true);
  remember(text);
}

/// As high as its lines, up to a few: on a small screen the settings need the room.
void RunLine::fitNotes() {
  const int lines = std::min(m_notes->blockCount(), noteLines);
  constexpr int air = 4; // a line may be a fraction of a pixel higher than its metrics say
  m_notes->setFixedHeight(lines * m_notes->fontMetrics().lineSpacing() +
                          2 * static_cast<int>(m_notes->document()->documentMargin()) +
                          2 * m_notes->frameWidth() + air);
}

void RunLine::clearNotes() {
  m_notes->clear();
  m_notes->setVisible(false);
}

void RunLine::remember(const QString& text) {
  constexpr qsizetype most = 50;
  m_told += text.split(u'\n', Qt::SkipEmptyParts);
  m_told = m_told.mid(std::max<qsizetype>(m_told.size() - most, 0));
}

QStringList RunLine::lastTold() const {
  return m_told + QStringList{m_status->text()};
}

} // namespace folivex
