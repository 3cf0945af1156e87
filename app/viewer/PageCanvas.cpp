#include "app/viewer/PageCanvas.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHash>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace folivex {

namespace {

/// Strengths of the highlight colour that a word is covered with.
constexpr int faint = 40;
constexpr int strong = 90;
constexpr QSizeF firstSheet{595, 842};

} // namespace

PageCanvas::PageCanvas(QWidget* parent)
    : QWidget(parent), m_page(std::make_shared<ViewedPage>()), m_sheetSize(firstSheet) {
  setObjectName(QStringLiteral("pageCanvas"));
  setAccessibleName(QStringLiteral("Page"));
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
}

void PageCanvas::show(std::shared_ptr<const ViewedPage> page, const PageSizing& sizing) {
  const bool isOther = page->page != m_page->page || page->words.size() != m_page->words.size();
  m_page = std::move(page);
  m_sizing = sizing;
  if (isOther) {
    forget();
    m_hit = -1;
  }
  if (!m_page->size.isEmpty()) {
    const bool isSharp = m_page->pixelsPerPoint == pixelsPerPoint(m_page->size, sizing);
    const double scale = unitsPerPoint(m_page->size, sizing);
    const double pixels = scale * sizing.devicePixels;
    // The picture's own size, so that no pixel of it is stretched over a border.
    m_sheetSize = isSharp && !m_page->image.isNull() && m_page->pixelsPerPoint == pixels
                      ? QSizeF(m_page->image.size()) / sizing.devicePixels
                      : m_page->size * scale;
  }
  const QSizeF room = m_sheetSize + QSizeF(2 * sheetMargin, 2 * sheetMargin);
  setMinimumSize(static_cast<int>(std::ceil(room.width())),
                 static_cast<int>(std::ceil(room.height())));
  findMarked();
  if (isOther) {
    changed();
  }
}

/// Words are found anew whenever they, or what is marked, have changed.
void PageCanvas::findMarked() {
  m_marked.clear();
  for (const PlanMark& mark : m_marks) {
    m_marked.push_back({mark.kind, map().wordsOfMatch(mark.text, mark.h, mark.v)});
  }
  m_matched.clear();
  if (m_match && m_match->page == m_page->page) {
    m_matched = map().wordsOfMatch(m_match->text, m_match->h, m_match->v);
  }
  m_hits = map().wordsWith(m_sought);
  m_hit = std::min(m_hit, hitCount() - 1);
  update();
}

void PageCanvas::setMarks(std::span<const PlanMark> marks) {
  if (!std::ranges::equal(marks, m_marks)) {
    m_marks.assign(marks.begin(), marks.end());
    findMarked();
  }
}

QString PageCanvas::markText(int word) const {
  QStringList told;
  for (const Marked& mark : m_marked) {
    if (std::ranges::find(mark.words, word) != mark.words.end()) {
      using Kind = PlanMark::Kind;
      told += mark.kind == Kind::Begins ? QStringLiteral("a document begins here")
              : mark.kind == Kind::Ends ? QStringLiteral("a document ends here")
                                        : QStringLiteral("names the file");
    }
  }
  return told.join(QStringLiteral(", "));
}

void PageCanvas::seek(const QString& text) {
  m_sought = text;
  m_hit = -1;
  findMarked();
}

void PageCanvas::goToHit(int hit) {
  m_hit = hit;
  update();
  onLookedAt(boxOf(m_hits[static_cast<std::size_t>(hit)]));
}

void PageCanvas::mark(const std::optional<PlanMark>& match) {
  m_match = match;
  findMarked();
}

QRectF PageCanvas::markedPlace() const {
  return boxOf(m_matched);
}

QRectF PageCanvas::boxOf(const std::vector<int>& words) const {
  QRectF place;
  for (const int word : words) {
    place = place.united(wordBox(word));
  }
  return place;
}

QRectF PageCanvas::sheet() const {
  // On whole units, else the picture would be drawn between pixels.
  const double left = std::max(std::floor((width() - m_sheetSize.width()) / 2), 0.0);
  const double top = std::max(std::floor((height() - m_sheetSize.height()) / 2), 0.0);
  return {QPointF(left, top), m_sheetSize};
}

QTransform PageCanvas::pageToCanvas() const {
  const QRectF whole = sheet();
  return QTransform::fromTranslate(whole.left(), whole.top())
      .scale(whole.width() / std::max(m_page->size.width(), 1e-6),
             whole.height() / std::max(m_page->size.height(), 1e-6));
}

QRectF PageCanvas::onCanvas(const QRectF& box) const {
  return pageToCanvas().mapRect(box);
}

QPointF PageCanvas::toPage(QPointF place) const {
  return pageToCanvas().inverted().map(place);
}

QRectF PageCanvas::wordBox(int word) const {
  constexpr double air = 1.5;
  return onCanvas(m_page->words[static_cast<std::size_t>(word)].box).adjusted(-air, -air, air, air);
}

void PageCanvas::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Mid));
  paintSheet(painter);
  paintMarks(painter);
  if (hasFocus()) {
    const QRectF seen = visibleRegion().boundingRect();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(seen.adjusted(1, 1, -1, -1));
  }
}

void PageCanvas::paintSheet(QPainter& painter) const {
  const QRectF whole = sheet();
  painter.fillRect(whole, Qt::white); // paper, whatever the look of the windows
  const QSizeF pictured = QSizeF(m_page->image.size()) / m_sizing.devicePixels;
  if (pictured == whole.size()) {
    QImage picture = m_page->image;
    picture.setDevicePixelRatio(m_sizing.devicePixels);
    painter.drawImage(whole.topLeft(), picture);
  } else if (!m_page->image.isNull()) {
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(whole, m_page->image, QRectF(m_page->image.rect()));
  } else {
    painter.setPen(Qt::darkGray);
    const QString text =
        m_page->problem.isEmpty() ? QStringLiteral("Page %1").arg(m_page->page) : m_page->problem;
    painter.drawText(whole.adjusted(sheetMargin, sheetMargin, -sheetMargin, -sheetMargin),
                     Qt::AlignCenter | Qt::TextWordWrap, text);
  }
}

void PageCanvas::paintBox(QPainter& painter, const QRectF& box, int fill, qreal pen) const {
  QColor colour = palette().color(QPalette::Highlight);
  painter.setPen(QPen(colour, pen));
  colour.setAlpha(fill);
  painter.setBrush(colour);
  painter.drawRect(box);
}

/// Words of one line have one frame or line together.
void PageCanvas::paintPlanMarks(QPainter& painter) const {
  constexpr double wide = 2;
  const QColor colour = palette().color(QPalette::Highlight);
  for (const Marked& mark : m_marked) {
    const QRectF box = boxOf(mark.words);
    if (box.isNull()) {
      continue;
    }
    if (mark.kind == PlanMark::Kind::Names) {
      painter.setPen(QPen(colour, wide + 1));
      painter.drawLine(box.bottomLeft(), box.bottomRight());
      continue;
    }
    const bool isEnd = mark.kind == PlanMark::Kind::Ends;
    painter.setPen(QPen(colour, wide, isEnd ? Qt::DashLine : Qt::SolidLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(box);
  }
}

void PageCanvas::paintMarks(QPainter& painter) const {
  painter.setRenderHint(QPainter::Antialiasing);
  paintPlanMarks(painter);
  for (const int word : wordsInRange()) {
    paintBox(painter, wordBox(word), faint, 1);
  }
  for (const int word : m_matched) {
    constexpr double wide = 2.5;
    paintBox(painter, wordBox(word), strong, wide);
  }
  for (int i = 0; i < hitCount(); ++i) {
    const QRectF box = boxOf(m_hits[static_cast<std::size_t>(i)]);
    paintBox(painter, box, i == m_hit ? strong : faint, i == m_hit ? 2 : 0);
  }
  if (m_hovered >= 0) {
    paintBox(painter, wordBox(m_hovered), faint, 1);
  }
  if (m_cursor >= 0) {
    paintBox(painter, wordBox(m_cursor), faint, 2);
  }
  if (m_drawn) {
    paintBox(painter, onCanvas(*m_drawn), faint / 2, 1);
  }
}

void PageCanvas::changed() {
  update();
  onChanged();
}

std::optional<PositionRange> PageCanvas::range() const {
  return m_drawn ? std::optional(rangeOf(*m_drawn, m_swapAxes)) : std::nullopt;
}

std::vector<int> PageCanvas::wordsInRange() const {
  return m_drawn ? map().wordsIn(*range()) : std::vector<int>();
}

void PageCanvas::hover(QPointF place) {
  const int word = map().wordAt(toPage(place));
  if (word == m_hovered) {
    return;
  }
  m_hovered = word;
  if (word >= 0) {
    const ViewedWord& told = m_page->words[static_cast<std::size_t>(word)];
    // Text of a page is no markup.
    QString text = QStringLiteral("<b>%1</b><br>%2")
                       .arg(told.text.toHtmlEscaped(), positionText(told.h, told.v));
    if (const QString mark = markText(word); !mark.isEmpty()) {
      text += QStringLiteral("<br>") + mark;
    }
    QToolTip::showText(mapToGlobal(place.toPoint()), text, this, wordBox(word).toAlignedRect());
  } else {
    QToolTip::hideText();
  }
  setCursor(word >= 0 ? Qt::PointingHandCursor : Qt::CrossCursor);
  changed();
}

void PageCanvas::dragTo(QPointF place) {
  const auto within = [this](QPointF point) {
    return QPointF(std::clamp(point.x(), 0.0, m_page->size.width()),
                   std::clamp(point.y(), 0.0, m_page->size.height()));
  };
  m_isDragging = true;
  m_drawn = QRectF(within(toPage(*m_pressed)), within(toPage(place))).normalized();
  m_hovered = m_cursor = -1;
  QToolTip::hideText();
  changed();
}

/// Nothing is pointed at any more.
void PageCanvas::forget() {
  m_hovered = m_cursor = -1;
  m_isDragging = false;
  m_pressed.reset();
  m_drawn.reset();
}

void PageCanvas::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && !m_page->size.isEmpty()) {
    m_pressed = event->position();
  }
}

void PageCanvas::mouseMoveEvent(QMouseEvent* event) {
  if (m_pressed && (event->buttons() & Qt::LeftButton) != 0) {
    const double moved = (event->position() - *m_pressed).manhattanLength();
    if (m_isDragging || moved >= QApplication::startDragDistance()) {
      dragTo(event->position());
      onLookedAt(QRectF(event->position(), QSizeF(1, 1)));
    }
    return;
  }
  if (!m_page->size.isEmpty()) {
    hover(event->position());
  }
}

void PageCanvas::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !m_pressed) {
    return;
  }
  if (m_isDragging) {
    dragTo(event->position());
    m_isDragging = false;
    m_pressed.reset();
    return wantMenu(event->position());
  }
  forget();
  m_cursor = map().wordAt(toPage(event->position()));
  changed();
  if (m_cursor >= 0) {
    wantMenu({});
  }
}

void PageCanvas::wantMenu(QPointF besideWords) {
  m_hovered = -1;
  onMenuWanted((m_cursor >= 0 ? wordBox(m_cursor).bottomLeft() : besideWords).toPoint());
}

/// The right button and the Menu key.
void PageCanvas::contextMenuEvent(QContextMenuEvent* event) {
  if (m_page->size.isEmpty()) {
    return;
  }
  const bool isMouse = event->reason() == QContextMenuEvent::Mouse;
  if (isMouse) {
    moveCursor(map().wordAt(toPage(event->pos())));
  }
  wantMenu(isMouse ? event->pos() : visibleRegion().boundingRect().center());
}

void PageCanvas::leaveEvent(QEvent* /*event*/) {
  if (m_hovered >= 0) {
    m_hovered = -1;
    changed();
  }
}

void PageCanvas::moveCursor(int word) {
  forget();
  m_cursor = word;
  changed();
  if (word >= 0) {
    onLookedAt(wordBox(word));
  }
}

void PageCanvas::keyPressEvent(QKeyEvent* event) {
  const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  if (!isPlain) {
    event->ignore();
    return;
  }
  static const QHash<int, WordStep> steps = {{Qt::Key_Left, WordStep::Left},
                                             {Qt::Key_Right, WordStep::Right},
                                             {Qt::Key_Up, WordStep::Up},
                                             {Qt::Key_Down, WordStep::Down}};
  if (const auto step = steps.find(event->key()); step != steps.end()) {
    return moveCursor(map().step(m_cursor, *step));
  }
  switch (event->key()) {
  case Qt::Key_Return:
  case Qt::Key_Enter:
    if (m_cursor >= 0) {
      wantMenu({});
    }
    return;
  case Qt::Key_Escape:
    if (m_pressed || m_cursor >= 0 || m_drawn) {
      return moveCursor(-1);
    }
    break;
  default:
    break;
  }
  event->ignore();
}

bool PageCanvas::focusNextPrevChild(bool next) {
  // Only while the cursor is there, and up to the page's ends: the keyboard must find its way out.
  const int word = map().step(m_cursor, next ? WordStep::Right : WordStep::Left);
  if (m_cursor < 0 || word == m_cursor) {
    return QWidget::focusNextPrevChild(next);
  }
  moveCursor(word);
  return true;
}

/// The frame that shows the focus stays at the edges of what is seen.
void PageCanvas::moveEvent(QMoveEvent* event) {
  QWidget::moveEvent(event);
  if (hasFocus()) {
    update();
  }
}

} // namespace folivex
