// The output folder before a run.
#pragma once

#include <QString>

namespace folivex {

/// Removes the files of a folder before a run; names that begin with "." and sub-folders stay, and
/// so does the folder itself. A path shorter than 5 characters is refused, as a guard: nothing is
/// removed. `keep` (a path, may be empty) is left alone even when it lies there: the source of the
/// run.
///
/// Returns an empty text, or what the first file that could not be deleted was refused for; the
/// removal ends with it.
QString clearOutputFolder(const QString& folder, const QString& keep);

/// Whether clearOutputFolder(folder, keep) would remove what stands at `path`.
bool isClearedWithFolder(const QString& folder, const QString& keep, const QString& path);

/// Makes a folder with the folders above it; one that exists is no error. Empty, or the reason.
QString makeOutputFolder(const QString& folder);

} // namespace folivex
