// ProgramIcon: the sign of the program in title bars and lists of windows.
#pragma once

#include <QIcon>

namespace folivex {

/// A stack of pages, cut in two. Drawn for each usual size, so that small ones are as sharp.
QIcon programIcon();

} // namespace folivex
