// PageArea: the room that a page is scrolled in, and turned from.
#pragma once

#include <QScrollArea>

#include <functional>

namespace folivex {

class PageCanvas;

/// Page Up and Page Down scroll, and turn the page where it ends; so does the wheel. With Ctrl they
/// turn at once; the wheel then zooms.
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
  std::function<void()> onFirst;
  std::function<void()> onLast;
  std::function<void(double steps)> onZoomed;
  std::function<void()> onResized;

protected:
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  void scrollOrTurn(int way);
  bool isAtEnd(int way) const;
  void turn(int way);

  PageCanvas* m_canvas;
  int m_wheelAtEnd = 0; ///< eighths of a degree turned since the page's end
};

} // namespace folivex
