#include "app/program/LibraryVersions.h"

#include "platform/DynamicLibrary.h"

#include <array>

namespace folivex {

namespace {

struct Library {
  const char* name;
  const char* operation; ///< that tells the version of its interface
};
constexpr std::array libraries = {Library{"GlyphrunU", "GlyphrunInterfaceVersion"},
                                  Library{"CleftorU", "CleftorInterfaceVersion"},
                                  Library{"MelderU", "MelderInterfaceVersion"}};

QString versionOf(const Library& library) {
  platform::DynamicLibrary loaded;
  if (!loaded.load(QString::fromLatin1(library.name))) {
    return QStringLiteral("not loaded: ") + loaded.errorText();
  }
  const platform::Operation<int()> version(loaded, library.operation);
  return version.isThere() ? QStringLiteral("interface %1").arg(version())
                           : QStringLiteral("of another program");
}

} // namespace

std::vector<LibraryVersion> libraryVersions() {
  std::vector<LibraryVersion> versions;
  versions.reserve(std::size(libraries));
  for (const Library& library : libraries) {
    versions.push_back({QString::fromLatin1(library.name), versionOf(library)});
  }
  return versions;
}

} // namespace folivex
