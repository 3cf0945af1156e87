// Theme: the look of every window.
#pragma once

#include "widgets/Tones.h"

#include <QString>

namespace folivex {

enum class Theme { System, Light, Dark };

/// The name that a theme is remembered by: "system", "light", "dark". An unknown name is System.
QString themeName(Theme theme);
Theme themeOf(const QString& name);

/// Gives all windows of the application this look, those that are open included.
void applyTheme(Theme theme);

} // namespace folivex
