// Theme: the look of every window.
#pragma once

#include <QColor>
#include <QString>

class QWidget;

namespace folivex {

enum class Theme { System, Light, Dark };

/// The name that a theme is remembered by: "system", "light", "dark". An unknown name is System.
QString themeName(Theme theme);
Theme themeOf(const QString& name);

/// Gives all windows of the application this look, those that are open included.
void applyTheme(Theme theme);

/// Whether the windows are light on dark just now.
bool isDark();

/// What a text tells by its colour.
enum class Tone { Plain, Problem, Hint, Success, Quiet };

/// Gives a label the colour of what it tells. It changes with the look.
void setTone(QWidget* label, Tone tone);

/// Colour of text that tells a problem, readable on the look's window background.
QColor problemColor();
/// Colour of text that tells what is worth a thought, and stops nothing.
QColor hintColor();
/// Colour of text that tells a success.
QColor successColor();

} // namespace folivex
