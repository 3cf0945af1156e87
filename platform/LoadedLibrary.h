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
  template <typename Signature> using Operation = platform::Operation<Signature>;
  LoadedLibrary(const QString& baseName, const char* versionOperation, int expectedVersion);
  ~LoadedLibrary() = default;

  DynamicLibrary m_library; ///< of which the operations are bound, where it is loaded
};

} // namespace folivex::platform
