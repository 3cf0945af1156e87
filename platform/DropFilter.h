// DropFilter: files dropped by programs with fewer rights.
#pragma once

#include <QtGlobal>

namespace folivex::platform {

/// Lets programs that run with fewer rights drop files on the window with this handle of the
/// system. Only Windows keeps them off, and only from a window of an elevated program.
void allowDropsOn(quintptr window);

} // namespace folivex::platform
