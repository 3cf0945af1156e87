#include "platform/DropFilter.h"

#ifdef Q_OS_WIN
#include <windows.h>
#endif

namespace folivex::platform {

#ifdef Q_OS_WIN

void allowDropsOn(quintptr window) {
  constexpr UINT copiedGlobalData = 0x0049; // in no header
  for (const UINT message : {UINT{WM_DROPFILES}, UINT{WM_COPYDATA}, copiedGlobalData}) {
    ChangeWindowMessageFilterEx(reinterpret_cast<HWND>(window), message, MSGFLT_ALLOW, nullptr);
  }
}

#else

void allowDropsOn(quintptr) {}

#endif

} // namespace folivex::platform
