// Tones: what a text tells by its colour.
#pragma once

#include <QColor>

class QWidget;

namespace folivex {

/// Whether the windows are light on dark just now.
bool isDark();

/// What a text tells by its colour.
enum class Tone { Plain, Problem, Hint, Success, Quiet };

/// Gives a label the colour of what it tells. It changes with the look.
void setTone(QWidget* label, Tone tone);
/// The look has changed.
void paintTones();

/// Colour of text that tells a problem, readable on the look's window background.
QColor problemColor();
/// Colour of text that tells what is worth a thought, and stops nothing.
QColor hintColor();
/// Colour of text that tells a success.
QColor successColor();

} // namespace folivex
