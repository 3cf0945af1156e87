// DynamicLibrary: a library loaded by name at run time.
#pragma once

#include <QLibrary>
#include <QString>

namespace folivex::platform {

/// One of the program's own libraries, looked for beside the program and then on the usual search
/// path. Released on destruction.
class DynamicLibrary {
public:
  DynamicLibrary() = default;
  DynamicLibrary(const DynamicLibrary&) = delete;
  DynamicLibrary& operator=(const DynamicLibrary&) = delete;
  ~DynamicLibrary();

  /// Loads the library of this base name ("GlyphrunU"). False when it cannot be loaded.
  bool load(const QString& baseName);
  void unload();

  /// Address of an exported operation (its name is case-sensitive), null when there is none.
  QFunctionPointer resolve(const char* operation);

  /// The system's error code of a failed load.
  int errorCode() const { return m_errorCode; }
  /// The system's words for it.
  const QString& errorText() const { return m_errorText; }

private:
  QLibrary m_library;
  int m_errorCode = 0;
  QString m_errorText;
};

/// An operation of a loaded library. One that the library lacks does nothing and returns zero,
/// since a missing entry point does not stop a load.
template <typename Signature> class Operation;
template <typename Result, typename... Arguments> class Operation<Result(Arguments...)> {
public:
  Operation(DynamicLibrary& library, const char* name)
      : m_function(reinterpret_cast<Result (*)(Arguments...)>(library.resolve(name))) {}

  bool isThere() const { return m_function != nullptr; }

  Result operator()(Arguments... arguments) const {
    if (m_function) {
      return m_function(arguments...);
    }
    return Result();
  }

private:
  Result (*m_function)(Arguments...);
};

} // namespace folivex::platform
