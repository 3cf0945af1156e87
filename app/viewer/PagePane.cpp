#include "app/viewer/PagePane.h"

#include "app/viewer/PageArea.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QStackedWidget>
#include <QToolButton>
#include <QWindow>

#include <algorithm>
#include <cmath>
#include <utility>

namespace folivex {

namespace {

constexpr qsizetype cacheBytes = qsizetype{96} << 20;
constexpr double zoomStep = 1.2;

} // namespace

PagePane::PagePane(QWidget* parent) : QWidget(parent), m_cache(cacheBytes) {
  setObjectName(QStringLiteral("pageViewer"));
  buildControls();
  connectPage();
  showState(QStringLiteral("No file is open."));
}

PagePane::~PagePane() {
  // What a window does when it goes (a field that loses the focus takes what was typed) must still
  // find everything here.
  hide();
  m_area->onResized = nullptr;
  m_canvas->onChanged = nullptr;
}

void PagePane::connectPage() {
  m_area->onTurned = [this](int pages) { turn(pages); };
  m_area->onFirst = [this] { goToPage(1); };
  m_area->onLast = [this] { goToPage(m_pageCount); };
  m_area->onZoomed = [this](double steps) { zoomBy(steps); };
  m_area->onResized = [this] { fitAgain(); };
  m_canvas->onChanged = [this] { tellCurrent(); };
  m_canvas->onWordPicked = [this](int word) { pickWord(word); };
  m_canvas->onRangePicked = [this](const PositionRange& range) { pickRange(range); };
}

void PagePane::setLibrary(CPDFTextDumpInit& library) {
  m_loader = std::make_unique<PageLoader>(library);
  m_loader->onOpened = [this](const OpenedFile& file) { opened(file); };
  m_loader->onPage = [this](const std::shared_ptr<const ViewedPage>& page) { arrived(page); };
}

void PagePane::closeFile() {
  m_file = ViewedFile();
  m_match.reset();
  m_page = 0;
  m_pageCount = 0;
  m_isOpening = false;
  m_cache.clear();
  if (m_loader) {
    m_loader->close();
  }
  showState(QStringLiteral("No file is open."));
  tellPage();
}

void PagePane::openFile(const ViewedFile& file) {
  if (file == m_file && (m_isOpening || m_pageCount > 0)) {
    return;
  }
  const bool isOther = file.path != m_file.path;
  m_file = file;
  if (isOther) {
    m_page = 1;
    m_match.reset();
  }
  m_canvas->setSwapAxes(file.swapAxes);
  setWindowTitle(QStringLiteral("%1 - Page viewer").arg(QFileInfo(file.path).fileName()));
  reload();
}

void PagePane::reload() {
  m_pageOnceOpen = std::max(m_page, 1);
  m_pageCount = 0;
  m_isOpening = true;
  m_cache.clear();
  if (!m_loader) {
    m_isOpening = false;
    showState(m_file.path + QStringLiteral("\n\nThe library that reads pages is missing."));
    return;
  }
  showState(QStringLiteral("Opening %1 ...").arg(m_file.path));
  m_loader->open(m_file);
}

void PagePane::opened(const OpenedFile& file) {
  m_isOpening = false;
  m_pageCount = file.pageCount;
  if (m_pageCount < 1) {
    showState(m_file.path + QStringLiteral("\n\n") + file.problem);
    return;
  }
  {
    const QSignalBlocker quiet(m_pageField);
    m_pageField->setRange(1, m_pageCount);
  }
  m_pageCountText->setText(QStringLiteral("of %1").arg(m_pageCount));
  m_stack->setCurrentWidget(m_area);
  m_page = 0;
  showPage(m_pageOnceOpen, From::Top);
  // Who types in a field beside the pane goes on typing there.
  if (isAncestorOf(QApplication::focusWidget())) {
    m_canvas->setFocus();
  }
}

void PagePane::showState(const QString& text) {
  m_state->setText(text);
  m_stack->setCurrentWidget(m_state);
  m_canvas->show(std::make_shared<ViewedPage>(), sizing());
  m_pageCountText->clear();
  m_pageProblem->hide();
  updateControls();
  tellCurrent();
}

void PagePane::goToPage(int page) {
  if (m_pageCount == 0) {
    m_pageOnceOpen = std::max(page, 1);
    m_page = m_pageOnceOpen;
  } else if (page != m_page) {
    showPage(page, From::Top);
  }
}

void PagePane::turn(int pages) {
  const int target = std::clamp(m_page + pages, 1, std::max(m_pageCount, 1));
  if (target != m_page && m_pageCount > 0) {
    showPage(target, pages < 0 ? From::Bottom : From::Top);
  }
}

void PagePane::showPage(int page, From from) {
  const int before = std::exchange(m_page, std::clamp(page, 1, m_pageCount));
  std::shared_ptr<const ViewedPage> here = kept(m_page);
  if (!here) {
    auto awaited = std::make_shared<ViewedPage>();
    awaited->page = m_page;
    here = awaited;
  }
  display(here);
  QScrollBar* bar = m_area->verticalScrollBar();
  bar->setValue(from == From::Top ? bar->minimum() : bar->maximum());
  {
    const QSignalBlocker quiet(m_pageField);
    m_pageField->setValue(m_page);
  }
  updateControls();
  request();
  tellMatch();
  if (m_page != before) {
    tellPage();
  }
}

void PagePane::tellPage() {
  if (onPageChanged) {
    onPageChanged(m_page);
  }
}

PageSizing PagePane::sizing() const {
  return {m_fit, m_zoom, m_area->room(), m_canvas->devicePixelRatioF()};
}

/// A page as far as it is here; null when it is not.
std::shared_ptr<const ViewedPage> PagePane::kept(int page) {
  if (page == m_canvas->shared()->page) {
    return m_canvas->shared();
  }
  const auto* const here = m_cache.object(page);
  return here != nullptr ? *here : nullptr;
}

bool PagePane::isSharp(int page) {
  const auto here = kept(page);
  const bool isRead = here && (!here->size.isEmpty() || !here->problem.isEmpty());
  return isRead &&
         (here->size.isEmpty() || here->pixelsPerPoint == pixelsPerPoint(here->size, sizing()));
}

/// Asks for the page shown; when it is here, for its neighbours, which are likely to be next.
void PagePane::request() {
  if (m_pageCount == 0) {
    return;
  }
  std::vector<int> missing;
  if (!isSharp(m_page)) {
    missing.push_back(m_page);
  } else if (m_canvas->page().bytes() < cacheBytes / 4) { // else they would push each other out
    for (const int page : {m_page + 1, m_page - 1}) {
      if (page >= 1 && page <= m_pageCount && !isSharp(page)) {
        missing.push_back(page);
      }
    }
  }
  m_loader->want(missing, sizing());
}

void PagePane::arrived(const std::shared_ptr<const ViewedPage>& page) {
  // One that is larger than all of the room pushes the others out, and is kept.
  m_cache.insert(page->page, new std::shared_ptr<const ViewedPage>(page),
                 std::min<qsizetype>(page->bytes(), cacheBytes));
  if (page->page != m_page) {
    return;
  }
  display(page);
  updateControls();
  request();
  tellMatch();
}

void PagePane::display(const std::shared_ptr<const ViewedPage>& page) {
  m_canvas->show(page, sizing());
  m_area->fitCanvas();
  m_pageProblem->setText(page->problem);
  m_pageProblem->setVisible(!page->problem.isEmpty());
}

void PagePane::setFit(PageSizing::Fit fit, double zoom) {
  m_fit = fit;
  m_zoom = std::clamp(zoom, leastZoom, mostZoom);
  fitAgain();
}

void PagePane::zoomBy(double steps) {
  const ViewedPage& page = m_canvas->page();
  const double now = page.size.isEmpty() ? m_zoom : zoomOf(page.size, sizing());
  const double before = m_canvas->sheet().height();
  QScrollBar* bar = m_area->verticalScrollBar();
  const double middle = bar->value() + bar->pageStep() / 2.0;
  setFit(PageSizing::Fit::Zoom, now * std::pow(zoomStep, steps));
  // What was in the middle of the window stays there.
  const double ratio = m_canvas->sheet().height() / before;
  bar->setValue(static_cast<int>(std::round(middle * ratio - bar->pageStep() / 2.0)));
}

void PagePane::fitAgain() {
  if (m_pageCount == 0) {
    updateControls();
    return;
  }
  display(m_canvas->shared());
  updateControls();
  request();
}

void PagePane::tell(const QString& text) {
  m_wordText->setText(text);
}

QString PagePane::currentPosition() const {
  if (const int word = m_canvas->currentWord(); word >= 0) {
    const ViewedWord& told = m_canvas->page().words[static_cast<std::size_t>(word)];
    return positionText(told.h, told.v);
  }
  return m_canvas->range() ? rangeText(*m_canvas->range()) : QString();
}

void PagePane::tellCurrent() {
  const QString position = currentPosition();
  const int word = m_canvas->currentWord();
  QString text;
  if (word >= 0) {
    text = position + QStringLiteral("   ") +
           m_canvas->page().words[static_cast<std::size_t>(word)].text;
  } else if (!position.isEmpty()) {
    text = QStringLiteral("%1   (words in it: %2)").arg(position).arg(m_canvas->wordsInRange());
  } else if (m_pageCount > 0) {
    text = QStringLiteral("Click a word, or drag a rectangle over positions.");
  }
  m_wordText->setText(text);
  m_canvas->setAccessibleDescription(text);
  m_copy->setEnabled(!position.isEmpty());
}

void PagePane::pickWord(int word) {
  const ViewedWord& picked = m_canvas->page().words[static_cast<std::size_t>(word)];
  if (onWordPicked) {
    onWordPicked({picked.text, picked.h, picked.v, picked.lookupH, picked.lookupV, m_page},
                 m_targets->currentIndex());
  }
}

void PagePane::pickRange(const PositionRange& range) {
  if (onRangePicked) {
    onRangePicked({m_page, range.hFrom, range.hTo, range.vFrom, range.vTo},
                  m_targets->currentIndex());
  }
}

void PagePane::copyPosition() {
  QString position = currentPosition();
  if (position.isEmpty()) {
    return;
  }
  // As it is written in a "[POS" token.
  position.remove(QStringLiteral("h ")).replace(QStringLiteral(", v "), QStringLiteral(","));
  QApplication::clipboard()->setText(position);
  tell(QStringLiteral("Copied: %1").arg(position));
}

void PagePane::setTargets(const QStringList& targets) {
  m_targets->clear();
  m_targets->addItems(targets);
  m_targets->setVisible(!targets.isEmpty());
  m_targetLabel->setVisible(!targets.isEmpty());
}

void PagePane::setTarget(int index) {
  m_targets->setCurrentIndex(index);
}

void PagePane::beginWalk() {
  m_isWalking = true;
  m_match.reset();
  m_matchNumber = 0;
  m_nextMatch->setEnabled(false);
  tellWalk(QStringLiteral("Looking for the first match ..."));
  m_walkRow->show();
}

void PagePane::tellWalk(const QString& text) {
  m_walkText->setText(text);
}

void PagePane::showMatch(const MatchMark& match, int number) {
  m_match = match;
  m_matchNumber = number;
  m_canvas->mark(match);
  goToPage(match.page);
  m_nextMatch->setEnabled(true);
  m_nextMatch->setFocus();
  tellMatch();
}

void PagePane::tellMatch() {
  if (!m_match) {
    return;
  }
  m_canvas->mark(m_match);
  const bool isHere = m_page == m_match->page;
  const bool isRead = isHere && !m_canvas->page().size.isEmpty();
  const QRectF place = m_canvas->markedPlace();
  if (isRead && !place.isNull()) {
    m_area->bringIntoSight(place);
  }
  if (m_isWalking) {
    const QString notFound = isRead && place.isNull()
                                 ? QStringLiteral("   (the page is drawn without this word)")
                                 : QString();
    tellWalk(QStringLiteral("Match %1, page %2: %3   %4%5")
                 .arg(m_matchNumber)
                 .arg(m_match->page)
                 .arg(positionText(m_match->h, m_match->v), m_match->text, notFound));
  }
}

void PagePane::leaveMatch() {
  m_nextMatch->setEnabled(false);
}

void PagePane::endWalk() {
  m_isWalking = false;
  m_match.reset();
  m_canvas->mark(std::nullopt);
  m_walkRow->hide();
}

void PagePane::updateControls() {
  const bool isOpen = m_pageCount > 0;
  m_pageField->setEnabled(isOpen);
  m_first->setEnabled(isOpen && m_page > 1);
  m_previous->setEnabled(isOpen && m_page > 1);
  m_next->setEnabled(m_page < m_pageCount);
  m_last->setEnabled(m_page < m_pageCount);
  m_fitWidth->setEnabled(isOpen);
  m_fitPage->setEnabled(isOpen);
  m_fitWidth->setChecked(m_fit == PageSizing::Fit::Width);
  m_fitPage->setChecked(m_fit == PageSizing::Fit::Page);
  m_reload->setEnabled(!m_file.path.isEmpty() && !m_isOpening);
  const ViewedPage& page = m_canvas->page();
  const double zoom = page.size.isEmpty() ? m_zoom : zoomOf(page.size, sizing());
  constexpr double almost = 1e-6;
  m_zoomOut->setEnabled(isOpen && zoom > leastZoom + almost);
  m_zoomIn->setEnabled(isOpen && zoom < mostZoom - almost);
  m_zoomText->setText(isOpen ? QStringLiteral("%1 %").arg(std::lround(zoom * 100)) : QString());
}

void PagePane::stopWalk() {
  if (m_isWalking && onStop) {
    onStop();
  }
}

void PagePane::closeEvent(QCloseEvent* event) {
  stopWalk();
  QWidget::closeEvent(event);
}

void PagePane::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  // A screen of another sharpness wants other pictures.
  connect(window()->windowHandle(), &QWindow::screenChanged, this, &PagePane::fitAgain,
          Qt::UniqueConnection);
}

void PagePane::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    copyPosition();
    return;
  }
  switch (event->key()) {
  case Qt::Key_F5:
    if (m_reload->isEnabled()) {
      reload();
    }
    return;
  case Qt::Key_PageDown:
    return turn(1);
  case Qt::Key_PageUp:
    return turn(-1);
  case Qt::Key_Home:
    return goToPage(1);
  case Qt::Key_End:
    return goToPage(m_pageCount);
  case Qt::Key_Escape:
    if (m_isWalking) {
      return stopWalk();
    }
    break;
  default:
    break;
  }
  QWidget::keyPressEvent(event);
}

} // namespace folivex
