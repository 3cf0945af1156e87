#include "widgets/ElidedLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace folivex {

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

QSize ElidedLabel::minimumSizeHint() const {
  return {0, fontMetrics().height()};
}

bool ElidedLabel::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip && fontMetrics().horizontalAdvance(text()) > width()) {
    // As a paragraph it is broken into lines, and what stands in a page is no markup.
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
                       QStringLiteral("<p>%1</p>").arg(text().toHtmlEscaped()), this);
    return true;
  }
  return QLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QString shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, width());
  style()->drawItemText(&painter, rect(), Qt::AlignVCenter | Qt::AlignLeft, palette(), isEnabled(),
                        shown, foregroundRole());
}

} // namespace folivex
