// TitleBar: the edge that the desktop draws around a window.
#pragma once

#include <QtGlobal>

namespace folivex::platform {

/// Has the title of the window with this handle of the system drawn dark, or light. Elsewhere than
/// on Windows the desktop decides itself.
void setTitleDark(quintptr window, bool isDark);

} // namespace folivex::platform
