// PageCanvas: the sheet of a page, on which words are pointed at.
#pragma once

#include "app/viewer/PageWordMap.h"
#include "app/viewer/ViewedPage.h"

#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

namespace folivex {

/// A match that is marked on its page.
struct MatchMark {
  int page = 0; ///< from 1
  QString text;
  int h = 0;
  int v = 0;

  bool operator==(const MatchMark&) const = default;
};

/// Shows one page. The mouse points at words, clicks one, or drags a rectangle; with the keyboard
/// an arrow key brings up a cursor that goes from word to word, Tab and Shift+Tab then do so too,
/// Enter picks its word, and Escape takes it away.
class PageCanvas : public QWidget {
public:
  explicit PageCanvas(QWidget* parent);

  /// The page; its picture is stretched until one for the sizing comes. A page without a size is an
  /// empty sheet as large as the last.
  void show(std::shared_ptr<const ViewedPage> page, const PageSizing& sizing);
  const ViewedPage& page() const { return *m_page; }
  const std::shared_ptr<const ViewedPage>& shared() const { return m_page; }
  void setSwapAxes(bool swapAxes) { m_swapAxes = swapAxes; }
  /// Marks a match when its page is the one shown.
  void mark(const std::optional<MatchMark>& match);
  /// Where the marked match stands on the canvas; null when it is not on this page.
  QRectF markedPlace() const;

  /// Index of the word told about: the one pointed at, else, unless a range was drawn, the one
  /// under the cursor; -1 for none.
  int currentWord() const { return m_hovered >= 0 ? m_hovered : (m_range ? -1 : m_cursor); }
  /// The range drawn last, until a word is clicked or gone to.
  const std::optional<PositionRange>& range() const { return m_range; }
  /// How many words the range takes in.
  int wordsInRange() const { return static_cast<int>(m_inRange.size()); }

  QRectF sheet() const;
  /// From points of the page to the canvas.
  QRectF onCanvas(const QRectF& box) const;

  std::function<void()> onChanged; ///< the word or range told about is another one
  std::function<void(int word)> onWordPicked;
  std::function<void(const PositionRange& range)> onRangePicked;
  std::function<void(const QRectF& place)> onLookedAt; ///< is to be scrolled into sight

protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  bool focusNextPrevChild(bool next) override;

private:
  void paintSheet(QPainter& painter) const;
  void paintMarks(QPainter& painter) const;
  void paintBox(QPainter& painter, const QRectF& box, int fill, qreal pen) const;
  QRectF wordBox(int word) const;
  QPointF toPage(QPointF onCanvas) const;
  void hover(QPointF place);
  void dragTo(QPointF place);
  void endDrag();
  void moveCursor(int word);
  void changed();

  std::shared_ptr<const ViewedPage> m_page;
  PageSizing m_sizing;
  QSizeF m_sheetSize; ///< window units
  bool m_swapAxes = false;
  int m_hovered = -1;
  int m_cursor = -1;
  std::optional<MatchMark> m_match;
  std::vector<int> m_matched;
  std::optional<QPointF> m_pressed; ///< where the button went down
  std::optional<QRectF> m_dragged;  ///< points
  std::optional<PositionRange> m_range;
  std::vector<int> m_inRange;
};

} // namespace folivex
