#include "app/ActivityLine.h"

#include "app/dialogs/RunEstimate.h"
#include "widgets/Controls.h"
#include "widgets/ElidedLabel.h"

#include <QLayout>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>

#include <algorithm>

namespace folivex {

namespace {

constexpr int noteLines = 4;
constexpr int paintMs = 50;
constexpr int barRange = 10'000;
/// A damaged file may have a finding for every page.
constexpr int mostNotes = 5000;

} // namespace

ActivityLine::ActivityLine(QWidget* parent)
    : QWidget(parent), m_status(new ElidedLabel(this)), m_bar(new QProgressBar(this)),
      m_timeLeft(new QLabel(this)), m_notes(new QPlainTextEdit(this)), m_pace(paintMs) {
  named(m_status, "statusLine", "What is going on");
  named(m_bar, "progress", "Share of the pages that are done");
  m_bar->setAccessibleName(m_bar->toolTip());
  m_bar->setTextVisible(false);
  constexpr int barWidth = 160;
  m_bar->setFixedWidth(barWidth);
  m_bar->setVisible(false);
  named(m_timeLeft, "timeLeft", "Estimated from the pages done");
  m_stop = sideButton("stopButton", QStringLiteral("&Stop"),
                      QStringLiteral("End the run after the page that is being worked on"), this);
  m_stop->setVisible(false);
  named(m_notes, "notes", "What was found along the way");
  m_notes->setAccessibleName(QStringLiteral("Findings"));
  m_notes->setReadOnly(true);
  m_notes->setTabChangesFocus(true);
  m_notes->setMaximumBlockCount(mostNotes);
  m_notes->setVisible(false);
  stack(this, {m_notes, sideBySide(this, {{m_status, 1}, m_timeLeft, m_bar, m_stop})});
  constexpr int air = 6;
  layout()->setContentsMargins(air, 2, air, 2);
}

void ActivityLine::begin(const QString& text, std::vector<Phase> phases) {
  clearNotes();
  setStatus(text);
  m_isWorking = true;
  m_isStopping = false;
  m_phases = std::move(phases);
  m_source = m_sources = 1;
  m_share = 0;
  m_pace.reset();
  m_elapsed.start();
  m_timeLeft->clear();
  m_bar->setRange(0, 0);
  m_bar->setVisible(true);
  m_stop->setVisible(true);
}

void ActivityLine::beginSource(int source, int sources) {
  m_source = source;
  m_sources = sources;
}

void ActivityLine::end() {
  m_isWorking = m_isStopping = false;
  m_bar->setVisible(false);
  m_timeLeft->clear();
  m_stop->setVisible(false);
}

void ActivityLine::tellStopping() {
  m_isStopping = true;
  setStatus(QStringLiteral("Stopping..."));
}

void ActivityLine::setStatus(const QString& text) {
  m_tellsProblem = false;
  m_status->setText(text);
}

void ActivityLine::tellProblem(const QString& text) {
  setStatus(text);
  m_tellsProblem = true;
}

void ActivityLine::forgetProblem() {
  if (m_tellsProblem) {
    setStatus(QStringLiteral("Ready."));
  }
}

void ActivityLine::progress(const Progress& progress) {
  const auto phase = std::find(m_phases.begin(), m_phases.end(), progress.phase);
  if (progress.pageCount > 0 && progress.page > 0 && phase != m_phases.end()) {
    const double pages = std::min(1.0, static_cast<double>(progress.page) / progress.pageCount);
    const double phases = static_cast<double>(phase - m_phases.begin()) + pages;
    const double sources = m_source - 1 + phases / static_cast<double>(m_phases.size());
    // Files are written beside the reading: their pages lie behind those that are read.
    m_share = std::max(m_share, sources / m_sources);
    m_bar->setRange(0, barRange);
    m_bar->setValue(static_cast<int>(m_share * barRange));
  }
  if (!m_isWorking || m_isStopping || !m_pace.isDue()) {
    return;
  }
  m_status->setText(
      progress.outputs > 0
          ? QStringLiteral("%1 - %2 file(s) so far").arg(progress.text).arg(progress.outputs)
          : progress.text);
  m_timeLeft->setText(timeLeftText(m_bar->value(), barRange, m_elapsed.elapsed()));
}

void ActivityLine::tellReading(int pagesRead, int pageCount) {
  if (m_isWorking) {
    return;
  }
  const bool isOver = pagesRead >= pageCount;
  m_bar->setVisible(!isOver);
  m_bar->setRange(0, pageCount);
  m_bar->setValue(pagesRead);
  setStatus(isOver ? QStringLiteral("Ready.")
                   : QStringLiteral("Reading: page %1 of %2").arg(pagesRead).arg(pageCount));
}

void ActivityLine::note(const QString& text) {
  m_notes->appendPlainText(text);
  fitNotes();
  m_notes->setVisible(true);
  remember(text);
}

/// As high as its lines, up to a few: on a small screen the other panes need the room.
void ActivityLine::fitNotes() {
  const int lines = std::min(m_notes->blockCount(), noteLines);
  constexpr int air = 4; // a line may be a fraction of a pixel higher than its metrics say
  m_notes->setFixedHeight(lines * m_notes->fontMetrics().lineSpacing() +
                          2 * static_cast<int>(m_notes->document()->documentMargin()) +
                          2 * m_notes->frameWidth() + air);
}

void ActivityLine::clearNotes() {
  m_notes->clear();
  m_notes->setVisible(false);
}

void ActivityLine::remember(const QString& text) {
  constexpr qsizetype most = 50;
  m_told += text.split(u'\n', Qt::SkipEmptyParts);
  m_told = m_told.mid(std::max<qsizetype>(m_told.size() - most, 0));
}

QStringList ActivityLine::lastTold() const {
  return m_told + QStringList{m_status->text()};
}

} // namespace folivex
