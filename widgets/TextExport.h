// TextExport: text that a person wants to have as a file.
#pragma once

#include <QString>

namespace folivex {

/// Writes the file whole, in UTF-8. Empty, or why it could not be written; the old file stays then.
QString exportText(const QString& path, const QString& text);

} // namespace folivex
