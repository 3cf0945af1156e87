// LookStyle: how controls are drawn where the program has a look of its own.
#pragma once

#include <QProxyStyle>

namespace folivex {

/// Qt's Fusion style, with its weak spots drawn from the palette: borders that are seen on dark
/// ground, buttons that show that they are on, chosen texts that end in dots where they are cut.
class LookStyle : public QProxyStyle {
public:
  LookStyle();

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override;
  QIcon standardIcon(StandardPixmap standardIcon, const QStyleOption* option,
                     const QWidget* widget) const override;
};

} // namespace folivex
