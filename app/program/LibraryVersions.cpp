#include "app/program/LibraryVersions.h"

#include "platform/LoadedLibrary.h"

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
  QLibrary loaded;
  if (platform::loadLibrary(loaded, QString::fromLatin1(library.name)) != 0) {
    return QStringLiteral("not loaded: ") + loaded.errorString();
  }
  const platform::Operation<int()> version(loaded, library.operation);
  const QString told = version.isThere() ? QStringLiteral("interface %1").arg(version())
                                         : QStringLiteral("of another program");
  loaded.unload();
  return told;
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
