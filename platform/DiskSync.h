// DiskSync: what was written survives a power failure.
#pragma once

#include <QStringList>

#include <functional>

namespace folivex::platform {

/// Waits until these files, which exist, and their names are on the disk; `tick` is called now and
/// then meanwhile. Empty, or what stood in the way.
QString bringToDisk(const QStringList& files, const std::function<void()>& tick);

} // namespace folivex::platform
