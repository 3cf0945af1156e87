#include "updates/UpdateLibrary.h"

namespace folivex {

UpdateLibrary::UpdateLibrary()
    : LoadedLibrary(QStringLiteral("UpdatesU"), "UpdatesInterfaceVersion",
                    UPDATES_INTERFACE_VERSION) {}

} // namespace folivex
