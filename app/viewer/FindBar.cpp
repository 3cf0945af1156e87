#include "app/viewer/FindBar.h"

#include "app/viewer/PageCanvas.h"
#include "engine/words/WordTable.h"
#include "widgets/Controls.h"
#include "widgets/ElidedLabel.h"

#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>

namespace folivex {

namespace {

/// As PageWordMap::wordsWith() finds it.
bool hasText(const WordTable& words, int page, const QString& sought) {
  QString text;
  for (int i = 0; i < words.wordCount(page); ++i) {
    if (const QStringView word = words.text(words.textNumber(page, i)); !word.isEmpty()) {
      text += word;
      text += u' ';
    }
  }
  return text.contains(sought, Qt::CaseInsensitive);
}

} // namespace

FindBar::FindBar(QWidget* parent)
    : QWidget(parent), m_text(named(new QLineEdit(this), "findText", "Words to look for")),
      m_told(named(new ElidedLabel(this), "findTold")) {
  setObjectName(QStringLiteral("findBar"));
  m_turns.setSingleShot(true);
  m_turns.callOnTimeout([this] { look(); });
  m_text->setClearButtonEnabled(true);
  connect(m_text, &QLineEdit::textChanged, this, [this] { seek(); });
  QPushButton* previous =
      sideButton("findPrevious", QStringLiteral("Previous"),
                 QStringLiteral("The place before (Shift+F3)"), this, [this] { goOn(-1); });
  QPushButton* next =
      sideButton("findNext", QStringLiteral("Next"), QStringLiteral("The next place (F3, Enter)"),
                 this, [this] { goOn(1); });
  QPushButton* away =
      sideButton("closeFind", QStringLiteral("Close"),
                 QStringLiteral("Put this line away (Escape)"), this, [this] { close(); });
  QLabel* label = labelFor(m_text, QStringLiteral("Find:"));
  stack(this, {sideBySide(this, {label, {m_text, 1}, previous, next, away}), m_told});
  layout()->setContentsMargins(0, 0, 0, 0);
  m_told->hide();
  hide();
}

void FindBar::setWords(std::shared_ptr<const WordTable> words) {
  if (words != m_words) {
    m_words = std::move(words);
    if (m_isLooking) {
      m_turns.start(0);
    }
  }
}

void FindBar::open() {
  show();
  m_text->setFocus();
  m_text->selectAll();
  seek();
}

void FindBar::close() {
  leave();
  m_canvas->setFocus();
}

void FindBar::leave() {
  hide();
  seek();
}

void FindBar::stop() {
  m_turns.stop();
  m_isLooking = false;
  m_found = 0;
}

/// The text is another one: from the page shown on.
void FindBar::seek() {
  stop();
  tell({});
  m_way = 1;
  m_canvas->seek(isHidden() ? QString() : m_text->text());
  if (isHidden() || m_text->text().trimmed().isEmpty()) {
    return;
  }
  if (m_canvas->hitCount() > 0) {
    goToHit(0);
  } else {
    lookBehind(m_canvas->page().page - 1);
  }
}

void FindBar::goOn(int way) {
  if (isHidden() || m_text->text().trimmed().isEmpty()) {
    return open();
  }
  const int hit = m_canvas->hit() + way;
  if (m_canvas->hit() >= 0 && hit >= 0 && hit < m_canvas->hitCount()) {
    return goToHit(hit);
  }
  m_way = way;
  lookBehind(m_canvas->page().page);
}

void FindBar::lookBehind(int page) {
  stop();
  m_isLooking = true;
  m_page = page;
  m_looked = 0;
  look();
}

/// Some pages, then the window's other events have their turn.
void FindBar::look() {
  using State = WordTable::State;
  const State state = m_words ? m_words->state() : State::Failed;
  if (state == State::Failed) {
    return tell(QStringLiteral("The words of the pages are not read yet."), Tone::Hint);
  }
  constexpr int turnMs = 10;
  constexpr int pauseMs = 50;
  const QString sought = m_text->text().simplified();
  const int count = state == State::Opening ? 0 : m_words->pageCount();
  bool isWaiting = count == 0;
  QElapsedTimer clock;
  clock.start();
  while (m_looked < count && !isWaiting && clock.elapsed() < turnMs) {
    const int page = (m_page + m_way - 1 + count) % count + 1;
    const bool isThere = m_words->hasPage(page);
    isWaiting = !isThere && state == State::Filling;
    if (isWaiting) {
      continue;
    }
    ++m_looked;
    m_page = page;
    if (isThere && hasText(*m_words, page, sought)) {
      stop();
      m_found = page;
      onFound(page);
      return pageShown();
    }
  }
  if (count > 0 && m_looked == count) {
    stop();
    return tell(state == State::TooLarge ? QStringLiteral("Not found on the pages that were read.")
                                         : QStringLiteral("Not found on any page."),
                Tone::Problem);
  }
  tell(QStringLiteral("Looking at page %1 ...").arg(m_page + m_way));
  m_turns.start(isWaiting ? pauseMs : 0);
}

void FindBar::pageShown() {
  const ViewedPage& page = m_canvas->page();
  const bool isRead = !page.size.isEmpty() || !page.problem.isEmpty();
  if (m_found == 0 || page.page != m_found || !isRead) {
    return;
  }
  m_found = 0;
  if (const int hits = m_canvas->hitCount(); hits > 0) {
    goToHit(m_way > 0 ? 0 : hits - 1);
  } else { // in a recognised copy
    tell(QStringLiteral("Page %1: the page has it, its place is not known.").arg(page.page));
  }
}

void FindBar::goToHit(int hit) {
  m_canvas->goToHit(hit);
  tell(QStringLiteral("Page %1: place %2 of %3")
           .arg(m_canvas->page().page)
           .arg(hit + 1)
           .arg(m_canvas->hitCount()));
}

void FindBar::tell(const QString& text, Tone tone) {
  setTone(m_told, tone);
  m_told->setText(text);
  m_told->setVisible(!text.isEmpty());
}

void FindBar::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
  case Qt::Key_Return:
  case Qt::Key_Enter:
    return goOn((event->modifiers() & Qt::ShiftModifier) != 0 ? -1 : 1);
  case Qt::Key_Escape:
    return close();
  default:
    QWidget::keyPressEvent(event);
  }
}

} // namespace folivex
