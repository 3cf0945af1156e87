#include "platform/FoundFile.h"

#include <string>
#include <system_error>

namespace folivex::platform {

namespace fs = std::filesystem;

namespace {

// The system's names are bytes or UTF-16.

[[maybe_unused]] QString asText(const std::string& name) {
  return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}
[[maybe_unused]] QString asText(const std::wstring& name) {
  return QString::fromStdWString(name);
}

[[maybe_unused]] bool isText(const std::string& name) {
  return asText(name).toUtf8().toStdString() == name;
}
[[maybe_unused]] bool isText(const std::wstring&) {
  return true;
}

} // namespace

QString textOf(const fs::path::string_type& name) {
  return asText(name);
}

QString problemOf(const fs::directory_entry& entry) {
  if (!isText(entry.path().native())) {
    return QStringLiteral("its name is no valid text");
  }
  std::error_code error;
  if (entry.is_regular_file(error) || entry.is_directory(error)) {
    return {};
  }
  if (entry.is_symlink(error) && !entry.exists(error)) {
    return QStringLiteral("it is a link that leads nowhere");
  }
  return QStringLiteral("it is no ordinary file");
}

} // namespace folivex::platform
