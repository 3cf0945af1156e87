#include "app/dialogs/FormArea.h"

#include "app/dialogs/FormGrid.h"

#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace folivex {

namespace {

QVBoxLayout* columnOf(const QList<QWidget*>& groups) {
  auto* column = new QVBoxLayout;
  for (QWidget* group : groups) {
    column->addWidget(group);
  }
  if (!column->expandingDirections().testFlag(Qt::Vertical)) {
    column->addStretch(1);
  }
  return column;
}

} // namespace

FormArea::FormArea(QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus); // its fields take the cursor, and it scrolls to them
  setWidget(new QWidget(this));
}

void FormArea::setColumns(const QList<QWidget*>& left, const QList<QWidget*>& right) {
  m_left = left;
  m_right = right;
  m_columns = new QBoxLayout(QBoxLayout::LeftToRight, widget());
  m_columns->setContentsMargins(0, 0, 0, 0);
  m_columns->addLayout(columnOf(left), 1);
  if (!right.isEmpty()) {
    m_columns->addLayout(columnOf(right), 1);
  }
  arrange(Arrangement::SideBySide);
  m_sideBySideWidth = m_columns->minimumSize().width();
}

void FormArea::arrange(Arrangement arrangement) {
  const bool isStacked = arrangement == Arrangement::Stacked;
  m_columns->setDirection(isStacked ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
  m_columns->setStretch(0, isStacked ? 0 : 1);
  if (isStacked) {
    alignLabels(m_left + m_right);
  } else {
    alignLabels(m_left);
    alignLabels(m_right);
  }
}

void FormArea::fitContent() {
  // A scroll area does not ask how high wrapped lines become.
  widget()->setMinimumHeight(heightForContent(widget()));
}

int FormArea::missingHeight() const {
  return std::max(widget()->minimumHeight() - viewport()->height(), 0);
}

QSize FormArea::sizeHint() const {
  return widget()->sizeHint();
}

void FormArea::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  const bool isNarrow = !m_right.isEmpty() && viewport()->width() < m_sideBySideWidth;
  if (m_columns != nullptr && isNarrow != (m_columns->direction() == QBoxLayout::TopToBottom)) {
    arrange(isNarrow ? Arrangement::Stacked : Arrangement::SideBySide);
  }
  fitContent();
}

} // namespace folivex
