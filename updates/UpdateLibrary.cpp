#include "updates/UpdateLibrary.h"

namespace folivex {

UpdateLibrary::UpdateLibrary()
    : LoadedLibrary(QStringLiteral("UpdatesU"), "UpdatesInterfaceVersion",
                    UPDATES_INTERFACE_VERSION) {
  if (!loaded) {
    return;
  }
  bind(UpdatesFetch, "UpdatesFetch");
  bind(UpdatesLastError, "UpdatesLastError");
  bind(UpdatesLastErrorText, "UpdatesLastErrorText");
}

} // namespace folivex
