// ListFile: the batch list as a file.
#pragma once

#include "batch/BatchEntry.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace folivex {

/// A line of the file is an optional prefix ("~" not used, "+" used without a stamp), the path,
/// "|",
/// "|" and LF; between and behind the bars is room for fields that nobody fills, which is skipped
/// when reading. No header, no byte-order mark. Paths are written as UTF-8; bytes that are no UTF-8
/// are read as Windows-1252.

/// A longer line is cut there, and nothing behind it is read: other programs' lists count on it.
inline constexpr int maxListLine = 254; // UTF-16 units, without the LF
/// A file of more lines is nobody's list; reading it would only use up the memory.
inline constexpr int maxListLines = 1'000'000;

struct ListFileContent {
  QString failure; ///< why nothing was read, for a person; empty when it was
  std::vector<BatchEntry> entries;
  int cutLine = 0; ///< number of the line that was too long, from 1; 0 when none was
};

[[nodiscard]] ListFileContent readListFile(const QString& path);
/// The same of bytes in memory.
[[nodiscard]] ListFileContent parseListFile(const QByteArray& bytes);

struct ListFileSaved {
  QString failure; ///< why nothing was written, for a person; empty when it was
  /// Rows of which the format cannot hold the path: reading the file gives another one.
  int notKept = 0;
};

/// Writes beside `path` and puts the new file into place when it is whole; on failure the old file
/// stays as it was. `path` must be absolute. In the temporary folder the file is the person's own
/// (0600), and a link there is refused; elsewhere a link is followed and stays.
[[nodiscard]] ListFileSaved writeListFile(const QString& path,
                                          const std::vector<BatchEntry>& entries);

} // namespace folivex
