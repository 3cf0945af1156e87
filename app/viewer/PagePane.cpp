#include "app/viewer/PagePane.h"

#include "app/viewer/FindBar.h"
#include "app/viewer/PageArea.h"
#include "app/viewer/PageNotice.h"

#include <QAction>
#include <QApplication>
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

using Kind = PageNotice::Kind;

constexpr qsizetype cacheBytes = qsizetype{96} << 20;
constexpr double zoomStep = 1.2;

} // namespace

PagePane::PagePane(QWidget* parent) : QWidget(parent), m_cache(cacheBytes) {
  setObjectName(QStringLiteral("pageViewer"));
  buildControls();
  connectPage();
  leavePage();
}

PagePane::~PagePane() {
  // What a window does when it goes (a field that loses the focus takes what was typed) must still
  // find everything here, and reach nobody who may be gone.
  onPageChanged = [](int) {};
  hide();
  m_area->onResized = m_canvas->onChanged = [] {};
}

void PagePane::connectPage() {
  m_area->onTurned = [this](int pages) { turn(pages); };
  m_area->onZoomed = [this](double steps) { zoomBy(steps); };
  m_area->onResized = [this] { fitAgain(); };
  m_canvas->onChanged = [this] { tellCurrent(); };
  m_canvas->onMenuWanted = [this](QPoint place) { offerMenu(place); };
  m_findBar->setCanvas(m_canvas);
  m_findBar->onFound = [this](int page) { goToPage(page); };
  m_notice->onOpenWanted = [this] { onOpenWanted(); };
  m_notice->onSampleWanted = [this] { onSampleWanted(); };
  m_notice->onAgain = [this] { reload(); };
  m_notice->onPassword = [this](const QString& password) {
    m_file.password = password;
    m_isPasswordTyped = true;
    reload();
  };
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
  m_isOpening = false;
  if (m_loader) {
    m_loader->open(m_file);
  }
  m_notice->showStart();
  leavePage();
  onPageChanged(0);
}

void PagePane::setWords(std::shared_ptr<const WordTable> words) {
  m_findBar->setWords(std::move(words));
}

void PagePane::openFile(const ViewedFile& file) {
  if (file == m_file && (m_isOpening || m_pageCount > 0)) {
    return;
  }
  const bool isOther = file.path != m_file.path;
  m_file = file;
  m_isPasswordTyped = false;
  if (isOther) {
    m_page = 1;
    m_match.reset();
    m_marks.reset();
    m_offer->hide();
    setWords(nullptr);
    m_notice->forgetPassword();
  }
  m_canvas->setSwapAxes(file.swapAxes);
  reload();
}

void PagePane::reload() {
  m_page = std::max(m_page, 1);
  m_isOpening = m_loader != nullptr;
  if (m_loader) {
    m_notice->tell(Kind::Wait, QStringLiteral("Opening %1 ...").arg(m_file.path));
    m_loader->open(m_file);
  } else {
    m_notice->tell(Kind::Wait,
                   m_file.path + QStringLiteral(": the library that reads pages is missing"));
  }
  leavePage();
}

void PagePane::opened(const OpenedFile& file) {
  m_isOpening = false;
  m_pageCount = file.pageCount;
  if (m_pageCount < 1) {
    updateControls();
    m_isPasswordTyped = false;
    return m_notice->tell(file.needsPassword ? Kind::Password : Kind::Problem,
                          QStringLiteral("%1: %2").arg(m_file.path, file.problem));
  }
  {
    const QSignalBlocker quiet(m_pageField);
    m_pageField->setRange(1, m_pageCount);
  }
  m_pageCountText->setText(QStringLiteral("of %1").arg(m_pageCount));
  // Who types in a field beside the pane goes on typing there.
  const bool hadFocus = isAncestorOf(QApplication::focusWidget());
  m_stack->setCurrentWidget(m_area);
  onOpened();
  showPage(std::exchange(m_page, 0), From::Top);
  if (hadFocus) {
    m_canvas->setFocus();
  }
  if (std::exchange(m_isPasswordTyped, false)) {
    onPassword(m_file.password);
  }
}

/// There is no page to show: the notice says why.
void PagePane::leavePage() {
  m_pageCount = 0;
  m_cache.clear();
  m_stack->setCurrentWidget(m_notice);
  m_pageCountText->clear();
  tell({});
  m_findBar->leave();
  display(std::make_shared<ViewedPage>());
  tellCurrent();
  onOpened();
}

void PagePane::goToPage(int page) {
  if (m_pageCount == 0) {
    m_page = std::max(page, 1);
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
  m_pageField->setValue(m_page);
  tellMatch();
  if (m_page != before) {
    onPageChanged(m_page);
  }
}

PageSizing PagePane::sizing() const {
  return {m_fit, m_zoom, m_area->room(), m_canvas->devicePixelRatioF()};
}

double PagePane::zoom() const {
  const QSizeF size = m_canvas->page().size;
  return size.isEmpty() ? m_zoom : zoomOf(size, sizing());
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
  return here &&
         (here->size.isEmpty() ? !here->problem.isEmpty()
                               : here->pixelsPerPoint == pixelsPerPoint(here->size, sizing()));
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
  if (page->page == m_page) {
    display(page);
  }
}

void PagePane::display(const std::shared_ptr<const ViewedPage>& page) {
  const auto all = m_marks ? std::span(*m_marks) : std::span<const PlanMark>();
  const auto marks = std::ranges::equal_range(all, page->page, {}, &PlanMark::page);
  m_canvas->show(page, sizing());
  m_canvas->setMarks({marks.begin(), marks.end()});
  m_area->fitCanvas();
  m_pageProblem->setText(page->problem);
  m_pageProblem->setVisible(!page->problem.isEmpty());
  updateControls();
  request();
  tellMatch();
  m_findBar->pageShown();
}

void PagePane::setMarks(std::shared_ptr<const std::vector<PlanMark>> marks) {
  m_marks = std::move(marks);
  fitAgain();
  tellCurrent();
}

void PagePane::showOffer(const QString& text, std::vector<OfferButton> buttons) {
  m_offer->offer(text, std::move(buttons));
}

void PagePane::find() {
  if (m_pageCount > 0) {
    m_findBar->open();
  }
}

void PagePane::findNext(int way) {
  if (m_pageCount > 0) {
    m_findBar->goOn(way);
  }
}

void PagePane::setFit(PageSizing::Fit fit, double zoom) {
  m_fit = fit;
  m_zoom = std::clamp(zoom, leastZoom, mostZoom);
  fitAgain();
}

void PagePane::zoomBy(double steps) {
  const double before = m_canvas->sheet().height();
  QScrollBar* bar = m_area->verticalScrollBar();
  const double middle = bar->value() + bar->pageStep() / 2.0;
  setFit(PageSizing::Fit::Zoom, zoom() * std::pow(zoomStep, steps));
  // What was in the middle of the window stays there.
  const double ratio = m_canvas->sheet().height() / before;
  bar->setValue(static_cast<int>(std::round(middle * ratio - bar->pageStep() / 2.0)));
}

void PagePane::fitAgain() {
  display(m_canvas->shared());
}

void PagePane::beginWalk() {
  m_match.reset();
  tellWalk(QStringLiteral("Looking for the first match ..."));
  m_walkRow->show();
}

void PagePane::tellWalk(const QString& text) {
  m_walkText->setText(text);
  m_nextMatch->setEnabled(false);
}

void PagePane::showMatch(const PlanMark& match, int number) {
  m_match = match;
  m_matchNumber = number;
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
  if (isWalking()) {
    const QString notFound = isRead && place.isNull()
                                 ? QStringLiteral("   (the page is drawn without this word)")
                                 : QString();
    m_walkText->setText(QStringLiteral("Match %1, page %2: %3   %4%5")
                            .arg(m_matchNumber)
                            .arg(m_match->page)
                            .arg(positionText(m_match->h, m_match->v), m_match->text, notFound));
  }
}

void PagePane::endWalk() {
  m_match.reset();
  m_canvas->mark(std::nullopt);
  m_walkRow->hide();
}

bool PagePane::isWalking() const {
  return !m_walkRow->isHidden();
}

void PagePane::stopWalk() {
  if (isWalking()) {
    onStop();
  }
}

void PagePane::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  // A screen of another sharpness wants other pictures.
  connect(window()->windowHandle(), &QWindow::screenChanged, this, &PagePane::fitAgain,
          Qt::UniqueConnection);
}

void PagePane::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    return copyPosition();
  }
  if (event->matches(QKeySequence::Find)) {
    return find();
  }
  switch (event->key()) {
  case Qt::Key_F3:
    return findNext((event->modifiers() & Qt::ShiftModifier) != 0 ? -1 : 1);
  case Qt::Key_F5:
    if (!m_file.path.isEmpty() && !m_isOpening) {
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
    if (!m_findBar->isHidden()) {
      return m_findBar->close();
    }
    if (isWalking()) {
      return stopWalk();
    }
    break;
  default:
    break;
  }
  QWidget::keyPressEvent(event);
}

} // namespace folivex
