#include "app/viewer/PageArea.h"

#include "app/viewer/PageCanvas.h"

#include <QKeyEvent>
#include <QScrollBar>
#include <QWheelEvent>

namespace folivex {

PageArea::PageArea(QWidget* parent) : QScrollArea(parent), m_canvas(new PageCanvas(this)) {
  setObjectName(QStringLiteral("pageArea"));
  setWidget(m_canvas);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus);
  // Always there, else a page that fits its width would no longer once the bar appears.
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  m_canvas->onLookedAt = [this](const QRectF& place) { bringIntoSight(place); };
}

QSize PageArea::room() const {
  // Without a bar below, which is there for pages that are wider only.
  const QScrollBar* below = horizontalScrollBar();
  const int barHeight = below->isVisible() ? below->height() : 0;
  return viewport()->size() + QSize(0, barHeight);
}

void PageArea::fitCanvas() {
  QEvent request(QEvent::LayoutRequest);
  event(&request);
}

void PageArea::bringIntoSight(const QRectF& place) {
  constexpr int air = 24;
  const QRect target = place.toAlignedRect();
  const QPoint middle = target.center();
  ensureVisible(middle.x(), middle.y(), target.width() / 2 + air, target.height() / 2 + air);
}

bool PageArea::isAtEnd(int way) const {
  const QScrollBar* bar = verticalScrollBar();
  return way > 0 ? bar->value() >= bar->maximum() : bar->value() <= bar->minimum();
}

void PageArea::wheelEvent(QWheelEvent* event) {
  constexpr int notch = 120;
  const int down = -event->angleDelta().y();
  if ((event->modifiers() & Qt::ControlModifier) != 0) {
    onZoomed(-static_cast<double>(down) / notch);
    event->accept();
    return;
  }
  const int way = down > 0 ? 1 : -1;
  if (down == 0 || !isAtEnd(way)) {
    m_wheelAtEnd = 0;
    QScrollArea::wheelEvent(event);
    return;
  }
  m_wheelAtEnd += down;
  if (std::abs(m_wheelAtEnd) >= notch) {
    m_wheelAtEnd = 0;
    onTurned(way);
  }
  event->accept();
}

void PageArea::keyPressEvent(QKeyEvent* event) {
  const int way = event->key() == Qt::Key_PageDown ? 1 : event->key() == Qt::Key_PageUp ? -1 : 0;
  const bool turns = (event->modifiers() & Qt::ControlModifier) != 0 || isAtEnd(way);
  if (way == 0 || turns) { // nothing else scrolls here: the arrows belong to the words
    return event->ignore();
  }
  verticalScrollBar()->triggerAction(way > 0 ? QAbstractSlider::SliderPageStepAdd
                                             : QAbstractSlider::SliderPageStepSub);
}

void PageArea::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  onResized();
}

} // namespace folivex
