#include "widgets/LookStyle.h"

#include "widgets/Tones.h"

#include <QAbstractItemView>
#include <QPainter>
#include <QStyleOption>

namespace folivex {

namespace {

constexpr double cornerRadius = 2;

bool isDarkGround(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < 128;
}

/// `share` of the second colour in the first.
QColor mixed(const QColor& first, const QColor& second, double share) {
  const auto part = [share](int a, int b) { return static_cast<int>(a + share * (b - a)); };
  return {part(first.red(), second.red()), part(first.green(), second.green()),
          part(first.blue(), second.blue())};
}

/// Fusion's own border is a darker window colour, which is invisible on dark ground.
void drawBorder(const QStyleOption& option, QPainter* painter) {
  if (!isDarkGround(option.palette)) {
    return;
  }
  const bool isEnabled = option.state.testFlag(QStyle::State_Enabled);
  constexpr double strong = 0.42;
  constexpr double faint = 0.2;
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(mixed(option.palette.color(QPalette::Window),
                        option.palette.color(QPalette::Active, QPalette::WindowText),
                        isEnabled ? strong : faint));
  painter->setBrush(Qt::NoBrush);
  constexpr double half = 0.5;
  painter->drawRoundedRect(QRectF(option.rect).adjusted(half, half, -half, -half), cornerRadius,
                           cornerRadius);
  painter->restore();
}

/// Fusion does not tell which text that is only to be read has the cursor.
void drawFrameFocus(const QStyleOption& option, QPainter* painter) {
  painter->setPen(option.palette.color(QPalette::Highlight));
  painter->setBrush(Qt::NoBrush);
  painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
}

/// Fusion fills the cell, over its text.
void drawCellFocus(const QStyleOption& option, QPainter* painter) {
  const bool isSelected = option.state.testFlag(QStyle::State_Selected);
  painter->setPen(
      option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Highlight));
  painter->setBrush(Qt::NoBrush);
  painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
}

/// Fusion gives a button with the cursor the border that the default button has without it.
void drawButtonFocus(const QStyleOption& option, QPainter* painter) {
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(option.palette.color(QPalette::Highlight));
  painter->setBrush(Qt::NoBrush);
  constexpr double inset = 2.5;
  painter->drawRoundedRect(QRectF(option.rect).adjusted(inset, inset, -inset, -inset), cornerRadius,
                           cornerRadius);
  painter->restore();
}

/// A disc with a sign in it.
QPixmap signPixmap(const QString& sign, const QColor& ground, const QColor& ink, int size) {
  QPixmap pixmap(size, size);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(ground);
  painter.drawEllipse(pixmap.rect());
  QFont font;
  font.setBold(true);
  constexpr double letterShare = 0.64;
  font.setPixelSize(static_cast<int>(size * letterShare));
  painter.setFont(font);
  painter.setPen(ink);
  painter.drawText(pixmap.rect(), Qt::AlignCenter, sign);
  return pixmap;
}

} // namespace

LookStyle::LookStyle() : QProxyStyle(QStringLiteral("fusion")) {}

void LookStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
  if (element == PE_FrameFocusRect && qobject_cast<const QAbstractItemView*>(widget) != nullptr) {
    drawCellFocus(*option, painter);
    return;
  }
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  // What has the cursor is drawn with a bright border already; a check box is not.
  const bool isMarked = option->state.testFlag(State_HasFocus);
  if (element == PE_PanelButtonCommand && isMarked) {
    drawButtonFocus(*option, painter);
  }
  const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
  const bool hasFrame = frame != nullptr && frame->lineWidth > 0;
  if (element == PE_Frame && hasFrame && isMarked) {
    drawFrameFocus(*option, painter);
    return;
  }
  if (element == PE_IndicatorCheckBox || (element == PE_FrameLineEdit && !isMarked) ||
      (element == PE_Frame && hasFrame)) {
    drawBorder(*option, painter);
  }
}

void LookStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
  const auto* chosen = element == CE_ComboBoxLabel
                           ? qstyleoption_cast<const QStyleOptionComboBox*>(option)
                           : nullptr;
  if (chosen == nullptr || chosen->editable) {
    QProxyStyle::drawControl(element, option, painter, widget);
    return;
  }
  QStyleOptionComboBox shortened(*chosen);
  const QRect room = subControlRect(CC_ComboBox, chosen, SC_ComboBoxEditField, widget);
  constexpr int air = 6;
  shortened.currentText =
      chosen->fontMetrics.elidedText(chosen->currentText, Qt::ElideRight, room.width() - air);
  QProxyStyle::drawControl(element, &shortened, painter, widget);
}

void LookStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   QPainter* painter, const QWidget* widget) const {
  const auto* tool =
      control == CC_ToolButton ? qstyleoption_cast<const QStyleOptionToolButton*>(option) : nullptr;
  if (tool != nullptr && tool->state.testFlag(State_On) && tool->state.testFlag(State_Enabled)) {
    QStyleOptionToolButton on(*tool);
    on.palette.setColor(QPalette::Button, on.palette.color(QPalette::Highlight));
    on.palette.setColor(QPalette::ButtonText, on.palette.color(QPalette::HighlightedText));
    QProxyStyle::drawComplexControl(control, &on, painter, widget);
    return;
  }
  QProxyStyle::drawComplexControl(control, option, painter, widget);
  if (control == CC_SpinBox && !option->state.testFlag(State_HasFocus)) {
    drawBorder(*option, painter);
  }
}

int LookStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                           const QWidget* widget) const {
  constexpr int airBesideCells = 4;
  return metric == PM_FocusFrameHMargin ? airBesideCells
                                        : QProxyStyle::pixelMetric(metric, option, widget);
}

QIcon LookStyle::standardIcon(StandardPixmap standardIcon, const QStyleOption* option,
                              const QWidget* widget) const {
  const QPalette palette = widget != nullptr ? widget->palette() : standardPalette();
  const auto icon = [&palette](const char* sign, const QColor& ground) {
    constexpr int largest = 128; // scaled down to whatever the screen needs
    return QIcon(signPixmap(QString::fromLatin1(sign), ground,
                            palette.color(QPalette::Active, QPalette::HighlightedText), largest));
  };
  const QColor accent = palette.color(QPalette::Active, QPalette::Highlight);
  switch (standardIcon) {
  case SP_MessageBoxQuestion:
    return icon("?", accent);
  case SP_MessageBoxInformation:
    return icon("i", accent);
  case SP_MessageBoxWarning:
    return icon("!", problemColor());
  default:
    return QProxyStyle::standardIcon(standardIcon, option, widget);
  }
}

} // namespace folivex
