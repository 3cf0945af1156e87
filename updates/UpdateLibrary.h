// UpdateLibrary: the loaded library that asks the server.
#pragma once

#include "platform/LoadedLibrary.h"

#include <updates/updates.h>

namespace folivex {

/// Its operations, bound by name; see updates.h.
class UpdateLibrary : public platform::LoadedLibrary {
public:
  UpdateLibrary()
      : LoadedLibrary(QStringLiteral("UpdatesU"), "UpdatesInterfaceVersion",
                      UPDATES_INTERFACE_VERSION) {}

  Operation<int32_t(const UpdatesRequest*, UpdatesDocument*)> UpdatesFetch{m_library,
                                                                           "UpdatesFetch"};
  Operation<int32_t()> UpdatesLastError{m_library, "UpdatesLastError"};
  Operation<const char16_t*()> UpdatesLastErrorText{m_library, "UpdatesLastErrorText"};
};

} // namespace folivex
