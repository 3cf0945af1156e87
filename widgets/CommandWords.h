// CommandWords: what a command of a window says when it is done.
#pragma once

#include <QString>

namespace folivex {

/// Either may be empty.
struct CommandWords {
  QString message; ///< for a box that the person confirms
  QString notice;  ///< for a line in the window
};

} // namespace folivex
