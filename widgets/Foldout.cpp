#include "widgets/Foldout.h"

#include "widgets/Controls.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyleOption>
#include <QToolButton>
#include <QVBoxLayout>

namespace folivex {

namespace {
constexpr int gapWidth = 6;
constexpr int arrowShare = 2; ///< of the height of a line
} // namespace

/// Draws what no button of Qt's has: a title, and behind it, fainter and cut where the room ends,
/// what is folded away below it.
class Foldout::Title : public QToolButton {
public:
  Title(Rank rank, QWidget* parent) : QToolButton(parent) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    if (rank == Rank::Section) {
      QFont bold = font();
      bold.setBold(true);
      setFont(bold);
    }
  }

  QString held;
  bool isFolded = false;

  QSize sizeHint() const override {
    return {fontMetrics().horizontalAdvance(text()) + fontMetrics().height() + 2 * gapWidth,
            fontMetrics().height() + gapWidth};
  }
  QSize minimumSizeHint() const override { return sizeHint(); }

protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    QStyleOption option;
    option.initFrom(this);
    const int line = fontMetrics().height();
    const int arrow = line / arrowShare;
    option.rect = QRect((line - arrow) / 2, (height() - arrow) / 2, arrow, arrow);
    style()->drawPrimitive(isFolded ? QStyle::PE_IndicatorArrowRight
                                    : QStyle::PE_IndicatorArrowDown,
                           &option, &painter, this);
    QRect room = rect().adjusted(line + gapWidth / 2, 0, -gapWidth, 0);
    painter.drawText(room, Qt::AlignVCenter, text());
    if (isFolded && !held.isEmpty()) {
      room.setLeft(room.left() + fontMetrics().horizontalAdvance(text()) + gapWidth);
      QFont plain = font();
      plain.setBold(false);
      painter.setFont(plain);
      const QString shown = QStringLiteral("\u2013 %1").arg(held);
      painter.drawText(room, Qt::AlignVCenter,
                       QFontMetrics(plain).elidedText(shown, Qt::ElideRight, room.width()));
    }
    if (hasFocus()) {
      painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
      painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
  }
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
      click();
      return;
    }
    QToolButton::keyPressEvent(event);
  }
};

Foldout::Foldout(const char* name, const QString& title, Rank rank, QWidget* parent)
    : QWidget(parent), m_rank(rank), m_title(new Title(rank, this)), m_body(new QWidget(this)) {
  setObjectName(QString::fromLatin1(name));
  m_title->setObjectName(objectName() + QStringLiteral("Title"));
  m_title->setText(title);
  stack(this, {m_title, m_body});
  layout()->setContentsMargins(0, 0, 0, 0);
  layout()->setSpacing(0);
  connect(m_title, &QToolButton::clicked, this, [this] {
    setFolded(!m_isFolded);
    if (onToggled) {
      onToggled();
    }
  });
  describe();
}

QToolButton* Foldout::title() const {
  return m_title;
}

void Foldout::setFolded(bool folded) {
  m_isFolded = folded;
  m_title->isFolded = folded;
  m_body->setVisible(!folded);
  describe();
}

void Foldout::setHeld(const QString& text) {
  m_title->held = text;
  describe();
}

void Foldout::describe() {
  m_title->setAccessibleName(m_isFolded && !m_title->held.isEmpty()
                                 ? QStringLiteral("%1, %2").arg(m_title->text(), m_title->held)
                                 : m_title->text());
  m_title->setAccessibleDescription(m_isFolded ? QStringLiteral("folded")
                                               : QStringLiteral("unfolded"));
  m_title->setToolTip(m_isFolded && !m_title->held.isEmpty()
                          ? QStringLiteral("<p>%1</p>").arg(m_title->held.toHtmlEscaped())
                          : QStringLiteral("Show or hide these settings"));
  m_title->update();
}

void unfoldTo(QWidget* widget) {
  for (QWidget* around = widget->parentWidget(); around != nullptr;
       around = around->parentWidget()) {
    if (auto* foldout = dynamic_cast<Foldout*>(around)) {
      foldout->setFolded(false);
    }
  }
}

} // namespace folivex
