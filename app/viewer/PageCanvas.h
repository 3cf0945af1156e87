// PageCanvas: the sheet of a page, on which words are pointed at.
#pragma once

#include "app/viewer/PageWordMap.h"
#include "app/viewer/ViewedPage.h"
#include "engine/job/SplitPlan.h"

#include <QTransform>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>
#include <span>

namespace folivex {

/// Shows one page. The mouse points at words, clicks one, or drags a rectangle; with the keyboard
/// an arrow key brings up a cursor that goes from word to word, Tab and Shift+Tab then do so too,
/// Enter or the Menu key picks its word, and Escape takes it away.
class PageCanvas : public QWidget {
public:
  explicit PageCanvas(QWidget* parent);

  /// The page; its picture is stretched until one for the sizing comes. A page without a size is an
  /// empty sheet as large as the last.
  void show(std::shared_ptr<const ViewedPage> page, const PageSizing& sizing);
  const ViewedPage& page() const { return *m_page; }
  const std::shared_ptr<const ViewedPage>& shared() const { return m_page; }
  void setSwapAxes(bool swapAxes) { m_swapAxes = swapAxes; }
  /// What the plan takes words of this page for: where a document begins they are framed, where one
  /// ends framed with dashes, and what goes into a name is underlined.
  void setMarks(std::span<const PlanMark> marks);
  /// What a mark says of a word, in words; empty for none.
  QString markText(int word) const;
  /// Marks a match above all others when its page is the one shown.
  void mark(const std::optional<PlanMark>& match);
  /// Where that match stands on the canvas; null when it is not on this page.
  QRectF markedPlace() const;
  /// Covers every place that holds the text, on this page and those shown later; none for an empty
  /// text. The places count from 0.
  void seek(const QString& text);
  int hitCount() const { return static_cast<int>(m_hits.size()); }
  /// The place that is looked at; -1 for none.
  int hit() const { return m_hit; }
  void goToHit(int hit);

  /// Index of the word told about: the one pointed at, else, unless a range was drawn, the one
  /// under the cursor; -1 for none.
  int currentWord() const { return m_hovered >= 0 ? m_hovered : (m_drawn ? -1 : m_cursor); }
  /// The range drawn last, until a word is clicked or gone to.
  std::optional<PositionRange> range() const;
  std::vector<int> wordsInRange() const;

  QRectF sheet() const;
  /// From points of the page to the canvas.
  QRectF onCanvas(const QRectF& box) const;

  std::function<void()> onChanged; ///< the word or range told about is another one
  /// For the word told about, else for the range, else for the page; `place`, of the canvas, is
  /// where it should come up.
  std::function<void(QPoint place)> onMenuWanted;
  std::function<void(const QRectF& place)> onLookedAt; ///< is to be scrolled into sight

protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  bool focusNextPrevChild(bool next) override;

private:
  void paintSheet(QPainter& painter) const;
  void paintMarks(QPainter& painter) const;
  void paintPlanMarks(QPainter& painter) const;
  void paintBox(QPainter& painter, const QRectF& box, int fill, qreal pen) const;
  QRectF wordBox(int word) const;
  QRectF boxOf(const std::vector<int>& words) const;
  void findMarked();
  PageWordMap map() const { return PageWordMap(m_page->words); }
  void wantMenu(QPointF besideWords);
  QTransform pageToCanvas() const;
  QPointF toPage(QPointF onCanvas) const;
  void hover(QPointF place);
  void dragTo(QPointF place);
  void forget();
  void moveCursor(int word);
  void changed();

  std::shared_ptr<const ViewedPage> m_page;
  PageSizing m_sizing;
  QSizeF m_sheetSize; ///< window units
  bool m_swapAxes = false;
  int m_hovered = -1;
  int m_cursor = -1;
  /// A mark and its words on this page.
  struct Marked {
    PlanMark::Kind kind;
    std::vector<int> words;
  };
  std::vector<PlanMark> m_marks;
  std::vector<Marked> m_marked;
  std::optional<PlanMark> m_match;
  std::vector<int> m_matched;
  QString m_sought;
  std::vector<std::vector<int>> m_hits;
  int m_hit = -1;
  std::optional<QPointF> m_pressed; ///< where the button went down
  bool m_isDragging = false;
  std::optional<QRectF> m_drawn; ///< the range; points
};

} // namespace folivex
