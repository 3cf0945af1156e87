#include "app/viewer/FindBar.h"

#include "widgets/Controls.h"
#include "widgets/ElidedLabel.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>

namespace folivex {

FindBar::FindBar(QWidget* parent)
    : QWidget(parent), m_text(named(new QLineEdit(this), "findText", "Words to look for")),
      m_told(named(new ElidedLabel(this), "findTold")) {
  setObjectName(QStringLiteral("findBar"));
  m_text->setClearButtonEnabled(true);
  connect(m_text, &QLineEdit::textChanged, this, [this] { onTyped(); });
  QPushButton* previous =
      sideButton("findPrevious", QStringLiteral("Previous"),
                 QStringLiteral("The place before (Shift+F3)"), this, [this] { onGoOn(-1); });
  QPushButton* next =
      sideButton("findNext", QStringLiteral("Next"), QStringLiteral("The next place (F3, Enter)"),
                 this, [this] { onGoOn(1); });
  QPushButton* away =
      sideButton("closeFind", QStringLiteral("Close"),
                 QStringLiteral("Put this line away (Escape)"), this, [this] { close(); });
  QLabel* label = labelFor(m_text, QStringLiteral("Find:"));
  stack(this, {sideBySide(this, {label, {m_text, 1}, previous, next, away}), m_told});
  layout()->setContentsMargins(0, 0, 0, 0);
  m_told->hide();
  hide();
}

void FindBar::open() {
  show();
  m_text->setFocus();
  m_text->selectAll();
}

void FindBar::close() {
  hide();
  onClosed();
}

QString FindBar::text() const {
  return m_text->text();
}

void FindBar::tell(const QString& text, Tone tone) {
  setTone(m_told, tone);
  m_told->setText(text);
  m_told->setVisible(!text.isEmpty());
}

void FindBar::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
  case Qt::Key_Return:
  case Qt::Key_Enter:
    return onGoOn((event->modifiers() & Qt::ShiftModifier) != 0 ? -1 : 1);
  case Qt::Key_Escape:
    return close();
  default:
    QWidget::keyPressEvent(event);
  }
}

} // namespace folivex
