#include "platform/TitleBar.h"

#ifdef Q_OS_WIN
#include <windows.h>

#include <dwmapi.h>
#endif

namespace folivex::platform {

void setTitleDark([[maybe_unused]] quintptr window, [[maybe_unused]] bool isDark) {
#ifdef Q_OS_WIN
  constexpr DWORD useImmersiveDarkMode = 20; // of Windows 10 2004; older ones stay light
  const BOOL isOn = isDark ? TRUE : FALSE;
  DwmSetWindowAttribute(reinterpret_cast<HWND>(window), useImmersiveDarkMode, &isOn, sizeof isOn);
#endif
}

} // namespace folivex::platform
