// DesktopNotice: a short message that the desktop shows, beside all windows.
#pragma once

class QString;

namespace folivex {

/// For what happened while the person looked elsewhere. Never waits: where no desktop answers,
/// nothing is shown, and nothing is said of that. Both are plain text.
void showDesktopNotice(const QString& title, const QString& text);

} // namespace folivex
