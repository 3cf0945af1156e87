// ProgramHelp: what a small program says of itself.
#pragma once

#include <QStringList>

namespace folivex::platform {

/// Answers on standard output when the one argument behind the program's name is "--help" or
/// "--version"; else false. The help begins with the program's name. It is made a man page too, by
/// help2man, and so are its headings: a line that ends with a colon.
bool tellsOfItself(const QStringList& arguments, const char* help, const char* version);

} // namespace folivex::platform
