// The output folder before a run.
#pragma once

#include "engine/setup/SplitSetup.h"

#include <QString>
#include <QStringList>

namespace folivex {

/// Removes the files of a folder before a run; names that begin with "." and sub-folders stay, and
/// so does the folder itself. A path shorter than 5 characters is refused, as a guard: nothing is
/// removed. The files `keep` are left alone even when they lie there: the sources of the run.
///
/// Returns an empty text, or what the first file that could not be deleted was refused for; the
/// removal ends with it.
QString clearOutputFolder(const QString& folder, const QStringList& keep);

/// Whether clearOutputFolder(folder, keep) would remove what stands at `path`.
bool isClearedWithFolder(const QString& folder, const QStringList& keep, const QString& path);

/// How many files clearOutputFolder(folder, keep) would remove.
int filesClearedWithFolder(const QString& folder, const QStringList& keep);

/// The output folder, when a run with this setup clears it; else empty. A folder that nobody named
/// is never cleared.
QString folderToClear(const SplitSetup& setup);

/// Empty, or that a folder is still to be made, or cannot be written to. Nothing is touched.
QString outputFolderFinding(const QString& folder);

/// Makes a folder with the folders above it; one that exists is no error. Empty, or the reason.
QString makeOutputFolder(const QString& folder);

} // namespace folivex
