#include "widgets/Tones.h"

#include <QApplication>
#include <QPalette>
#include <QWidget>

namespace folivex {

namespace {

constexpr const char* toneProperty = "tone";

struct ToneColors {
  QRgb onLight;
  QRgb onDark;
};

QColor colorOf(Tone tone) {
  static constexpr ToneColors colors[] = {{0xb3261e, 0xff8a80},
                                          {0x7a5400, 0xf2c56b},
                                          {0x1b6e2f, 0x81d48c},
                                          {0x58606a, 0xa9b0b9}}; // by Tone, from Problem on
  const ToneColors& own = colors[static_cast<std::size_t>(tone) - 1];
  return isDark() ? own.onDark : own.onLight;
}

void paintTone(QWidget* label) {
  QPalette own; // of which only the colour set here counts; all else comes from the window
  if (const auto tone = static_cast<Tone>(label->property(toneProperty).toInt());
      tone != Tone::Plain) {
    for (const auto role : {QPalette::WindowText, QPalette::Text}) { // by the ground it stands on
      own.setColor(role, colorOf(tone));
    }
  }
  label->setPalette(own);
}

} // namespace

void setTone(QWidget* label, Tone tone) {
  label->setProperty(toneProperty, static_cast<int>(tone));
  paintTone(label);
}

void paintTones() {
  for (QWidget* widget : QApplication::allWidgets()) {
    if (widget->property(toneProperty).isValid()) {
      paintTone(widget);
    }
  }
}

bool isDark() {
  return QApplication::palette().color(QPalette::Window).lightness() < 128;
}

QColor problemColor() {
  return colorOf(Tone::Problem);
}

QColor hintColor() {
  return colorOf(Tone::Hint);
}

QColor successColor() {
  return colorOf(Tone::Success);
}

} // namespace folivex
