#include "app/program/LibraryVersions.h"

#include "platform/DynamicLibrary.h"

#include <array>

namespace folivex {

namespace {

struct Row {
  const char* library;
  const char* operation; ///< that tells the version of its interface
};
constexpr std::array rows = {Row{"GlyphrunU", "GlyphrunInterfaceVersion"},
                             Row{"CleftorU", "CleftorInterfaceVersion"},
                             Row{"MelderU", "MelderInterfaceVersion"}};

QString versionOf(const Row& row) {
  platform::DynamicLibrary library;
  if (!library.load(QString::fromLatin1(row.library))) {
    return QStringLiteral("not loaded: ") + library.errorText();
  }
  platform::Operation<int()> version;
  return version.bind(library, row.operation) ? QStringLiteral("interface %1").arg(version())
                                              : QStringLiteral("of another program");
}

} // namespace

std::vector<LibraryVersion> libraryVersions() {
  std::vector<LibraryVersion> versions;
  versions.reserve(std::size(rows));
  for (const Row& row : rows) {
    versions.push_back({QString::fromLatin1(row.library), versionOf(row)});
  }
  return versions;
}

} // namespace folivex
