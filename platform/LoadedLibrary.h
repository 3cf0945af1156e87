// LoadedLibrary: what the three loaders have in common.
#pragma once

#include "platform/DynamicLibrary.h"

namespace folivex::platform {

/// Loads one of the program's libraries at construction and keeps the outcome. A library that tells
/// another interface version than the one expected counts as not loaded.
class LoadedLibrary {
public:
  bool loaded = false;
  QString error;       ///< "Unable to open NAME.dll - error: %d", empty when loaded
  QString errorDetail; ///< which step failed, in words

protected:
  LoadedLibrary(const QString& baseName, const char* versionOperation, int expectedVersion);
  ~LoadedLibrary() = default;

  template <typename Signature> void bind(Operation<Signature>& operation, const char* name) {
    operation.bind(m_library, name);
  }

private:
  DynamicLibrary m_library;
};

} // namespace folivex::platform
