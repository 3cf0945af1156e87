// LoadedLibrary: the program's own libraries, loaded by name at run time.
#pragma once

#include <QLibrary>
#include <QString>

namespace folivex::platform {

/// Loads one of the program's own libraries by its base name ("GlyphrunU"): beside the program,
/// else from the usual search path. Returns 0, or the system's code of the failure, which
/// library.errorString() has in words. Who has loaded it unloads it.
[[nodiscard]] int loadLibrary(QLibrary& library, const QString& baseName);

/// An operation of a loaded library. One that the library lacks does nothing and returns zero,
/// since a missing entry point does not stop a load.
template <typename Signature> class Operation;
template <typename Result, typename... Arguments> class Operation<Result(Arguments...)> {
public:
  /// `name` is case-sensitive. Nothing is bound where the library is not loaded.
  Operation(QLibrary& library, const char* name)
      : m_function(reinterpret_cast<Result (*)(Arguments...)>(
            library.isLoaded() ? library.resolve(name) : nullptr)) {}

  bool isThere() const { return m_function != nullptr; }

  Result operator()(Arguments... arguments) const {
    return m_function ? m_function(arguments...) : Result();
  }

private:
  Result (*m_function)(Arguments...);
};

/// Loads a library at construction and keeps the outcome. A library that tells another interface
/// version than the one expected counts as not loaded.
class LoadedLibrary {
public:
  bool loaded = false;
  QString error;       ///< "Unable to open NAME.dll - error: %d", empty when loaded
  QString errorDetail; ///< which step failed, in words

protected:
  template <typename Signature> using Operation = platform::Operation<Signature>;
  LoadedLibrary(const QString& baseName, const char* versionOperation, int expectedVersion);
  ~LoadedLibrary() { m_library.unload(); }

  QLibrary m_library; ///< of which the operations are bound, where it is loaded
};

} // namespace folivex::platform
