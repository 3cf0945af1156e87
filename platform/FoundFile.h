// FoundFile: what a search of a folder finds.
#pragma once

#include <QString>

#include <filesystem>

namespace folivex::platform {

/// The name of a file as text; bytes that are none come out as U+FFFD, and it cannot be opened by
/// that name.
QString textOf(const std::filesystem::path::string_type& name);

/// Why the file of an entry cannot be taken for a source: its name is no text, it is a link that
/// leads nowhere, a pipe, a device. Empty for an ordinary file or a folder; whether that may be
/// read is not looked at.
QString problemOf(const std::filesystem::directory_entry& entry);

} // namespace folivex::platform
