// Theme: the look of every window.
#pragma once

#include <QColor>
#include <QString>

namespace folivex {

enum class Theme { System, Light, Dark };

/// The name that a theme is remembered by: "system", "light", "dark". An unknown name is System.
QString themeName(Theme theme);
Theme themeOf(const QString& name);

/// Gives all windows of the application this look, those that are open included.
void applyTheme(Theme theme);

/// Whether the windows are light on dark just now.
bool isDark();

/// Colour of text that tells a problem, readable on the look's window background.
QColor problemColor();
/// Colour of text that tells what is worth a thought, and stops nothing.
QColor hintColor();
/// Colour of text that tells a success.
QColor successColor();

} // namespace folivex
