// PageArea: the room that a page is scrolled in, and turned from.
#pragma once

#include <QScrollArea>

#include <functional>

namespace folivex {

class PageCanvas;

/// Page Up and Page Down scroll as long as the page goes on, and are then left to the parent; the
/// wheel turns the page. With Ctrl it zooms.
class PageArea : public QScrollArea {
public:
  explicit PageArea(QWidget* parent);

  PageCanvas* canvas() const { return m_canvas; }
  /// Room for the canvas, window units.
  QSize room() const;
  /// Takes up the canvas's new size now instead of with the next events.
  void fitCanvas();
  /// Scrolls as far as needed for the place to be seen, both of the canvas.
  void bringIntoSight(const QRectF& place);

  std::function<void(int pages)> onTurned; ///< forwards, or backwards when negative
  std::function<void(double steps)> onZoomed;
  std::function<void()> onResized;

protected:
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  bool isAtEnd(int way) const;

  PageCanvas* m_canvas;
  int m_wheelAtEnd = 0; ///< eighths of a degree turned since the page's end
};

} // namespace folivex
