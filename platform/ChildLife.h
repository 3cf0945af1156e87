// ChildLife: a child process that does not outlive this one, however this one ends.
#pragma once

#include <QtGlobal>

namespace folivex::platform {

/// To be called in the new process before it becomes its program: it is told to end when `parent`
/// is gone. Only calls what may be called there (see fork(2)). Does nothing on Windows.
void endWithParent(qint64 parent);

/// To be called in the parent once the child has started. Does nothing but on Windows.
void tieToThisProcess(qint64 child);

} // namespace folivex::platform
